#include "ui/plot_layers.hpp"

#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace ferrowen::ui {

namespace {

constexpr double margin = 0.06;  // of the shown area, on each side
constexpr double least_degrees = 0.02;
constexpr double highest_scale = 50000;  // pixels per degree
constexpr double least_grid_pixels = 70;

// A tone between text and background, so that it suits light and dark themes.
QColor mixed(const QPalette& palette, double text_share) {
  const QColor text = palette.color(QPalette::Text);
  const QColor base = palette.color(QPalette::Base);
  const auto mix = [&](int one, int other) {
    return static_cast<int>(std::lround(text_share * one + (1 - text_share) * other));
  };
  return {mix(text.red(), base.red()), mix(text.green(), base.green()), mix(text.blue(), base.blue())};
}

QRectF bounds(const Shoreline& line) {
  return {QPointF(line.lower_left.longitude, line.lower_left.latitude),
          QPointF(line.upper_right.longitude, line.upper_right.latitude)};
}

bool touches(const QRectF& one, const QRectF& other) {
  return one.left() <= other.right() && one.right() >= other.left() && one.top() <= other.bottom() &&
         one.bottom() >= other.top();
}

QString degrees_text(double degrees, QChar positive, QChar negative) {
  const QString number = QString::number(std::abs(degrees), 'g', 6);
  if (degrees == 0) return number + QChar(0xB0);
  return number + QChar(0xB0) + (degrees < 0 ? negative : positive);
}

}  // namespace

Projection Projection::fitted(const QRectF& degrees, const QSizeF& size) {
  const double height = std::max(degrees.height(), least_degrees) * (1 + 2 * margin);
  const double width = std::max(degrees.width(), least_degrees) * (1 + 2 * margin);
  const double middle = std::clamp(degrees.center().y(), -85.0, 85.0);
  const double shape = std::max(0.05, std::cos(middle * std::numbers::pi / 180));
  Projection fit;
  fit.m_y_scale = std::min(size.height() / height, size.width() / (width * shape));
  fit.m_y_scale = std::max(fit.m_y_scale, 1e-3);
  fit.m_x_scale = fit.m_y_scale * shape;
  fit.m_west = degrees.center().x() - size.width() / fit.m_x_scale / 2;
  fit.m_north = degrees.center().y() + size.height() / fit.m_y_scale / 2;
  return fit;
}

QRectF Projection::to_pixels(const QRectF& degrees) const {
  return QRectF(to_pixels(degrees.bottom(), degrees.left()), to_pixels(degrees.top(), degrees.right()))
      .normalized();
}

QRectF Projection::view(const QSizeF& size) const {
  const QPointF corner = to_degrees({size.width(), size.height()});
  return QRectF(QPointF(m_west, corner.y()), QPointF(corner.x(), m_north));
}

void Projection::zoom(double factor, const QPointF& fixed_pixel) {
  const QPointF fixed = to_degrees(fixed_pixel);
  const double wanted = std::clamp(m_y_scale * factor, 1.0, highest_scale);
  factor = wanted / m_y_scale;
  m_y_scale *= factor;
  m_x_scale *= factor;
  m_west = fixed.x() - fixed_pixel.x() / m_x_scale;
  m_north = fixed.y() + fixed_pixel.y() / m_y_scale;
}

void Projection::pan(const QPointF& pixels) {
  m_west = std::clamp(m_west - pixels.x() / m_x_scale, -400.0, 400.0);
  m_north = std::clamp(m_north + pixels.y() / m_y_scale, -200.0, 200.0);
}

void CoastLayer::paint(QPainter& painter, const PlotPaint& paint) {
  const QRectF view = paint.projection.view(paint.size);
  const double smallest = 1.5 / paint.projection.pixels_per_degree();
  painter.setPen(QPen(mixed(paint.palette, 0.38), 1));
  painter.setBrush(Qt::NoBrush);
  QPolygonF polygon;
  for (const Shoreline& line : m_lines) {
    const QRectF box = bounds(line);
    if (!touches(box, view) || (box.width() < smallest && box.height() < smallest)) continue;
    polygon.clear();
    for (const Corner& point : line.points) {
      const QPointF pixel = paint.projection.to_pixels(point.latitude, point.longitude);
      // Points on the same pixel as the one before add nothing but time.
      if (!polygon.isEmpty() && (pixel - polygon.last()).manhattanLength() < 1.0) continue;
      polygon.append(pixel);
    }
    painter.drawPolyline(polygon);
  }
}

double grid_step(double pixels_per_degree) {
  constexpr std::array<double, 13> steps = {0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 30, 60, 90};
  for (const double step : steps) {
    if (step * pixels_per_degree >= least_grid_pixels) return step;
  }
  return steps.back();
}

namespace {

// Multiples of a step inside a range.
std::vector<double> multiples(double step, double low, double high) {
  std::vector<double> values;
  for (auto index = static_cast<long>(std::ceil(low / step)); static_cast<double>(index) * step <= high;
       ++index)
    values.push_back(static_cast<double>(index) * step);
  return values;
}

}  // namespace

void GridLayer::paint(QPainter& painter, const PlotPaint& paint) {
  const QRectF view = paint.projection.view(paint.size);
  const QPen line(mixed(paint.palette, 0.12), 1);
  const QPen text(mixed(paint.palette, 0.55), 1);
  const QFontMetricsF metrics(painter.font());
  const double x_step = grid_step(paint.projection.pixels_per_degree_east());
  for (const double longitude :
       multiples(x_step, std::max(view.left(), -180.0), std::min(view.right(), 180.0))) {
    const double x = paint.projection.to_pixels(0, longitude).x();
    painter.setPen(line);
    painter.drawLine(QPointF(x, 0), QPointF(x, paint.size.height()));
    painter.setPen(text);
    const QString label = degrees_text(longitude, QLatin1Char('E'), QLatin1Char('W'));
    if (x + metrics.horizontalAdvance(label) < paint.size.width())
      painter.drawText(QPointF(x + 3, paint.size.height() - 4), label);
  }
  const double y_step = grid_step(paint.projection.pixels_per_degree());
  for (const double latitude :
       multiples(y_step, std::max(view.top(), -90.0), std::min(view.bottom(), 90.0))) {
    const double y = paint.projection.to_pixels(latitude, 0).y();
    painter.setPen(line);
    painter.drawLine(QPointF(0, y), QPointF(paint.size.width(), y));
    painter.setPen(text);
    painter.drawText(QPointF(3, y + metrics.ascent()),
                     degrees_text(latitude, QLatin1Char('N'), QLatin1Char('S')));
  }
}

// Colours that can be told apart in a light and in a dark theme, quiet enough to lie beneath the tiles.
void HeightLayer::paint(QPainter& painter, const PlotPaint& paint) {
  constexpr int quiet = 70;
  constexpr int hatched = 150;
  for (const AreaCell& cell : m_cells) {
    const QRectF degrees(cell.west, cell.south, 1, 1);
    const QRectF pixels = paint.projection.to_pixels(degrees);
    if (!pixels.intersects(QRectF(QPointF(0, 0), paint.size))) continue;
    QColor colour(60, 160, 70);
    if (cell.state == AreaCell::State::missing) colour = QColor(215, 60, 40);
    if (cell.state == AreaCell::State::sea) colour = QColor(70, 130, 215);
    const bool missing = cell.state == AreaCell::State::missing;
    colour.setAlpha(missing ? hatched : quiet);
    painter.fillRect(pixels, QBrush(colour, missing ? Qt::BDiagPattern : Qt::SolidPattern));
    if (cell.state == AreaCell::State::sea) continue;
    painter.setPen(mixed(paint.palette, 0.75));
    painter.drawText(pixels.adjusted(3, 2, -3, -2), Qt::AlignHCenter | Qt::AlignTop,
                     QString::fromStdString(cell.name.substr(0, 7)));
  }
}

}  // namespace ferrowen::ui
