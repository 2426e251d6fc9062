// What lies beneath the tiles of a plot: projection, coastline, degree grid. Further layers (cells of
// heights) derive from PlotLayer.
#pragma once

#include <QPainter>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <vector>

#include "app/coastline.hpp"
#include "elevation/height_cells.hpp"

namespace ferrowen::ui {

// Plate carrée with the middle latitude true to shape. Degrees to pixels of a widget and back.
class Projection {
 public:
  // The view that shows this area (x: longitude, y: latitude) inside `size`, with a margin.
  static Projection fitted(const QRectF& degrees, const QSizeF& size);

  [[nodiscard]] QPointF to_pixels(double latitude, double longitude) const {
    return {(longitude - m_west) * m_x_scale, (m_north - latitude) * m_y_scale};
  }
  [[nodiscard]] QRectF to_pixels(const QRectF& degrees) const;
  [[nodiscard]] QPointF to_degrees(const QPointF& pixels) const {
    return {m_west + pixels.x() / m_x_scale, m_north - pixels.y() / m_y_scale};
  }
  // Area in view for a widget of this size.
  [[nodiscard]] QRectF view(const QSizeF& size) const;
  [[nodiscard]] double pixels_per_degree() const { return m_y_scale; }  // northwards
  [[nodiscard]] double pixels_per_degree_east() const { return m_x_scale; }

  void zoom(double factor, const QPointF& fixed_pixel);
  void pan(const QPointF& pixels);

 private:
  double m_west = -180, m_north = 90;
  double m_x_scale = 1, m_y_scale = 1;
};

struct PlotPaint {
  const Projection& projection;
  QSizeF size;
  QPalette palette;
};

class PlotLayer {
 public:
  PlotLayer() = default;
  virtual ~PlotLayer() = default;
  PlotLayer(const PlotLayer&) = delete;
  PlotLayer& operator=(const PlotLayer&) = delete;
  virtual void paint(QPainter& painter, const PlotPaint& paint) = 0;
};

class CoastLayer : public PlotLayer {
 public:
  explicit CoastLayer(std::vector<Shoreline> lines) : m_lines(std::move(lines)) {}
  void paint(QPainter& painter, const PlotPaint& paint) override;

 private:
  std::vector<Shoreline> m_lines;
};

class GridLayer : public PlotLayer {
 public:
  void paint(QPainter& painter, const PlotPaint& paint) override;
};

// The degree cells under the tiles: heights found, missing, or sea.
class HeightLayer : public PlotLayer {
 public:
  void set_cells(std::vector<AreaCell> cells) { m_cells = std::move(cells); }
  [[nodiscard]] const std::vector<AreaCell>& cells() const { return m_cells; }
  void paint(QPainter& painter, const PlotPaint& paint) override;

 private:
  std::vector<AreaCell> m_cells;
};

// Distance of grid lines in degrees for a scale: 30, 10, 5, 2, 1, 0.5, ...
double grid_step(double pixels_per_degree);

}  // namespace ferrowen::ui
