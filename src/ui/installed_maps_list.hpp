// installed_maps_list: the maps that the Garmin programs know, what is registered for each, and their
// removal.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/registry.hpp"
#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/installed_maps.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name: maps_search, Li (the list), maps_values (what the registry holds for the chosen
// one), maps_place (which registry), maps_remove, maps_open, maps_copy, maps_refresh, maps_unused,
// maps_close.
class installed_maps_list : public QDialog {
  Q_OBJECT
 public:
  installed_maps_list(Workspace& workspace, Prompts& prompts, Progress& progress, QWidget* parent = nullptr);

  // Opens a folder; "" or the reason why not. The desktop unless a test puts something else here.
  std::function<std::string(const std::string&)> open_folder;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* make_list();
  QWidget* make_values();
  QWidget* make_buttons();
  void refresh();
  void filter();
  void show_chosen();
  void remove_chosen();
  void open_chosen();
  void show_unused();
  [[nodiscard]] const InstalledMap* chosen() const;

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  TextBinder m_binder;
  std::unique_ptr<Registry> m_registry;
  std::vector<InstalledMap> m_maps;
  QLineEdit* m_search = nullptr;
  QTreeWidget* m_list = nullptr;
  QPlainTextEdit* m_values = nullptr;
  QLabel *m_place = nullptr, *m_count = nullptr;
  QPushButton *m_remove = nullptr, *m_open = nullptr, *m_copy = nullptr;
};

}  // namespace ferrowen::ui
