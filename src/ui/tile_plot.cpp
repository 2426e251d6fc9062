#include "ui/tile_plot.hpp"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr double zoom_step = 1.25;
constexpr double label_margin = 3;
constexpr int unselected_opacity = 105;
constexpr int selected_opacity = 120;
const QRectF whole_world(QPointF(-180, -70), QPointF(180, 80));

QRectF area_of(const Tile& tile) {
  return {QPointF(tile.lower_left.longitude, tile.lower_left.latitude),
          QPointF(tile.upper_right.longitude, tile.upper_right.latitude)};
}

QRectF area_of(const TileList& tiles) {
  QRectF all = area_of(tiles.front());
  for (const Tile& tile : tiles)
    all = all.united(area_of(tile));
  return all;
}

bool adds(Qt::KeyboardModifiers modifiers) { return modifiers.testFlag(Qt::ControlModifier); }

}  // namespace

TilePlot::TilePlot(QWidget* parent) : QWidget(parent), m_band(new QRubberBand(QRubberBand::Rectangle, this)) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(false);
  setBackgroundRole(QPalette::Base);
  setCursor(Qt::ArrowCursor);
}

void TilePlot::add_layer(std::unique_ptr<PlotLayer> layer) {
  m_layers.push_back(std::move(layer));
  view_changed();
}

void TilePlot::set_tiles(const TileList& tiles, bool fit) {
  m_tiles = tiles;
  m_focus = std::min(m_focus, m_tiles.empty() ? 0 : m_tiles.size() - 1);
  m_anchor = m_focus;
  if (fit) zoom_fit();
  update();
}

void TilePlot::set_area(const QRectF& degrees) {
  m_area = degrees;
  zoom_fit();
}

void TilePlot::set_empty_text(const QString& text) {
  m_empty_text = text;
  update();
}

void TilePlot::set_hint(const QString& select, const QString& change) {
  m_hint = select + QLatin1Char('\n') + change;
  setAccessibleDescription(m_hint);
}

QRectF TilePlot::tile_rectangle(std::size_t index) const {
  return m_projection.to_pixels(area_of(m_tiles.at(index)));
}

void TilePlot::view_changed() {
  m_background_valid = false;
  update();
}

void TilePlot::refresh_layers() { view_changed(); }

// The background changes only with the view, so tiles can be drawn anew without it.
void TilePlot::paint_background(QPainter& painter) {
  if (!m_background_valid) {
    const double ratio = devicePixelRatioF();
    m_background = QPixmap(size() * ratio);
    m_background.setDevicePixelRatio(ratio);
    m_background.fill(palette().color(QPalette::Base));
    QPainter layers(&m_background);
    layers.setFont(font());
    layers.setRenderHint(QPainter::Antialiasing, false);
    const PlotPaint paint{m_projection, QSizeF(size()), palette()};
    for (const auto& layer : m_layers)
      layer->paint(layers, paint);
    m_background_valid = true;
  }
  painter.drawPixmap(0, 0, m_background);
}

void TilePlot::paint_label(QPainter& painter, const QRectF& rectangle, const Tile& tile) const {
  const QFontMetricsF metrics(painter.font());
  const QRectF inner = rectangle.adjusted(label_margin, label_margin, -label_margin, -label_margin);
  const QString number = to_qt(tile.number);
  const double width = metrics.horizontalAdvance(number);
  if (inner.height() < metrics.height() || width > inner.width()) {
    // A narrow tile carries its number upright.
    if (inner.width() < metrics.height() || width > inner.height()) return;
    painter.save();
    painter.translate(rectangle.center());
    painter.rotate(-90);
    painter.drawText(QRectF(-width, -metrics.height(), 2 * width, 2 * metrics.height()), Qt::AlignCenter,
                     number);
    painter.restore();
    return;
  }
  QString text = number;
  if (!tile.description.empty() && inner.height() >= 2 * metrics.height())
    text += QLatin1Char('\n') + metrics.elidedText(to_qt(tile.description), Qt::ElideRight, inner.width());
  painter.drawText(inner, Qt::AlignCenter, text);
}

void TilePlot::paint_tiles(QPainter& painter) {
  QColor chosen = palette().color(QPalette::Highlight);
  chosen.setAlpha(selected_opacity);
  // White, as unselected tiles always are; seen through, so that the coast stays visible.
  const QColor plain(255, 255, 255,
                     palette().color(QPalette::Base).lightness() < 128 ? 28 : unselected_opacity);
  const QPen line(palette().color(QPalette::Text), 1);
  const QRectF visible = rect();
  for (std::size_t index = 0; index < m_tiles.size(); ++index) {
    const QRectF rectangle = tile_rectangle(index);
    if (!rectangle.intersects(visible)) continue;
    painter.setPen(line);
    painter.setBrush(m_tiles[index].selected ? chosen : plain);
    painter.drawRect(rectangle);
    paint_label(painter, rectangle, m_tiles[index]);
  }
  if (hasFocus() && m_focus < m_tiles.size()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 3, Qt::DotLine));
    painter.drawRect(tile_rectangle(m_focus).adjusted(2, 2, -2, -2));
  }
}

void TilePlot::paint_empty_text(QPainter& painter) const {
  constexpr int room = 24;
  constexpr int flags = Qt::AlignCenter | Qt::TextWordWrap;
  const QRect inner = rect().adjusted(room, room, -room, -room);
  const QRect box =
      painter.boundingRect(inner, flags, m_empty_text).adjusted(-room / 2, -room / 2, room / 2, room / 2);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRoundedRect(box, room / 4, room / 4);
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(inner, flags, m_empty_text);
}

void TilePlot::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paint_background(painter);
  paint_tiles(painter);
  if (m_tiles.empty() && !m_empty_text.isEmpty()) {
    paint_empty_text(painter);
  }
}

void TilePlot::resizeEvent(QResizeEvent* /*event*/) {
  if (m_fitted) zoom_fit();
  view_changed();
}

void TilePlot::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) view_changed();
  QWidget::changeEvent(event);
}

std::size_t TilePlot::tile_at(const QPointF& point) const {
  for (std::size_t index = m_tiles.size(); index-- > 0;) {
    if (tile_rectangle(index).contains(point)) return index;
  }
  return no_tile;
}

bool TilePlot::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const std::size_t index = tile_at(help->pos());
    if (index != no_tile) {
      const Tile& tile = m_tiles[index];
      QString text = to_qt(tile.number);
      if (!tile.description.empty()) text += QLatin1Char('\n') + to_qt(tile.description);
      QToolTip::showText(help->globalPos(), text + QStringLiteral("\n\n") + m_hint, this);
      return true;
    }
  }
  return QWidget::event(event);
}

// A plain click and Ctrl both turn one tile over: "click to select or deselect". Shift takes the range.
void TilePlot::click(std::size_t index, Qt::KeyboardModifiers modifiers) {
  if (index == no_tile) return;
  m_focus = index;
  if (modifiers.testFlag(Qt::ShiftModifier)) {
    select_range(m_anchor, index);
  } else {
    m_tiles[index].selected = !m_tiles[index].selected;
    m_anchor = index;
  }
  update();
  Q_EMIT selection_changed();
}

void TilePlot::select_range(std::size_t from, std::size_t to) {
  for (std::size_t index = std::min(from, to); index <= std::max(from, to); ++index)
    m_tiles[index].selected = true;
}

// The band takes every tile that it touches; without Ctrl or Shift these become the whole selection.
void TilePlot::select_band(const QRectF& band, Qt::KeyboardModifiers modifiers) {
  const bool keep = adds(modifiers) || modifiers.testFlag(Qt::ShiftModifier);
  for (std::size_t index = 0; index < m_tiles.size(); ++index) {
    const bool inside = tile_rectangle(index).intersects(band);
    m_tiles[index].selected = inside || (keep && m_tiles[index].selected);
  }
  update();
  Q_EMIT selection_changed();
}

void TilePlot::set_all(bool selected) {
  for (Tile& tile : m_tiles)
    tile.selected = selected;
  update();
  Q_EMIT selection_changed();
}

void TilePlot::select_all() { set_all(true); }
void TilePlot::select_none() { set_all(false); }

void TilePlot::invert_selection() {
  for (Tile& tile : m_tiles)
    tile.selected = !tile.selected;
  update();
  Q_EMIT selection_changed();
}

void TilePlot::zoom(double factor, const QPointF& centre) {
  m_projection.zoom(factor, centre);
  m_fitted = false;
  view_changed();
}

void TilePlot::pan(const QPointF& pixels) {
  m_projection.pan(pixels);
  m_fitted = false;
  view_changed();
}

void TilePlot::zoom_in() { zoom(zoom_step, QRectF(rect()).center()); }
void TilePlot::zoom_out() { zoom(1 / zoom_step, QRectF(rect()).center()); }

void TilePlot::zoom_fit() {
  const QRectF without_tiles = m_area.isNull() ? whole_world : m_area;
  m_projection = Projection::fitted(m_tiles.empty() ? without_tiles : area_of(m_tiles), QSizeF(size()));
  m_fitted = true;
  view_changed();
}

void TilePlot::mousePressEvent(QMouseEvent* event) {
  m_drag_start = m_drag_last = event->position();
  m_drag_button = event->button();
  // The left button selects; the other two, and the left one with Alt, move the map.
  const bool moves = event->button() != Qt::LeftButton || event->modifiers().testFlag(Qt::AltModifier) ||
                     (m_tiles.empty() && !m_area.isNull());
  m_drag = moves ? Drag::pan : Drag::pressed;
  if (m_drag == Drag::pan) setCursor(Qt::ClosedHandCursor);
}

void TilePlot::mouseMoveEvent(QMouseEvent* event) {
  if (m_drag == Drag::pan) {
    pan(event->position() - m_drag_last);
    m_drag_last = event->position();
    return;
  }
  if (m_drag == Drag::none) return;
  if (m_drag == Drag::pressed &&
      (event->position() - m_drag_start).manhattanLength() < QApplication::startDragDistance())
    return;
  m_drag = Drag::band;
  m_band->setGeometry(QRect(m_drag_start.toPoint(), event->position().toPoint()).normalized());
  m_band->show();
}

void TilePlot::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != m_drag_button) return;
  const Drag ended = m_drag;
  m_drag = Drag::none;
  m_band->hide();
  setCursor(Qt::ArrowCursor);
  const bool moved =
      (event->position() - m_drag_start).manhattanLength() >= QApplication::startDragDistance();
  if (ended == Drag::band) {
    select_band(QRectF(m_drag_start, event->position()).normalized(), event->modifiers());
  } else if (ended == Drag::pressed || (ended == Drag::pan && !moved)) {
    // A right click without moving changes the tile too.
    click(tile_at(event->position()), event->modifiers());
  }
}

void TilePlot::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void TilePlot::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / 120.0;
  if (steps != 0) zoom(std::pow(zoom_step, steps), event->position());
  event->accept();
}

// To the nearest tile whose centre lies in the direction of the arrow key.
void TilePlot::move_focus(int key) {
  if (m_focus >= m_tiles.size()) return;
  const QPointF here = tile_rectangle(m_focus).center();
  double best = 0;
  std::size_t found = no_tile;
  for (std::size_t index = 0; index < m_tiles.size(); ++index) {
    const QPointF step = tile_rectangle(index).center() - here;
    const bool sideways = key == Qt::Key_Left || key == Qt::Key_Right;
    const double sign = key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1;
    const double along = sign * (sideways ? step.x() : step.y());
    const double across = std::abs(sideways ? step.y() : step.x());
    if (along < 1) continue;
    const double distance = along + 2 * across;
    if (found == no_tile || distance < best) {
      best = distance;
      found = index;
    }
  }
  if (found != no_tile) m_focus = found;
  update();
}

void TilePlot::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::SelectAll)) return select_all();
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      return move_focus(event->key());
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return click(m_focus < m_tiles.size() ? m_focus : no_tile, event->modifiers());
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return zoom_in();
    case Qt::Key_Minus:
      return zoom_out();
    case Qt::Key_0:
    case Qt::Key_Home:
      return zoom_fit();
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace ferrowen::ui
