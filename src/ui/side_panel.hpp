// A column of controls that scrolls when the window is low and is as wide as its controls need, up to a limit
// beyond which it scrolls sideways too: nothing in it can become unreachable.
#pragma once

#include <QScrollArea>

namespace ferrowen::ui {

class SidePanel : public QScrollArea {
  Q_OBJECT
 public:
  explicit SidePanel(QWidget* content, QWidget* parent = nullptr);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void fit();
};

}  // namespace ferrowen::ui
