#include "ui/shape_layer.hpp"

#include <algorithm>

namespace ferrowen::ui {

namespace {

constexpr double point_radius = 4, line_width = 2;
constexpr int fill_opacity = 70;

// Points on the same pixel as the one before add nothing but time.
QPolygonF polygon_of(const MpShape& shape, const Projection& projection) {
  QPolygonF polygon;
  for (const Position& point : shape.points) {
    const QPointF pixel = projection.to_pixels(point.latitude, point.longitude);
    if (polygon.isEmpty() || (pixel - polygon.last()).manhattanLength() >= 1.0) polygon.append(pixel);
  }
  return polygon;
}

}  // namespace

QRectF ShapeLayer::area() const {
  if (m_shapes.empty()) return {};
  const Position& first = m_shapes.front().points.front();
  double west = first.longitude, east = west, south = first.latitude, north = south;
  for (const MpShape& shape : m_shapes) {
    for (const Position& point : shape.points) {
      west = std::min(west, point.longitude);
      east = std::max(east, point.longitude);
      south = std::min(south, point.latitude);
      north = std::max(north, point.latitude);
    }
  }
  return {QPointF(west, south), QPointF(east, north)};
}

void ShapeLayer::paint(QPainter& painter, const PlotPaint& paint) {
  const QColor colour = paint.palette.color(QPalette::Highlight);
  QColor fill = colour;
  fill.setAlpha(fill_opacity);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, line_width));
  for (const MpShape& shape : m_shapes) {
    if (shape.kind == MpKind::point) continue;
    const QPolygonF polygon = polygon_of(shape, paint.projection);
    painter.setBrush(shape.kind == MpKind::polygon ? QBrush(fill) : QBrush(Qt::NoBrush));
    if (shape.kind == MpKind::polygon)
      painter.drawPolygon(polygon);
    else
      painter.drawPolyline(polygon);
  }
  painter.setPen(QPen(paint.palette.color(QPalette::Base), 1));
  painter.setBrush(paint.palette.color(QPalette::Text));
  for (const MpShape& shape : m_shapes) {
    if (shape.kind != MpKind::point) continue;
    const Position& point = shape.points.front();
    painter.drawEllipse(paint.projection.to_pixels(point.latitude, point.longitude), point_radius,
                        point_radius);
  }
  painter.restore();
}

}  // namespace ferrowen::ui
