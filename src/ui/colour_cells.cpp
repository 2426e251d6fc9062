#include "ui/colour_cells.hpp"

#include <QKeyEvent>
#include <QPainter>

namespace ferrowen::ui {

namespace {

constexpr int cell_width = 40, cell_height = 24, gap = 3;

QColor qt_colour(const Rgb& rgb) { return {rgb.red, rgb.green, rgb.blue}; }

}  // namespace

ColourCells::ColourCells(int columns, QWidget* parent) : QWidget(parent), m_columns(columns) {
  setFocusPolicy(Qt::StrongFocus);
}

void ColourCells::set_colours(std::vector<Rgb> colours) {
  m_colours = std::move(colours);
  updateGeometry();
  update();
}

void ColourCells::mark(std::optional<std::size_t> cell) {
  m_marked = cell;
  update();
}

QRect ColourCells::cell_rect(std::size_t cell) const {
  const int index = static_cast<int>(cell);
  return {index % m_columns * (cell_width + gap) + gap, index / m_columns * (cell_height + gap) + gap,
          cell_width, cell_height};
}

QSize ColourCells::sizeHint() const {
  const int rows = (static_cast<int>(m_colours.size()) + m_columns - 1) / m_columns;
  return {m_columns * (cell_width + gap) + gap, rows * (cell_height + gap) + gap};
}

void ColourCells::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  for (std::size_t cell = 0; cell < m_colours.size(); ++cell) {
    const QRect area = cell_rect(cell);
    painter.fillRect(area, qt_colour(m_colours[cell]));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area.adjusted(0, 0, -1, -1));
    if (cell != m_marked) continue;
    painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Text), 2));
    painter.drawRect(area.adjusted(-1, -1, 1, 1));
  }
  if (hasFocus() && !m_marked) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void ColourCells::mousePressEvent(QMouseEvent* event) {
  for (std::size_t cell = 0; cell < m_colours.size(); ++cell)
    if (cell_rect(cell).contains(event->pos())) pick(cell);
}

void ColourCells::keyPressEvent(QKeyEvent* event) {
  const int count = static_cast<int>(m_colours.size());
  const int at = m_marked ? static_cast<int>(*m_marked) : -1;
  int next = -1;
  if (event->key() == Qt::Key_Right) next = at + 1;
  if (event->key() == Qt::Key_Left) next = at < 0 ? count - 1 : at - 1;
  if (event->key() == Qt::Key_Down && count > m_columns) next = at < 0 ? 0 : at + m_columns;
  if (event->key() == Qt::Key_Up && count > m_columns) next = at < 0 ? count - 1 : at - m_columns;
  if (next >= 0 && next < count)
    pick(static_cast<std::size_t>(next));
  else
    QWidget::keyPressEvent(event);
}

void ColourCells::pick(std::size_t cell) {
  mark(cell);
  Q_EMIT picked(m_colours[cell]);
}

}  // namespace ferrowen::ui
