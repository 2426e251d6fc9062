// doctor: the Style Doctor. A style is checked alone and against a TYP file; every finding leads to its rule,
// every type shows its drawing.
#pragma once

#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QTreeWidget>
#include <array>
#include <functional>
#include <optional>
#include <string>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "styletools/style_doctor.hpp"
#include "ui/doctor_table.hpp"
#include "ui/path_edit.hpp"
#include "ui/style_view.hpp"
#include "ui/text_binder.hpp"
#include "ui/typ_list.hpp"
#include "ui/typ_preview.hpp"

namespace ferrowen::ui {

// Controls, by object name:
//   doctor_style  style      doctor_typ  TYP file      Option2_0, _1, _2  polygons, lines, points
//   Combo4  draw order below which transparent polygons are told
//   doctor_check_NAME  one check (typ, road-class, resolution: Command2, level: Command6, tags: Command11,
//                      unused: Command12, style, places)      doctor_all  all checks of all kinds
//   Command13  whole report into "typ.txt"
//   List4  report list     doctor_show  one check of it     doctor_filter  words     doctor_counts
//   Combo3  types of the style      List2  conditions      doctor_tags, doctor_tag_search  its tags
//   doctor_typ_list  types of the TYP file
//   doctor_export_text, doctor_export_csv, doctor_export_editor, doctor_close
class doctor : public QDialog {
  Q_OBJECT
 public:
  doctor(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);

  void done(int result) override;
  // Opens a web address; "" or the reason why not. The desktop's browser unless a test puts something else
  // here.
  std::function<std::string(const std::string&)> open_address;

 private:
  void make_controls();
  QWidget* make_top();
  QWidget* make_checks();
  QWidget* make_list();
  QWidget* make_style_side();
  QWidget* make_tags();
  QWidget* make_bottom();
  QPushButton* button(const char* name, const char* caption, void (doctor::*work)());

  [[nodiscard]] StyleLocation location() const;
  [[nodiscard]] RuleKind chosen_kind() const;
  // The rule file of a kind as it is on the disk now; null when there is none, which has been told then.
  const LoadedStyle* load(RuleKind kind);
  bool load_typ();
  void forget_typ();
  void show_typ();
  void style_changed();
  void show_kind(RuleKind kind);
  void show_types(const LoadedStyle& style);
  void show_tags();
  void run(DoctorCheck check);
  void run_all();
  void whole_report();
  void show_report(DoctorReport report);
  void show_counts();
  void show_row(const QModelIndex& index);
  void show_type(int index);
  void show_condition(int row);
  void search_tag();
  void export_text();
  void export_csv();
  void export_editor();

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder m_binder;
  std::array<std::optional<LoadedStyle>, 3> m_styles;  // as last read, by kind
  std::optional<RuleKind> m_shown;                     // the kind whose text is shown
  std::optional<TypFile> m_typ;
  DoctorTable m_table;
  DoctorFilter m_filter;
  QComboBox *m_style = nullptr, *m_show = nullptr, *m_types = nullptr;
  PathEdit* m_typ_path = nullptr;
  QButtonGroup* m_kinds = nullptr;
  QSpinBox* m_lowest = nullptr;
  QTableView* m_list = nullptr;
  QLabel* m_counts = nullptr;
  StyleView* m_text = nullptr;
  QListWidget* m_conditions = nullptr;
  QTreeWidget* m_tags = nullptr;
  TypPreview* m_preview = nullptr;
  TypList* m_typ_list = nullptr;
  QSplitter* m_columns = nullptr;
};

}  // namespace ferrowen::ui
