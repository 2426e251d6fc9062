#include "ui/colour_field.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace ferrowen::ui {

namespace {

constexpr double full_circle = 360, full_value = 255;
constexpr double hue_step = 5, lightness_step = 5;
constexpr int cross_radius = 5;

}  // namespace

ColourField::ColourField(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::CrossCursor);
}

QPoint ColourField::event_position(const QMouseEvent* event) { return event->pos(); }

void ColourField::show_position(const Hsl& position) {
  m_position = position;
  // A grey has no saturation to show; the field would have no hues left to pick from.
  const double saturation = position.saturation > 0 ? position.saturation : full_value;
  if (saturation != m_saturation) {
    m_saturation = saturation;
    draw_field();
  }
  update();
}

void ColourField::draw_field() {
  if (width() <= 0 || height() <= 0) return;
  m_field = QImage(size(), QImage::Format_RGB32);
  for (int row = 0; row < height(); ++row)
    for (int column = 0; column < width(); ++column) {
      const Rgb rgb = HSLToRGB02(column * full_circle / width(), m_saturation,
                                 full_value - row * full_value / std::max(1, height() - 1));
      m_field.setPixel(column, row, qRgb(rgb.red, rgb.green, rgb.blue));
    }
}

void ColourField::resizeEvent(QResizeEvent* /*event*/) { draw_field(); }

void ColourField::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.drawImage(0, 0, m_field);
  const QPointF middle(m_position.hue * width() / full_circle,
                       (full_value - m_position.lightness) * (height() - 1) / full_value);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(m_position.lightness > full_value / 2 ? Qt::black : Qt::white, 2));
  painter.drawEllipse(middle, cross_radius, cross_radius);
  if (!hasFocus()) return;
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void ColourField::pick_at(QPoint point) {
  const int column = std::clamp(point.x(), 0, width() - 1);
  const int row = std::clamp(point.y(), 0, height() - 1);
  pick(column * full_circle / width(), full_value - row * full_value / std::max(1, height() - 1));
}

void ColourField::pick(double hue, double lightness) {
  const Hsl picked_position{std::fmod(hue + full_circle, full_circle), m_saturation,
                            std::clamp(lightness, 0.0, full_value)};
  Q_EMIT picked(HSLToRGB02(picked_position.hue, picked_position.saturation, picked_position.lightness));
  // Rounding to bytes, black and white lose the hue; the cross stays where the person put it.
  m_position = picked_position;
  update();
}

void ColourField::keyPressEvent(QKeyEvent* event) {
  const Hsl from = m_position;
  switch (event->key()) {
    case Qt::Key_Left:
      return pick(from.hue - hue_step, from.lightness);
    case Qt::Key_Right:
      return pick(from.hue + hue_step, from.lightness);
    case Qt::Key_Up:
      return pick(from.hue, from.lightness + lightness_step);
    case Qt::Key_Down:
      return pick(from.hue, from.lightness - lightness_step);
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace ferrowen::ui
