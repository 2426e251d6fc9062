// The control of each settings field in the settings window: the kind that fits what the field holds, its
// dialogs and filters. Filled from a record, read back as what the person entered.
#pragma once

#include <QComboBox>

#include "app/settings_check.hpp"
#include "app/workspace.hpp"
#include "ui/field_form.hpp"

namespace ferrowen::ui {

class SettingsControls : public QObject {
  Q_OBJECT
 public:
  // The controls belong to `owner`.
  SettingsControls(Workspace& workspace, Prompts& prompts, TextBinder& binder, QWidget* owner);

  // To be called once per field. A flag carries its own caption; `read_only` is for what the program keeps.
  QWidget* make(const Field& field, bool read_only);
  // Where the keyboard goes, and what a label belongs to.
  [[nodiscard]] QWidget* focus_of(const Field& field) const;
  [[nodiscard]] PathEdit* path_of(const Field& field) const;

  void show(const Settings& settings);
  void show_field(const Settings& settings, const Field& field);
  [[nodiscard]] EnteredValues changes(const Settings& settings) const;
  // The record with what was entered, unchecked: for looking at the tools before anything is accepted.
  [[nodiscard]] Settings entered(const Settings& settings) const;

 Q_SIGNALS:
  void changed();
  // A path that the person typed, dropped or chose.
  void path_changed(const Field* field);

 private:
  QWidget* make_path(const Field& field);
  QWidget* make_number(const Field& field);
  QWidget* make_combo(const Field& field);
  QWidget* make_colour(const Field& field);
  QWidget* make_max_jobs();
  QWidget* make_read_only(const Field& field);
  void fill_combo(const Field& field, QComboBox* combo) const;
  void show_max_jobs(const Settings& settings);
  void tell_other_name(const Field& field, PathEdit& edit);
  void refuse_without_styles(PathEdit& edit, const QString& before);
  bool eventFilter(QObject* watched, QEvent* event) override;

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder& m_binder;
  QWidget* m_owner;
  FieldForm m_form;
  QLineEdit* m_max_jobs = nullptr;
};

}  // namespace ferrowen::ui
