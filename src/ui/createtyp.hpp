// createtyp: a first TYP text for a style, with what it will draw before it is written.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QFileSystemWatcher>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <optional>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "styletools/typ_compiler.hpp"
#include "styletools/typ_generator.hpp"
#include "ui/text_binder.hpp"
#include "ui/typ_list.hpp"

namespace ferrowen::ui {

// Controls, by their public names:
//   List2      styles                     File1     files of the style       Text1  family ID
//   typ_complete  neutral fills           typ_list  the drawings             typ_text  the text
//   typ_problems  what is wrong with the style, seen when something is
//   typ_state  what the sheet will hold   Command1  writes temp.txt and opens it in the TYP editor
//   typ_check  asks mkgmap                typ_save_as, typ_colours, typ_close
class createtyp : public QDialog {
  Q_OBJECT
 public:
  createtyp(Workspace& workspace, Prompts& prompts, Progress& progress, QWidget* parent = nullptr);

  void done(int result) override;

 private:
  QWidget* make_left();
  QWidget* make_preview();
  QLayout* make_buttons();
  QPushButton* button(const char* name, const char* key);
  [[nodiscard]] SheetRequest request() const;
  QWidget* make_problems();
  void show_style();
  void read_source(const SheetRequest& chosen);
  void watch();
  void show_problems();
  void show_sheet();
  void show_text();
  void create();
  void save_as();
  void check();
  bool write(const std::string& path);
  TypCheck judge(const std::string& path);
  void show_judgement(const TypCheck& judged, const QString& written);
  void show_colours();

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  TextBinder m_binder;
  QListWidget *m_styles = nullptr, *m_files = nullptr;
  QLineEdit* m_family_id = nullptr;
  QCheckBox* m_complete = nullptr;
  QTabWidget* m_tabs = nullptr;
  TypList* m_list = nullptr;
  QPlainTextEdit* m_text = nullptr;
  QLabel* m_state = nullptr;
  QListWidget* m_problems = nullptr;
  QWidget* m_problem_side = nullptr;
  // The style as it was read; read again when one of its files changes on the disk.
  std::optional<SheetSource> m_source;
  QFileSystemWatcher m_watcher;
  QTimer m_reading;
  QString m_hint;  // how many polygons have no colour, when there are such
};

}  // namespace ferrowen::ui
