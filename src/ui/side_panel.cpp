#include "ui/side_panel.hpp"

#include <QEvent>
#include <QScrollBar>
#include <algorithm>

namespace ferrowen::ui {

namespace {

constexpr int widest = 380;
constexpr int frame = 4;

}  // namespace

SidePanel::SidePanel(QWidget* content, QWidget* parent) : QScrollArea(parent) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setWidget(content);
  content->installEventFilter(this);
}

// The texts of another language need another width.
bool SidePanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) fit();
  return QScrollArea::eventFilter(watched, event);
}

void SidePanel::showEvent(QShowEvent* event) {
  QScrollArea::showEvent(event);
  fit();
}

void SidePanel::fit() {
  const int wanted = widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width() + frame;
  setMinimumWidth(std::min(wanted, widest));
}

}  // namespace ferrowen::ui
