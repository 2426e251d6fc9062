// The editor of mkgmap and splitter options: the tool's own options with their help, free text beside them,
// and option sets.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "ui/option_list.hpp"
#include "ui/option_set_bar.hpp"
#include "ui/options_view.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name:
//   option_sets  named sets        option_set_save, _save_as, _load, _delete   option_set_name, _keep  Save
//   as option_search, option_list, option_help, option_state   the options of the installed tool
//   option_insert  into the text   option_dem   DEM options go into the <dem> block
//   option_text  the free text     option_toggle  lines off and on             option_clear  all of it
//   option_remarks  what is doubtful                        option_next        goes to the next of it
//   option_ok, option_cancel
class option_editor : public QDialog {
  Q_OBJECT
 public:
  enum class Tool : unsigned char { mkgmap, splitter };
  // When it is accepted the options of that tool in the settings record have been changed and saved.
  option_editor(Workspace& workspace, Prompts& prompts, Progress& progress, Tool tool,
                QWidget* parent = nullptr);

  void accept() override;
  void reject() override;  // asks about changes first
  void done(int result) override;

 Q_SIGNALS:
  void catalogue_shown();  // the tool has been asked

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void make_controls();
  QWidget* make_list_side();
  QWidget* make_text_side();
  QWidget* make_bottom();
  void ask_tool_for_options();
  void insert_option();
  void clear_text();
  void show_remarks();
  void show_choice();
  bool apply();

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  OptionTool m_tool;
  OptionKeeper m_keeper;
  TextBinder m_binder;
  bool m_asked = false;
  OptionSetBar* m_sets = nullptr;
  OptionList* m_list = nullptr;
  OptionsView* m_text = nullptr;
  QPushButton *m_insert = nullptr, *m_next = nullptr;
  QCheckBox* m_dem = nullptr;
  QLabel* m_remarks = nullptr;
  QSplitter* m_columns = nullptr;
};

}  // namespace ferrowen::ui
