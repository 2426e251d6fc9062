// unzip: unpacks the zip archives of a folder.
#pragma once

#include <QListWidget>

#include "ui/path_edit.hpp"
#include "ui/tool_window.hpp"

namespace ferrowen::ui {

// Controls, by object name: Text1 the folder, Text2 7-Zip, List1 the archives found, Command1 unzips.
class unzip : public ToolWindow {
  Q_OBJECT
 public:
  unzip(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);

 private:
  void show_archives();
  void unpack();

  PathEdit* m_folder;
  PathEdit* m_tool;
  QListWidget* m_archives;
};

}  // namespace ferrowen::ui
