#include "ui/plot_button.hpp"

#include <QPainter>

namespace ferrowen::ui {

namespace {

constexpr int button_pixels = 28;
constexpr double sign_share = 0.5;  // of the button's height

// Four tiles; those whose bit is set are filled.
void draw_tiles(QPainter& painter, const QRectF& area, unsigned filled) {
  const QSizeF half = area.size() / 2;
  for (unsigned index = 0; index < 4; ++index) {
    const QPointF corner = area.topLeft() + QPointF((index % 2) * half.width(), (index / 2) * half.height());
    const QRectF tile(corner, half);
    if ((filled >> index & 1U) != 0) painter.fillRect(tile, painter.pen().color());
    painter.drawRect(tile);
  }
}

void draw_plus_minus(QPainter& painter, const QRectF& area, bool plus) {
  painter.setPen(QPen(painter.pen().color(), 2));
  painter.drawLine(QPointF(area.left(), area.center().y()), QPointF(area.right(), area.center().y()));
  if (plus)
    painter.drawLine(QPointF(area.center().x(), area.top()), QPointF(area.center().x(), area.bottom()));
}

// The corners of a frame around a small tile.
void draw_fit(QPainter& painter, const QRectF& area) {
  const double arm = area.width() / 4;
  for (const QPointF& corner : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()}) {
    const double x = corner.x() < area.center().x() ? arm : -arm;
    const double y = corner.y() < area.center().y() ? arm : -arm;
    painter.drawLine(corner, corner + QPointF(x, 0));
    painter.drawLine(corner, corner + QPointF(0, y));
  }
  painter.drawRect(area.adjusted(arm, arm, -arm, -arm));
}

}  // namespace

PlotButton::PlotButton(Sign sign, QWidget* parent) : QToolButton(parent), m_sign(sign) {
  setAutoRaise(true);
  setFocusPolicy(Qt::TabFocus);
}

QSize PlotButton::sizeHint() const { return {button_pixels, button_pixels}; }

void PlotButton::paintEvent(QPaintEvent* event) {
  QToolButton::paintEvent(event);
  QPainter painter(this);
  painter.setPen(
      QPen(palette().color(isEnabled() ? QPalette::Normal : QPalette::Disabled, QPalette::ButtonText), 1));
  const double side = height() * sign_share;
  const QRectF area(QRectF(rect()).center() - QPointF(side / 2, side / 2), QSizeF(side, side));
  switch (m_sign) {
    case Sign::all:
      return draw_tiles(painter, area, 0b1111);
    case Sign::none:
      return draw_tiles(painter, area, 0);
    case Sign::inverted:
      return draw_tiles(painter, area, 0b1001);
    case Sign::zoom_in:
    case Sign::zoom_out:
      return draw_plus_minus(painter, area, m_sign == Sign::zoom_in);
    case Sign::zoom_fit:
      return draw_fit(painter, area);
  }
}

}  // namespace ferrowen::ui
