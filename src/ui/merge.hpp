// merge: joins several PBF files into one.
#pragma once

#include <QListWidget>

#include "ui/path_edit.hpp"
#include "ui/tool_window.hpp"

namespace ferrowen::ui {

// Controls, by object name:
//   List1     the files, in their order    Text1     the merged file      Text2     osmconvert
//   Command1  adds files                   Command2  removes the selected
//   Command3  up    Command4  down         Command5  loads a list file    Command6  saves one
//   Command7  merges
class merge : public ToolWindow {
  Q_OBJECT
 public:
  merge(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QWidget* make_list();
  void add_files();
  void add(const std::string& path);
  void remove_selected();
  void move(int step);
  void load_list();
  void save_list();
  void start();
  [[nodiscard]] std::vector<std::string> files() const;

  QListWidget* m_files;
  PathEdit* m_target;
  PathEdit* m_tool;
};

}  // namespace ferrowen::ui
