// What a newcomer sees when a tool is missing, and what "Get the external tools" shows: every tool, whether
// it is there, and how to get it.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen {
struct ToolReport;
}

namespace ferrowen::ui {

class ToolCard;

class ToolsPage : public QWidget {
  Q_OBJECT
 public:
  ToolsPage(Workspace& workspace, Prompts& prompts, TextBinder& binder, QWidget* parent = nullptr);

  // Looks for the tools (fills empty paths of the settings) and shows what was found. True when a map can be
  // built: Java, mkgmap and splitter are there.
  bool look_again(Progress& progress);

 Q_SIGNALS:
  void check_requested();     // "Check again"
  void settings_requested();  // "Open settings"
  void sample_requested();    // "Try the sample map"
  void closed();              // back to the tile plot

 private:
  QWidget* make_head();
  QWidget* make_cards();
  QWidget* make_buttons();
  QPushButton* button(const char* name, const char* key, void (ToolsPage::*signal)());
  void open_link(const std::string& link);
  void show_sentence();

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder& m_binder;
  std::vector<ToolCard*> m_cards;
  QLabel* m_sentence = nullptr;
  QWidget* m_everything = nullptr;  // one command for all that is missing
  QLabel* m_command = nullptr;
  QPushButton* m_check = nullptr;
  QPushButton* m_sample = nullptr;
  std::string_view m_state = "tools_checking";  // the sentence that fits what was found
};

}  // namespace ferrowen::ui
