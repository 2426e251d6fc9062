#include "ui/doctor.hpp"

#include <QHeaderView>
#include <QLineEdit>
#include <algorithm>

#include "app/settings_file.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/desktop.hpp"
#include "styletools/doctor_stage.hpp"
#include "styletools/style_tags.hpp"
#include "styletools/typ_export.hpp"
#include "styletools/typ_reader.hpp"
#include "ui/qt_text.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr int window_width = 1280, window_height = 720;
constexpr const char* columns_layout = "doctor.columns";

}  // namespace

doctor::doctor(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : QDialog(parent),
      open_address(platform::open_with_desktop),
      m_workspace(workspace),
      m_prompts(prompts),
      m_binder(workspace.texts),
      m_table(m_binder) {
  setObjectName(QStringLiteral("doctor"));
  setWindowTitle(m_binder.text(Section::labels, "doctor_title"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  make_controls();
  m_table.drawing = [this](RuleKind kind, const std::string& key) { return m_preview->icon(kind, key); };
  for (const std::string& style : get_styles(m_workspace.settings))
    m_style->addItem(to_qt(style));
  m_style->setCurrentText(to_qt(m_workspace.settings.style));
  const Settings& settings = m_workspace.settings;
  m_typ_path->set_text(to_qt(settings.doctor_typ.empty() ? settings.typ : settings.doctor_typ));
  connect(m_typ_path->line(), &QLineEdit::textChanged, this, &doctor::show_typ);
  show_typ();
  connect(m_style, &QComboBox::currentTextChanged, this, &doctor::style_changed);
  style_changed();
  assign_mnemonics(*this);
  resize(window_width, window_height);
  const WindowLayout layout(settings);
  restoreGeometry(layout.value(objectName()));
  m_columns->restoreState(layout.value(QLatin1String(columns_layout)));
}

void doctor::done(int result) {
  WindowLayout layout(m_workspace.settings);
  layout.set(objectName(), saveGeometry());
  layout.set(QLatin1String(columns_layout), m_columns->saveState());
  layout.store(m_workspace.settings);
  QDialog::done(result);
}

StyleLocation doctor::location() const {
  return locate_style(m_workspace.settings, from_qt(m_style->currentText()));
}

RuleKind doctor::chosen_kind() const { return static_cast<RuleKind>(std::max(0, m_kinds->checkedId())); }

// Read anew for every check: the style may have been edited a moment ago.
const LoadedStyle* doctor::load(RuleKind kind) {
  std::optional<LoadedStyle>& style = m_styles.at(static_cast<std::size_t>(kind));
  style = load_style(location(), kind);
  if (!style->text.is_missing()) return &*style;
  style.reset();
  return nullptr;
}

bool doctor::load_typ() {
  const std::string path = from_qt(m_typ_path->text());
  m_preview->set_typ(nullptr);
  m_typ = find_typ(path, location(), m_prompts);
  if (!m_typ) return false;
  m_preview->set_typ(&*m_typ);
  m_typ_list->show_typ(*m_typ);
  if (!m_typ->findings.empty())
    m_prompts.tell(path + "\r\n" + join_texts(finding_lines(*m_typ), crlf), Icon::warning);
  m_workspace.settings.doctor_typ = path;
  return true;
}

void doctor::forget_typ() {
  m_preview->set_typ(nullptr);
  m_typ.reset();
}

// While a path is typed nothing is told: only a file that can be read shows its types.
void doctor::show_typ() {
  m_typ_list->clear();
  const std::string path = from_qt(m_typ_path->text());
  if (!file_exists(path) || folder_exists(path)) return;
  if (const Result<TypFile> typ = loadbinary(path); typ.ok()) m_typ_list->show_typ(typ.value);
}

void doctor::style_changed() {
  m_styles = {};
  m_shown.reset();
  show_report({});
  show_kind(chosen_kind());
}

void doctor::show_kind(RuleKind kind) {
  const std::optional<LoadedStyle>& known = m_styles.at(static_cast<std::size_t>(kind));
  const LoadedStyle* style = known ? &*known : load(kind);
  m_shown = kind;
  const LoadedStyle none;
  m_text->show_style(style == nullptr ? none.text : style->text);
  show_types(style == nullptr ? none : *style);
  show_tags();
}

// "Combo3" and "List2".
void doctor::show_types(const LoadedStyle& style) {
  const QSignalBlocker quiet_types(m_types);
  const QSignalBlocker quiet_conditions(m_conditions);
  m_types->clear();
  for (const std::string& key : style.rules.types)
    m_types->addItem(to_qt(key));
  m_types->addItem(m_binder.text(Section::labels, "doctor_see_types"));
  m_types->setCurrentIndex(m_types->count() - 1);
  m_conditions->clear();
  for (const StyleRule& rule : style.rules.rules) {
    const std::string& condition = style.rules.statement_of(rule).condition;
    m_conditions->addItem(to_qt(condition).left(500));
  }
}

void doctor::run(DoctorCheck check) {
  if (check == DoctorCheck::typ && !load_typ()) return;
  if (check == DoctorCheck::road_class) m_kinds->button(static_cast<int>(RuleKind::lines))->setChecked(true);
  const LoadedStyle* style = load(chosen_kind());
  if (style == nullptr) return nodata(location(), m_prompts);
  tell_unread(style->text, m_prompts);
  show_kind(chosen_kind());
  const auto lowest = static_cast<std::size_t>(m_lowest->value());
  DoctorReport report = check == DoctorCheck::typ ? typ_damage(*m_typ) : DoctorReport{};
  report.append(run_check(check, *style, m_typ ? &*m_typ : nullptr, lowest));
  show_report(std::move(report));
}

// Every check of every rule file; without a TYP file all but that one.
void doctor::run_all() {
  if (m_typ_path->text().isEmpty())
    forget_typ();
  else if (!load_typ())
    return;
  Examination examination;
  examination.typ = m_typ ? &*m_typ : nullptr;
  examination.lowest_draw_order = static_cast<std::size_t>(m_lowest->value());
  for (const RuleKind kind : rule_kinds) {
    const LoadedStyle* style = load(kind);
    if (style == nullptr) continue;
    tell_unread(style->text, m_prompts);
    examination.kinds.push_back(style);
  }
  if (examination.kinds.empty()) return nodata(location(), m_prompts);
  DoctorReport report = examine(examination);
  show_kind(chosen_kind());
  // The lists of what is in order have buttons of their own.
  std::erase_if(report.rows, [](const DoctorRow& row) { return !row.counts(); });
  show_report(std::move(report));
}

// "Command13".
void doctor::whole_report() {
  if (!load_typ()) return;
  write_results(m_workspace, location(), *m_typ, static_cast<std::size_t>(m_lowest->value()), m_prompts);
}

void doctor::show_report(DoctorReport report) {
  m_table.show_report(std::move(report));
  show_counts();
  m_list->sortByColumn(-1, Qt::AscendingOrder);  // the report's own order until a heading is clicked
  if (m_filter.rowCount() > 0) m_list->selectRow(0);
}

void doctor::show_counts() {
  std::array<std::size_t, doctor_checks.size()> counts{};
  for (const DoctorRow& row : m_table.report().rows)
    if (row.counts()) ++counts.at(static_cast<std::size_t>(row.check));
  const QSignalBlocker quiet(m_show);
  m_show->clear();
  m_filter.set_check(std::nullopt);
  m_show->addItem(m_binder.text(Section::labels, "doctor_every_check").arg(m_table.report().issues));
  for (const DoctorCheck check : doctor_checks) {
    const std::string key = "doctor_" + std::string(check_name(check));
    const auto count = static_cast<int>(counts.at(static_cast<std::size_t>(check)));
    m_show->addItem(m_binder.text(Section::commands, key) + QStringLiteral(" (%1)").arg(count),
                    static_cast<int>(check));
  }
  m_counts->setText(m_binder.text(Section::labels, "doctor_counts").arg(m_table.report().issues));
}

// A finding was chosen: its rule in the text, its drawing below.
void doctor::show_row(const QModelIndex& index) {
  if (!index.isValid()) return m_preview->show_type(RuleKind::polygons, "");
  const DoctorRow& row = m_table.row(m_filter.mapToSource(index).row());
  m_preview->show_type(row.kind, row.key);
  if (row.file.empty()) return;
  if (m_shown != row.kind) {
    m_kinds->button(static_cast<int>(row.kind))->setChecked(true);
    show_kind(row.kind);
  }
  const std::optional<LoadedStyle>& style = m_styles.at(static_cast<std::size_t>(row.kind));
  m_text->show_place(row.file, row.line, style ? last_line(*style, row.file, row.line) : row.line);
}

void doctor::show_type(int index) {
  if (!m_shown) return;
  const std::optional<LoadedStyle>& style = m_styles.at(static_cast<std::size_t>(*m_shown));
  if (!style || index < 0 || static_cast<std::size_t>(index) >= style->rules.types.size()) return;
  const auto at = static_cast<std::size_t>(index);
  const StylePlace place = style->rules.statement_of(style->rules.rules[style->rules.first_rules[at]]).place;
  const std::string& file = style->text.files[place.file].path;
  m_text->show_place(file, place.line, last_line(*style, file, place.line));
  m_preview->show_type(*m_shown, style->rules.types[at]);
}

void doctor::show_condition(int row) {
  if (!m_shown) return;
  const std::optional<LoadedStyle>& style = m_styles.at(static_cast<std::size_t>(*m_shown));
  if (!style || row < 0 || static_cast<std::size_t>(row) >= style->rules.rules.size()) return;
  const StyleRule& rule = style->rules.rules[static_cast<std::size_t>(row)];
  const StyleStatement& statement = style->rules.statement_of(rule);
  m_text->show_place(style->text.files[statement.place.file].path, statement.place.line, statement.last_line);
  m_preview->show_type(*m_shown, rule.key);
}

void doctor::show_tags() {
  m_tags->clear();
  if (!m_shown) return;
  const std::optional<LoadedStyle>& style = m_styles.at(static_cast<std::size_t>(*m_shown));
  if (!style) return;
  for (const TagCount& tag : gettag(*style)) {
    auto* item = new QTreeWidgetItem(m_tags, {to_qt(tag.key), to_qt(tag.value), QString()});
    item->setData(2, Qt::DisplayRole, static_cast<int>(tag.rules));
  }
}

void doctor::search_tag() {
  const QTreeWidgetItem* item = m_tags->currentItem();
  if (item == nullptr) return;
  const std::string problem =
      open_address(tag_search_address(from_qt(item->text(0)), from_qt(item->text(1))));
  if (!problem.empty()) m_prompts.tell(problem, Icon::warning);
}

void doctor::export_text() { export_report(m_table.report(), ReportFormat::text, m_prompts); }
void doctor::export_csv() { export_report(m_table.report(), ReportFormat::csv, m_prompts); }

void doctor::export_editor() {
  if (!load_typ()) return;
  const std::optional<std::string> path =
      m_prompts.choose_file({"", {{"Export to Tyvask (tvkx)", "*.tvkx"}}, "untitled.tvkx", true, false});
  if (path) export_editor_files(*m_typ, *path, m_prompts);
}

}  // namespace ferrowen::ui
