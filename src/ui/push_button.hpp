// A button of a dialog that Enter does not press by itself.
#pragma once

#include <QPushButton>

namespace ferrowen::ui {

inline QPushButton* push_button(QWidget* parent, const char* name) {
  auto* button = new QPushButton(parent);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  return button;
}

}  // namespace ferrowen::ui
