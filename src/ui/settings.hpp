// The settings window: every field of the settings record, in pages, with a search over all of them.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "ui/settings_page.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by their names; those of the fields carry the name of their field:
//   pages          the nine pages      search         finds settings on all of them
//   find_tools     fills empty tool paths and asks every tool for its version
//   reset_page     defaults of the page that is shown
//   ok apply cancel                    maxj           max-jobs
class settings : public QDialog {
  Q_OBJECT
 public:
  // Opens at `page`. When it is accepted the record has been changed and saved.
  settings(Workspace& workspace, Prompts& prompts, Progress& progress, Page page, QWidget* parent = nullptr);

 public Q_SLOTS:
  void accept() override;
  // What was applied stays; nothing else is changed.
  void reject() override;
  void done(int result) override;  // the window's size is remembered

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void make_widgets();
  QWidget* make_side();
  QWidget* make_content();
  QWidget* make_buttons();
  QPushButton* button(std::string_view name, Section section, std::string_view key);
  void make_shortcuts();
  void apply_texts();
  void show_page(int page);
  void search();
  void find_first();
  [[nodiscard]] SettingsPage* page_at(int page) const { return m_pages[static_cast<std::size_t>(page)]; }

  bool apply();
  [[nodiscard]] bool settle(CheckedSettings& checked);
  void tell_other_names(const Settings& changed);
  bool keep(const Settings& changed);
  void apply_language(const std::string& before);
  void reveal(std::string_view field);

  void reset_page();
  void find_my_tools();
  void check_tools(const std::vector<const Field*>& fields);
  void check_tools_once(int page);

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  TextBinder m_binder;
  SettingsControls m_controls;
  std::vector<SettingsPage*> m_pages;
  std::vector<bool> m_tools_checked;  // by page
  QTimer m_when_shown;                // the tools of a page are asked once it is seen
  std::vector<const Field*> m_to_check;
  bool m_checking = false;
  bool m_applied = false;

  QLineEdit* m_search = nullptr;
  QListWidget* m_list = nullptr;
  QLabel* m_title = nullptr;
  QLabel* m_no_match = nullptr;
  QStackedWidget* m_stack = nullptr;
  QPushButton* m_find = nullptr;
  QPushButton* m_reset = nullptr;
  QWidget* m_head = nullptr;   // above the pages
  QWidget* m_frame = nullptr;  // the buttons below the pages
};

}  // namespace ferrowen::ui
