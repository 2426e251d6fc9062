// The small buttons above the tile plot. Their signs are drawn, so that they need no font and suit every
// theme.
#pragma once

#include <QToolButton>

namespace ferrowen::ui {

class PlotButton : public QToolButton {
  Q_OBJECT
 public:
  enum class Sign : unsigned char { all, none, inverted, zoom_in, zoom_out, zoom_fit };
  PlotButton(Sign sign, QWidget* parent);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Sign m_sign;
};

}  // namespace ferrowen::ui
