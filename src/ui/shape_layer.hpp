// Lines, polygons and points of an MP file as a layer of the plot.
#pragma once

#include <QRectF>
#include <vector>

#include "mp/mp_shapes.hpp"
#include "ui/plot_layers.hpp"

namespace ferrowen::ui {

class ShapeLayer : public PlotLayer {
 public:
  void set_shapes(std::vector<MpShape> shapes) { m_shapes = std::move(shapes); }
  [[nodiscard]] const std::vector<MpShape>& shapes() const { return m_shapes; }
  // What all of them cover (x: longitude, y: latitude); empty when there are none.
  [[nodiscard]] QRectF area() const;
  void paint(QPainter& painter, const PlotPaint& paint) override;

 private:
  std::vector<MpShape> m_shapes;
};

}  // namespace ferrowen::ui
