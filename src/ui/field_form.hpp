// Controls for fields of the settings record. The settings table says which kind of control a field gets; the
// form fills them from a record and takes their values back.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <string_view>
#include <vector>

#include "app/settings.hpp"
#include "base/prompts.hpp"
#include "ui/path_edit.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class FieldForm : public QObject {
  Q_OBJECT
 public:
  // Controls made here belong to `owner`.
  FieldForm(QWidget* owner, Prompts& prompts, TextBinder& binder);

  // Each control carries `object_name` (the field's own name when that is empty) and a tooltip from the
  // settings section of the interface texts. The field must exist.
  QCheckBox* flag(std::string_view field, const QString& object_name = {});
  QLineEdit* text(std::string_view field, const QString& object_name = {});
  QPlainTextEdit* lines(std::string_view field, const QString& object_name = {});
  PathEdit* path(std::string_view field, PathEdit::Kind kind, const QString& object_name = {});
  // A control of the caller's own making.
  void custom(std::string_view field, QWidget* control, std::function<void(const QString&)> show,
              std::function<QString()> value);

  void show(const Settings& settings);
  // One of the fields; nothing when the form has no control for it.
  void show_field(const Settings& settings, const Field& field);
  // Copies the values into the record. The first value that is refused is told in the status and its control
  // gets the focus; the values before it are taken.
  Status take(Settings& settings) const;
  // The values that differ from the record, as a person entered them, in the order of the controls.
  [[nodiscard]] std::vector<std::pair<const Field*, std::string>> changes(const Settings& settings) const;
  // The control of a field; nullptr when the form has none.
  [[nodiscard]] QWidget* control(std::string_view field) const;

 Q_SIGNALS:
  void changed();  // by the person

 private:
  struct Entry {
    const Field* field;
    QWidget* control;
    std::function<void(const QString&)> show;
    std::function<QString()> value;
  };
  void add(std::string_view field, QWidget* control, const QString& object_name, Entry entry);

  QWidget* m_owner;
  Prompts& m_prompts;
  TextBinder& m_binder;
  std::vector<Entry> m_entries;
};

}  // namespace ferrowen::ui
