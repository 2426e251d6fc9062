// The user guide, as it was installed, in a window of its own.
#pragma once

#include <QDialog>
#include <string>

#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class GuideWindow : public QDialog {
  Q_OBJECT
 public:
  // `language`: the language file in use, "" for English. The guide is English; its pictures show the windows
  // in that language when there are such.
  GuideWindow(const InterfaceTexts& texts, const std::string& path, const std::string& language,
              QWidget* parent = nullptr);

 private:
  TextBinder m_binder;
};

// Where the guide lies; "" when it was not installed.
std::string guide_path();

}  // namespace ferrowen::ui
