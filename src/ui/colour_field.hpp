// Hue from left to right, lightness from the top down: a field to pick a colour in.
#pragma once

#include <QImage>
#include <QMouseEvent>
#include <QWidget>

#include "styletools/colours.hpp"

namespace ferrowen::ui {

class ColourField : public QWidget {
  Q_OBJECT
 public:
  explicit ColourField(QWidget* parent = nullptr);

  // Moves the cross to the hue and lightness of a colour; the field takes on its saturation.
  void show_position(const Hsl& position);
  [[nodiscard]] const Hsl& position() const { return m_position; }
  [[nodiscard]] QSize sizeHint() const override { return {300, 150}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {160, 80}; }

 Q_SIGNALS:
  void picked(const ferrowen::Rgb& colour);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override { pick_at(event_position(event)); }
  void mouseMoveEvent(QMouseEvent* event) override { pick_at(event_position(event)); }
  void keyPressEvent(QKeyEvent* event) override;

 private:
  static QPoint event_position(const QMouseEvent* event);
  void pick_at(QPoint point);
  void pick(double hue, double lightness);
  void draw_field();
  Hsl m_position;
  double m_saturation = 255;  // of the field
  QImage m_field;
};

}  // namespace ferrowen::ui
