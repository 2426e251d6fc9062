#include "ui/settings_controls.hpp"

#include <QEvent>
#include <QRegularExpressionValidator>
#include <QSpinBox>

#include "app/language_file.hpp"
#include "app/start_up.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "ui/colour_edit.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr bool on_windows = platform::separator == '\\';
constexpr int lines_shown = 5;
constexpr int largest_draw_priority = 100;

bool is_one_of(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_folder(std::string_view name) {
  return name.find("-folder") != std::string_view::npos || name.ends_with("-cache") || name == "wine-prefix";
}

bool is_file(const Field& field) {
  return field.page == Page::tools || is_one_of(field.name, {"input", "last-split-input", "typ",
                                                             "contour-tool", "last-script", "doctor-typ"});
}

bool is_jar(std::string_view name) { return is_one_of(name, {"mkgmap", "splitter"}); }

// Programs that exist for Windows alone, and run in Wine elsewhere.
bool is_windows_program(std::string_view name) {
  return is_one_of(name, {"basecamp", "mapsource", "homeport", "typ-editor"});
}

bool is_choice(std::string_view name) {
  return is_one_of(name, {"thread-priority", "style", "language", "launch"});
}

void set_lines_shown(QPlainTextEdit& edit, int lines) {
  const int margins = 2 * (edit.frameWidth() + static_cast<int>(edit.document()->documentMargin()));
  edit.setFixedHeight(edit.fontMetrics().lineSpacing() * lines + margins + 2);
}

std::vector<FileFilter> filters_of(const Field& field, const std::string& all_files) {
  const FileFilter all = {all_files, "*"};
  if (is_one_of(field.name, {"typ", "doctor-typ"})) return {{"TYP files (*.typ)", "*.typ;*.TYP"}, all};
  if (field.name == "last-script") return {{"Scripts (*.auto)", "*.auto"}, all};
  if (is_one_of(field.name, {"input", "last-split-input"}))
    return {{"All (pbf/osm/mp/o5m)", "*.pbf;*.osm;*.mp;*.o5m;*.osm.gz"}, all};
  const FileFilter any = {"Log Files", "*.*"};  // whatever has an ending, under the name users know it by
  if (is_jar(field.name)) return {{"Java Files", "*.jar"}, any};
  const FileFilter programs = {"EXE Files", "*.exe"};
  if (on_windows || is_windows_program(field.name)) return {programs, any};
  return {all, programs, any};  // programs have no ending here
}

}  // namespace

SettingsControls::SettingsControls(Workspace& workspace, Prompts& prompts, TextBinder& binder, QWidget* owner)
    : QObject(owner),
      m_workspace(workspace),
      m_prompts(prompts),
      m_binder(binder),
      m_owner(owner),
      m_form(owner, prompts, binder) {
  connect(&m_form, &FieldForm::changed, this, &SettingsControls::changed);
}

QWidget* SettingsControls::make(const Field& field, bool read_only) {
  if (read_only) return make_read_only(field);
  if (field.type == FieldType::flag) return m_form.flag(field.name);
  if (field.name == "max-jobs") return make_max_jobs();
  if (field.name == "colour") return make_colour(field);
  if (is_choice(field.name)) return make_combo(field);
  if (is_folder(field.name) || is_file(field)) return make_path(field);
  if (field.type == FieldType::number) return make_number(field);
  if (field.type == FieldType::lines) {
    QPlainTextEdit* edit = m_form.lines(field.name);
    set_lines_shown(*edit, lines_shown);
    return edit;
  }
  QLineEdit* line = m_form.text(field.name);
  if (is_one_of(field.name, {"max-nodes", "max-areas", "fid", "fid-base", "map-id"}))
    line->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), line));
  return line;
}

QWidget* SettingsControls::make_path(const Field& field) {
  const bool folder = is_folder(field.name);
  PathEdit* edit =
      m_form.path(field.name, folder ? PathEdit::Kind::folder : PathEdit::Kind::file, to_qt(field.name));
  m_binder.custom([this, edit, &field, folder] {
    edit->set_title(field.name == "output-folder"
                        ? QStringLiteral("Output Folder")
                        : m_binder.text(Section::settings, folder ? "set27" : "set26"));
    if (!folder) edit->set_filters(filters_of(field, m_workspace.texts(Section::labels, "all_files")));
  });
  connect(edit->line(), &QLineEdit::textEdited, this, &SettingsControls::changed);
  connect(edit, &PathEdit::path_chosen, this, [this, &field] { Q_EMIT path_changed(&field); });
  // The dialog belongs to the path: what it brought is looked at behind it.
  connect(edit->button(), &QToolButton::pressed, edit, [edit] { edit->setProperty("before", edit->text()); });
  connect(edit->button(), &QToolButton::clicked, this, [this, edit, &field] {
    const QString before = edit->property("before").toString();
    if (edit->text() == before) return;
    tell_other_name(field, *edit);
    if (field.name == "styles-folder") refuse_without_styles(*edit, before);
  });
  return edit;
}

void SettingsControls::tell_other_name(const Field& field, PathEdit& edit) {
  const std::string remark = jar_name_remark(field, from_qt(edit.text()));
  if (remark.empty()) return;
  edit.setProperty("told", edit.text());  // once is enough
  m_prompts.tell(remark, Icon::warning);
}

void SettingsControls::refuse_without_styles(PathEdit& edit, const QString& before) {
  const Field& field = *find_field("styles-folder");
  const CheckedSettings checked = check_settings(m_workspace.settings, {{&field, from_qt(edit.text())}},
                                                 m_workspace.folder.path(), facts_of_disk());
  for (const SettingsRemark& remark : checked.remarks) {
    if (remark.field != field.name || remark.kind != SettingsRemark::Kind::refused) continue;
    m_prompts.tell(remark.text, Icon::warning);
    edit.set_text(before);
  }
}

QWidget* SettingsControls::make_number(const Field& field) {
  auto* box = new QSpinBox(m_owner);
  int largest = largest_draw_priority;
  if (field.name == "hgt-slot") largest = hgt_folder_slots - 1;
  if (field.name == "clip-slot") largest = clip_folder_slots - 1;
  box->setRange(0, largest);
  box->setMaximumWidth(box->fontMetrics().averageCharWidth() * 16);
  box->setFocusPolicy(Qt::StrongFocus);
  box->installEventFilter(this);
  // A stored number outside the range is kept until somebody changes it.
  m_form.custom(
      field.name, box,
      [box](const QString& value) {
        const int number = value.toInt();
        box->setRange(std::min(box->minimum(), number), std::max(box->maximum(), number));
        box->setValue(number);
      },
      [box] { return QString::number(box->value()); });
  connect(box, &QSpinBox::valueChanged, this, &SettingsControls::changed);
  return box;
}

void SettingsControls::fill_combo(const Field& field, QComboBox* combo) const {
  const auto add = [combo](std::string_view text) { combo->addItem(to_qt(text), to_qt(text)); };
  if (field.name == "thread-priority")
    for (const std::string& priority : split(thread_priorities, ","))
      add(priority);
  if (field.name == "launch")
    for (const std::string_view program : {"Basecamp", "Mapsource", "HomePort"})
      add(program);
  if (field.name == "style") {
    add("default");
    for (const std::string& style : style_names(m_workspace.settings))
      if (style != "default") add(style);
  }
  if (field.name == "language") {
    combo->addItem(m_binder.text(Section::menus, "mlan_english"), QString());
    for (const Language& language : loadlanguages(m_workspace))
      combo->addItem(to_qt(language.display_name), to_qt(language.file));
  }
}

QWidget* SettingsControls::make_combo(const Field& field) {
  auto* combo = new QComboBox(m_owner);
  combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  combo->setMinimumContentsLength(20);
  combo->setFocusPolicy(Qt::StrongFocus);
  combo->installEventFilter(this);
  fill_combo(field, combo);
  // A choice that is gone stays what it is until somebody changes it.
  m_form.custom(
      field.name, combo,
      [combo](const QString& value) {
        if (combo->findData(value) < 0) combo->addItem(value, value);
        combo->setCurrentIndex(combo->findData(value));
      },
      [combo] { return combo->currentData().toString(); });
  connect(combo, &QComboBox::activated, this, &SettingsControls::changed);
  return combo;
}

QWidget* SettingsControls::make_colour(const Field& field) {
  auto* edit = new ColourEdit(m_binder, m_owner);
  edit->setObjectName(QStringLiteral("colour_row"));
  m_form.custom(
      field.name, edit, [edit](const QString& value) { edit->set_text(value); },
      [edit] { return edit->text(); });
  edit->line()->setObjectName(to_qt(field.name));
  connect(edit, &ColourEdit::changed, this, &SettingsControls::changed);
  return edit;
}

// Not a number box: what is no number above zero has to be told, and none at all is a value of its own.
QWidget* SettingsControls::make_max_jobs() {
  m_max_jobs = new QLineEdit(m_owner);
  m_max_jobs->setObjectName(QStringLiteral("maxj"));
  m_max_jobs->setMaximumWidth(m_max_jobs->fontMetrics().averageCharWidth() * 16);
  m_binder.custom([this] {
    m_max_jobs->setPlaceholderText(m_binder.text(Section::labels, "not_set"));
    m_max_jobs->setToolTip(m_binder.text(Section::settings, "max-jobs"));
  });
  connect(m_max_jobs, &QLineEdit::textEdited, this, &SettingsControls::changed);
  return m_max_jobs;
}

// On the ground of the window, so that nobody tries to write there.
QWidget* SettingsControls::make_read_only(const Field& field) {
  if (field.type != FieldType::lines) {
    QLineEdit* line = m_form.text(field.name);
    line->setReadOnly(true);
    line->setStyleSheet(QStringLiteral("QLineEdit { background: palette(window); }"));
    return line;
  }
  QPlainTextEdit* edit = m_form.lines(field.name);
  edit->setReadOnly(true);
  edit->setStyleSheet(QStringLiteral("QPlainTextEdit { background: palette(window); }"));
  set_lines_shown(*edit, lines_shown - 2);
  return edit;
}

QWidget* SettingsControls::focus_of(const Field& field) const {
  if (field.name == "max-jobs") return m_max_jobs;
  QWidget* control = m_form.control(field.name);
  return control != nullptr && control->focusProxy() != nullptr ? control->focusProxy() : control;
}

PathEdit* SettingsControls::path_of(const Field& field) const {
  return qobject_cast<PathEdit*>(m_form.control(field.name));
}

void SettingsControls::show(const Settings& settings) {
  m_form.show(settings);
  show_max_jobs(settings);
}

void SettingsControls::show_field(const Settings& settings, const Field& field) {
  m_form.show_field(settings, field);
  if (field.name == "max-jobs") show_max_jobs(settings);
}

void SettingsControls::show_max_jobs(const Settings& settings) {
  m_max_jobs->setText(settings.max_jobs > 0 ? QString::number(settings.max_jobs) : QString());
}

EnteredValues SettingsControls::changes(const Settings& settings) const {
  EnteredValues values = m_form.changes(settings);
  const QString stored = settings.max_jobs > 0 ? QString::number(settings.max_jobs) : QString();
  if (m_max_jobs->text() != stored) values.emplace_back(find_field("max-jobs"), from_qt(m_max_jobs->text()));
  return values;
}

Settings SettingsControls::entered(const Settings& settings) const {
  Settings record = settings;
  for (const auto& [field, text] : changes(settings))
    assign_stored(record, *field, text, m_workspace.folder.path());
  return record;
}

// The wheel scrolls the page; it must not change a value that happens to lie under the pointer.
bool SettingsControls::eventFilter(QObject* watched, QEvent* event) {
  const auto* control = qobject_cast<QWidget*>(watched);
  if (event->type() == QEvent::Wheel && control != nullptr && !control->hasFocus()) {
    event->ignore();
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace ferrowen::ui
