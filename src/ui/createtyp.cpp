#include "ui/createtyp.hpp"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QSplitter>
#include <QTextBlock>
#include <QVBoxLayout>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "styletools/typ_export.hpp"
#include "ui/cmcolor.hpp"
#include "ui/qt_text.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr int window_width = 980, window_height = 640;
constexpr int list_share = 1, preview_share = 3;
constexpr int problems_height = 90;
constexpr int reading_pause = 200;  // milliseconds: editors write a file in several steps

}  // namespace

createtyp::createtyp(Workspace& workspace, Prompts& prompts, Progress& progress, QWidget* parent)
    : QDialog(parent),
      m_workspace(workspace),
      m_prompts(prompts),
      m_progress(progress),
      m_binder(workspace.texts) {
  setObjectName(QStringLiteral("createtyp"));
  setWindowTitle(m_binder.text(Section::labels, "typ_title"));
  auto* columns = new QSplitter(Qt::Horizontal, this);
  columns->setChildrenCollapsible(false);
  columns->addWidget(make_left());
  auto* right = new QWidget(this);
  auto* preview = new QVBoxLayout(right);
  preview->setContentsMargins(0, 0, 0, 0);
  preview->addWidget(make_preview(), 1);
  preview->addWidget(make_problems());
  columns->addWidget(right);
  columns->setStretchFactor(0, list_share);
  columns->setStretchFactor(1, preview_share);
  m_state = new QLabel(this);
  m_state->setObjectName(QStringLiteral("typ_state"));
  m_state->setWordWrap(true);
  auto* column = new QVBoxLayout(this);
  column->addWidget(columns, 1);
  column->addWidget(m_state);
  column->addLayout(make_buttons());
  for (const std::string& style : get_styles(m_workspace.settings))
    m_styles->addItem(to_qt(style));
  connect(m_styles, &QListWidget::currentRowChanged, this, &createtyp::show_style);
  connect(m_complete, &QCheckBox::toggled, this, &createtyp::show_sheet);
  connect(m_family_id, &QLineEdit::textChanged, this, &createtyp::show_text);
  m_reading.setSingleShot(true);
  m_reading.setInterval(reading_pause);
  connect(&m_reading, &QTimer::timeout, this, &createtyp::show_style);
  for (const auto changed : {&QFileSystemWatcher::fileChanged, &QFileSystemWatcher::directoryChanged})
    connect(&m_watcher, changed, this, [this] { m_reading.start(); });
  const QList<QListWidgetItem*> own =
      m_styles->findItems(to_qt(m_workspace.settings.style), Qt::MatchExactly);
  if (!own.isEmpty()) m_styles->setCurrentItem(own.front());
  show_style();
  assign_mnemonics(*this);
  resize(window_width, window_height);
  restoreGeometry(WindowLayout(m_workspace.settings).value(objectName()));
}

QWidget* createtyp::make_left() {
  auto* side = new QWidget(this);
  m_styles = new QListWidget(side);
  m_files = new QListWidget(side);
  m_family_id = new QLineEdit(QLatin1String(first_family_id), side);
  m_complete = new QCheckBox(side);
  m_styles->setObjectName(QStringLiteral("List2"));
  m_files->setObjectName(QStringLiteral("File1"));
  m_files->setSelectionMode(QAbstractItemView::NoSelection);
  m_family_id->setObjectName(QStringLiteral("Text1"));
  m_complete->setObjectName(QStringLiteral("typ_complete"));
  m_binder.caption(m_complete, Section::labels, "typ_complete");
  m_binder.tooltip(m_complete, "typ_complete");
  m_binder.tooltip(m_family_id, "typ_fid");
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](QWidget* control, const char* key, int share) {
    auto* label = new QLabel(side);
    label->setBuddy(control);
    m_binder.caption(label, Section::labels, key);
    m_binder.name(control, Section::labels, key);
    column->addWidget(label);
    column->addWidget(control, share);
  };
  add(m_styles, "style", 2);
  add(m_files, "typ_files", 1);
  add(m_family_id, "fid", 0);
  column->addWidget(m_complete);
  return side;
}

QWidget* createtyp::make_preview() {
  m_tabs = new QTabWidget(this);
  m_list = new TypList(m_binder, m_tabs);
  m_text = new QPlainTextEdit(m_tabs);
  m_list->setObjectName(QStringLiteral("typ_list"));
  m_text->setObjectName(QStringLiteral("typ_text"));
  m_text->setReadOnly(true);
  m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_binder.name(m_list, Section::labels, "typ_drawings");
  m_binder.name(m_text, Section::labels, "typ_text");
  m_tabs->addTab(m_list, m_binder.text(Section::labels, "typ_drawings"));
  m_tabs->addTab(m_text, m_binder.text(Section::labels, "typ_text"));
  return m_tabs;
}

QWidget* createtyp::make_problems() {
  m_problem_side = new QWidget(this);
  m_problems = new QListWidget(m_problem_side);
  m_problems->setObjectName(QStringLiteral("typ_problems"));
  m_problems->setMaximumHeight(problems_height);
  m_problems->setWordWrap(true);
  m_binder.tooltip(m_problems, "typ_problems");
  auto* label = new QLabel(m_problem_side);
  label->setBuddy(m_problems);
  m_binder.caption(label, Section::labels, "typ_problems");
  m_binder.name(m_problems, Section::labels, "typ_problems");
  auto* column = new QVBoxLayout(m_problem_side);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label);
  column->addWidget(m_problems);
  return m_problem_side;
}

QPushButton* createtyp::button(const char* name, const char* key) {
  auto* made = new QPushButton(this);
  made->setObjectName(QLatin1String(name));
  made->setAutoDefault(false);
  m_binder.caption(made, Section::commands, key);
  return made;
}

QLayout* createtyp::make_buttons() {
  QPushButton* create_button = button("Command1", "create_typ");
  QPushButton* save_button = button("typ_save_as", "save_as");
  QPushButton* check_button = button("typ_check", "check_typ");
  QPushButton* colours_button = button("typ_colours", "colours");
  QPushButton* close_button = button("typ_close", "close");
  create_button->setDefault(true);
  m_binder.tooltip(create_button, "create_typ");
  m_binder.tooltip(check_button, "check_typ");
  connect(create_button, &QPushButton::clicked, this, &createtyp::create);
  connect(save_button, &QPushButton::clicked, this, &createtyp::save_as);
  connect(check_button, &QPushButton::clicked, this, &createtyp::check);
  connect(colours_button, &QPushButton::clicked, this, &createtyp::show_colours);
  connect(close_button, &QPushButton::clicked, this, &QDialog::reject);
  auto* row = new QHBoxLayout;
  for (QPushButton* one : {create_button, save_button, check_button, colours_button})
    row->addWidget(one);
  row->addStretch();
  row->addWidget(close_button);
  return row;
}

SheetRequest createtyp::request() const {
  SheetRequest request;
  const QListWidgetItem* item = m_styles->currentItem();
  if (item != nullptr) request.style = locate_style(m_workspace.settings, from_qt(item->text()));
  request.family_id = from_qt(m_family_id->text());
  request.complete = m_complete->isChecked();
  request.icon_folder = m_workspace.path(icon_subfolder);
  return request;
}

void createtyp::show_style() {
  m_files->clear();
  const SheetRequest chosen = request();
  if (!chosen.style.folder.empty())
    for (const std::string& file : list_files(chosen.style.folder, {""}))
      m_files->addItem(to_qt(file));
  read_source(chosen);
  show_problems();
  show_sheet();
}

void createtyp::read_source(const SheetRequest& chosen) {
  m_source.reset();
  if (!chosen.style.folder.empty()) m_source = read_sheet_source(chosen);
  watch();
}

// The folders tell of files that come and go, the files of changes to them.
void createtyp::watch() {
  const QStringList watched = m_watcher.files() + m_watcher.directories();
  if (!watched.isEmpty()) m_watcher.removePaths(watched);
  if (!m_source) return;
  const SheetRequest chosen = request();
  std::vector<std::string> paths = m_source->files;
  paths.push_back(chosen.style.folder);
  paths.push_back(chosen.icon_folder);
  QStringList there;
  for (const std::string& path : paths)
    if (file_exists(path) || folder_exists(path)) there << to_qt(path);
  m_watcher.addPaths(there);
}

void createtyp::show_problems() {
  m_problems->clear();
  if (m_source) {
    for (const std::string& text : missing_files(m_source->kinds))
      m_problems->addItem(m_binder.said(text));
    for (const std::string& text : m_source->problems)
      m_problems->addItem(m_binder.said(text));
  }
  m_problem_side->setVisible(m_problems->count() > 0);
}

void createtyp::show_text() {
  if (m_source) m_text->setPlainText(shown_text(sheet_text(make_sheet(*m_source, request()))));
}

void createtyp::show_sheet() {
  m_hint.clear();
  if (!m_source) {
    m_list->clear();
    m_text->clear();
    m_state->setText(m_binder.text(Section::labels, "typ_choose_style"));
    return;
  }
  const Sheet sheet = make_sheet(*m_source, request());
  m_list->show_typ(sheet_preview(sheet));
  show_text();
  const auto& [polygon_types, line_types, point_types] = sheet.types;
  QString state = m_binder.text(Section::labels, "typ_count")
                      .arg(polygon_types.size())
                      .arg(line_types.size())
                      .arg(point_types.size());
  const std::size_t plain = sheet.complete ? 0 : count_without_colour(sheet);
  if (plain > 0) m_hint = m_binder.text(Section::labels, "typ_without_colour").arg(plain);
  if (plain > 0) state += QLatin1Char(' ') + m_hint;
  m_state->setText(state);
}

bool createtyp::write(const std::string& path) {
  const std::optional<Sheet> sheet = create_sheet(request(), m_prompts);
  if (!sheet) return false;
  const Status written = append_(path, *sheet);
  if (!written.ok()) m_prompts.tell(written.error, Icon::critical);
  return written.ok();
}

void createtyp::create() {
  const std::string path = m_workspace.path(sheet_file);
  if (!write(path)) return;
  show_judgement(judge(path), to_qt(path));
  open_in_typ_editor(m_workspace, path, m_prompts);
}

void createtyp::save_as() {
  const std::string all = from_qt(m_binder.text(Section::labels, "all_files"));
  const auto path = m_prompts.choose_file({from_qt(m_binder.text(Section::commands, "save_as")),
                                           {{"Text File (txt)", "*.txt"}, {all, "*"}},
                                           sheet_file,
                                           true,
                                           false});
  if (!path) return;
  const std::string target = with_ending(*path, ".txt");
  if (file_exists(target) && m_prompts.ask("Overwrite?") != Answer::yes) return;
  if (write(target)) show_judgement(judge(target), to_qt(target));
}

TypCheck createtyp::judge(const std::string& path) {
  return check_typ_text(m_workspace, m_prompts, m_progress, path);
}

void createtyp::check() {
  const Result<std::string> path = scratch_path(".txt");
  if (!path.ok()) return m_prompts.tell(path.error, Icon::critical);
  if (!write(path.value)) return;
  const TypCheck judged = judge(path.value);
  if (const Status removed = remove_file(path.value); !removed.ok())
    m_prompts.tell(removed.error, Icon::warning);
  if (!judged.not_checked.empty()) return m_prompts.tell(judged.not_checked, Icon::warning);
  show_judgement(judged, {});
}

// Where the text was written, what mkgmap says about it and, unless it accepts it, what is known to be
// missing.
void createtyp::show_judgement(const TypCheck& judged, const QString& written) {
  QStringList parts;
  if (!written.isEmpty()) parts << written;
  if (judged.accepted)
    parts << m_binder.text(Section::labels, "typ_accepted");
  else if (!judged.not_checked.empty())
    parts << m_binder.said(judged.not_checked);
  else
    parts << m_binder.text(Section::labels, "typ_refused").arg(m_binder.said(check_text(judged)));
  for (const std::string& warning : judged.warnings)
    parts << m_binder.said(warning);
  if (!judged.accepted && !m_hint.isEmpty()) parts << m_hint;
  m_state->setText(parts.join(QLatin1Char('\n')));
  if (judged.accepted || !judged.not_checked.empty()) return;
  m_tabs->setCurrentWidget(m_text);
  if (judged.line == 0) return;
  const QTextBlock line = m_text->document()->findBlockByNumber(static_cast<int>(judged.line) - 1);
  m_text->setTextCursor(QTextCursor(line));
  m_text->centerCursor();
}

void createtyp::show_colours() { cmcolor(m_workspace.texts, this).exec(); }

void createtyp::done(int result) {
  WindowLayout layout(m_workspace.settings);
  layout.set(objectName(), saveGeometry());
  layout.store(m_workspace.settings);
  QDialog::done(result);
}

}  // namespace ferrowen::ui
