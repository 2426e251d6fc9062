// autoscr: the editor of automation scripts. What is wrong in a script is marked while it is typed.
#pragma once

#include <QDialog>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSyntaxHighlighter>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "automation/auto_editor.hpp"
#include "automation/auto_script.hpp"
#include "base/prompts.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Colours the tags of a script; those that are none stand out.
class ScriptHighlighter : public QSyntaxHighlighter {
  Q_OBJECT
 public:
  explicit ScriptHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {}

 protected:
  void highlightBlock(const QString& text) override;
};

// Controls, by object name: File1 (scripts of the folder), Text1 (the script), List1 (tags to insert), Text2
// (what is wrong, line by line), Command1 (Close), script_new, script_save, script_delete, script_help,
// script_run.
class autoscr : public QDialog {
  Q_OBJECT
 public:
  autoscr(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);

  // Opens a script; unsaved changes of the one before are asked about.
  void open_script(const QString& path);
  // The script that is to be run once the window is closed; "" for none.
  [[nodiscard]] QString script_to_run() const { return m_run; }

  // Opens a web address; "" or the reason why not.
  std::function<std::string(const std::string&)> open_address;

  void reject() override;

 private:
  QWidget* make_left();
  QWidget* make_centre();
  QWidget* make_right();
  QMenuBar* make_menu();
  void list_scripts();
  void show_text(const std::string& text, const ScriptPlace& place);
  // newscrpt: a script of the current settings.
  void begin_script();
  bool save();
  void remove();
  void run();
  void help();
  void insert(const QListWidgetItem* item);
  void check();
  void mark(const std::vector<AutoProblem>& problems);
  void go_to(const QListWidgetItem* item);
  // False when the person wants to stay.
  bool changes_are_settled(const char* question);
  // capa
  void show_caption();
  [[nodiscard]] std::vector<AutoProblem> problems() const;
  [[nodiscard]] bool changed() const;

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder m_binder;
  ScriptPlace m_place;
  QString m_run;
  QListWidget *m_files = nullptr, *m_tags = nullptr, *m_problems = nullptr;
  QPlainTextEdit* m_text = nullptr;
  QTimer m_check;
};

}  // namespace ferrowen::ui
