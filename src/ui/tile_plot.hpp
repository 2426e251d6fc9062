// The tile plot: the tiles of a split over a quiet coastline and a degree grid, to look at and to select
// from.
#pragma once

#include <QPixmap>
#include <QRubberBand>
#include <QWidget>
#include <memory>
#include <vector>

#include "app/tile.hpp"
#include "ui/plot_layers.hpp"

namespace ferrowen::ui {

class TilePlot : public QWidget {
  Q_OBJECT
 public:
  explicit TilePlot(QWidget* parent = nullptr);

  // Layers are painted in the order in which they were added, all of them beneath the tiles.
  void add_layer(std::unique_ptr<PlotLayer> layer);
  // Shows these tiles; `fit` brings all of them into view.
  void set_tiles(const TileList& tiles, bool fit);
  // A plot without tiles shows this area instead (x: longitude, y: latitude), and the left button moves it.
  void set_area(const QRectF& degrees);
  [[nodiscard]] const TileList& tiles() const { return m_tiles; }
  [[nodiscard]] QString empty_text() const { return m_empty_text; }
  void set_empty_text(const QString& text);
  // What a click does, told in the tooltip of every tile.
  void set_hint(const QString& select, const QString& change);
  // Where a tile stands now, in the widget's pixels.
  [[nodiscard]] QRectF tile_rectangle(std::size_t index) const;

  [[nodiscard]] QSize sizeHint() const override { return {520, 360}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {200, 140}; }

 public Q_SLOTS:
  void select_all();
  void select_none();
  void invert_selection();
  void zoom_in();
  void zoom_out();
  void zoom_fit();
  void refresh_layers();

 Q_SIGNALS:
  // The person changed what is selected; tiles() holds the new state.
  void selection_changed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  enum class Drag : unsigned char { none, pressed, band, pan };
  static constexpr std::size_t no_tile = static_cast<std::size_t>(-1);

  void paint_background(QPainter& painter);
  void paint_tiles(QPainter& painter);
  void paint_empty_text(QPainter& painter) const;
  void paint_label(QPainter& painter, const QRectF& rectangle, const Tile& tile) const;
  [[nodiscard]] std::size_t tile_at(const QPointF& point) const;
  void click(std::size_t index, Qt::KeyboardModifiers modifiers);
  void select_band(const QRectF& band, Qt::KeyboardModifiers modifiers);
  void select_range(std::size_t from, std::size_t to);
  void set_all(bool selected);
  void move_focus(int key);
  void zoom(double factor, const QPointF& centre);
  void pan(const QPointF& pixels);
  void view_changed();

  TileList m_tiles;
  std::vector<std::unique_ptr<PlotLayer>> m_layers;
  QRectF m_area;  // null: the whole world
  Projection m_projection;
  QPixmap m_background;
  bool m_background_valid = false;
  bool m_fitted = true;  // the view still shows all tiles: a new size fits them again
  QString m_empty_text, m_hint;
  std::size_t m_focus = 0;   // tile that the keyboard stands on
  std::size_t m_anchor = 0;  // where a Shift selection begins
  Drag m_drag = Drag::none;
  Qt::MouseButton m_drag_button = Qt::NoButton;
  QPointF m_drag_start, m_drag_last;
  QRubberBand* m_band;
};

}  // namespace ferrowen::ui
