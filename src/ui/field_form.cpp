#include "ui/field_form.hpp"

#include <QSignalBlocker>
#include <algorithm>

#include "base/text.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

// A value of several lines is stored in one line; a person sees its lines.
QString value_for_person(const Settings& settings, const Field& field) {
  const std::string stored = stored_text(settings, field);
  return to_qt(field.type == FieldType::lines ? replace_all(stored, "\x1f", "\n") : stored);
}

}  // namespace

FieldForm::FieldForm(QWidget* owner, Prompts& prompts, TextBinder& binder)
    : QObject(owner), m_owner(owner), m_prompts(prompts), m_binder(binder) {}

void FieldForm::add(std::string_view field, QWidget* control, const QString& object_name, Entry entry) {
  entry.field = find_field(field);
  Q_ASSERT(entry.field != nullptr);
  entry.control = control;
  control->setObjectName(object_name.isEmpty() ? to_qt(field) : object_name);
  m_binder.custom([this, control, name = std::string(field)] {
    control->setToolTip(m_binder.text(Section::settings, name));
    if (control->accessibleName().isEmpty())
      control->setAccessibleName(m_binder.text(Section::settings, name));
  });
  m_entries.push_back(std::move(entry));
}

QCheckBox* FieldForm::flag(std::string_view field, const QString& object_name) {
  auto* box = new QCheckBox(m_owner);
  add(field, box, object_name,
      {nullptr, nullptr, [box](const QString& value) { box->setChecked(value == QLatin1String("1")); },
       [box] { return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0"); }});
  connect(box, &QCheckBox::toggled, this, &FieldForm::changed);
  return box;
}

QLineEdit* FieldForm::text(std::string_view field, const QString& object_name) {
  auto* line = new QLineEdit(m_owner);
  add(field, line, object_name,
      {nullptr, nullptr,
       [line](const QString& value) {
         line->setText(value);
         line->setCursorPosition(0);
       },
       [line] { return line->text(); }});
  connect(line, &QLineEdit::textEdited, this, &FieldForm::changed);
  return line;
}

QPlainTextEdit* FieldForm::lines(std::string_view field, const QString& object_name) {
  auto* edit = new QPlainTextEdit(m_owner);
  edit->setLineWrapMode(QPlainTextEdit::NoWrap);
  edit->setTabChangesFocus(true);
  add(field, edit, object_name,
      {nullptr, nullptr, [edit](const QString& value) { edit->setPlainText(value); },
       [edit] { return edit->toPlainText(); }});
  connect(edit, &QPlainTextEdit::textChanged, this, &FieldForm::changed);
  return edit;
}

PathEdit* FieldForm::path(std::string_view field, PathEdit::Kind kind, const QString& object_name) {
  auto* edit = new PathEdit(kind, m_prompts, m_binder, m_owner);
  add(field, edit, object_name + QStringLiteral("_row"),
      {nullptr, nullptr, [edit](const QString& value) { edit->set_text(value); },
       [edit] { return edit->text(); }});
  edit->line()->setObjectName(object_name.isEmpty() ? to_qt(field) : object_name);
  connect(edit, &PathEdit::path_chosen, this, &FieldForm::changed);
  return edit;
}

void FieldForm::custom(std::string_view field, QWidget* control, std::function<void(const QString&)> show,
                       std::function<QString()> value) {
  add(field, control, control->objectName(), {nullptr, nullptr, std::move(show), std::move(value)});
}

void FieldForm::show(const Settings& settings) {
  const QSignalBlocker quiet(this);
  for (const Entry& entry : m_entries)
    entry.show(value_for_person(settings, *entry.field));
}

void FieldForm::show_field(const Settings& settings, const Field& field) {
  const QSignalBlocker quiet(this);
  for (const Entry& entry : m_entries)
    if (entry.field == &field) entry.show(value_for_person(settings, field));
}

Status FieldForm::take(Settings& settings) const {
  for (const Entry& entry : m_entries) {
    const QString value = entry.value();
    if (value == value_for_person(settings, *entry.field)) continue;
    const Status taken = assign_checked(settings, *entry.field, from_qt(value));
    if (taken.ok()) continue;
    entry.control->setFocus();
    return taken;
  }
  return {};
}

std::vector<std::pair<const Field*, std::string>> FieldForm::changes(const Settings& settings) const {
  std::vector<std::pair<const Field*, std::string>> changed;
  for (const Entry& entry : m_entries) {
    const QString value = entry.value();
    if (value != value_for_person(settings, *entry.field)) changed.emplace_back(entry.field, from_qt(value));
  }
  return changed;
}

QWidget* FieldForm::control(std::string_view field) const {
  const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const Entry& entry) { return entry.field->name == field; });
  return found == m_entries.end() ? nullptr : found->control;
}

}  // namespace ferrowen::ui
