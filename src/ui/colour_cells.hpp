// Rows of colours to choose from, by mouse or with the arrow keys.
#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "styletools/colours.hpp"

namespace ferrowen::ui {

class ColourCells : public QWidget {
  Q_OBJECT
 public:
  ColourCells(int columns, QWidget* parent = nullptr);

  void set_colours(std::vector<Rgb> colours);
  // Draws a frame around this cell, or around none.
  void mark(std::optional<std::size_t> cell);
  [[nodiscard]] std::optional<std::size_t> marked() const { return m_marked; }
  [[nodiscard]] QRect cell_rect(std::size_t cell) const;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void picked(const ferrowen::Rgb& colour);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void pick(std::size_t cell);
  int m_columns;
  std::vector<Rgb> m_colours;
  std::optional<std::size_t> m_marked;
};

}  // namespace ferrowen::ui
