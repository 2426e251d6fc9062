// surplus: map folders that no registered family uses any more, to delete or to register again.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/cleanup.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name: Dir2 (the folder whose subfolders are searched), surplus_browse, surplus_search,
// List2 (unused map folders, with check boxes), surplus_all, surplus_delete, surplus_recover, surplus_close.
class surplus : public QDialog {
  Q_OBJECT
 public:
  surplus(Workspace& workspace, Prompts& prompts, Progress& progress, QWidget* parent = nullptr);

 private:
  using Folders = std::vector<std::string>;
  QWidget* make_folder_row();
  void make_list();
  QWidget* make_buttons();
  // unused_maps is the search itself, below in the pipeline.
  void search();
  void show_folders(const Folders& folders);
  void browse();
  void tick_all();
  void delete_ticked();
  void recover_ticked();
  void show_ticked();
  [[nodiscard]] Folders ticked() const;

  Workspace& m_workspace;
  Prompts& m_prompts;
  CleanupServices m_services;
  TextBinder m_binder;
  QComboBox* m_folder = nullptr;
  QTreeWidget* m_list = nullptr;
  QLabel* m_total = nullptr;
};

}  // namespace ferrowen::ui
