// about_box: name, version, licence and whose data and libraries the program uses.
#pragma once

#include <QDialog>

#include "app/workspace.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name: about_version, about_java, about_folder, about_close.
class about_box : public QDialog {
  Q_OBJECT
 public:
  explicit about_box(const Workspace& workspace, QWidget* parent = nullptr);

 private:
  QWidget* make_heading();
  QWidget* make_rows(const Workspace& workspace);

  TextBinder m_binder;
};

}  // namespace ferrowen::ui
