#include "ui/autoscr.hpp"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QVBoxLayout>

#include "app/version.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/desktop.hpp"
#include "platform/paths.hpp"
#include "ui/push_button.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int window_width = 980, window_height = 620;
constexpr int typing_pause = 250;  // milliseconds without a key before the script is checked
constexpr int side_width = 170, centre_width = 530, tags_width = 265;
constexpr int message_continue = 171, message_cannot_find = 35;
constexpr int most_checked_letters = 1 << 20;  // more would hold up the typing
constexpr std::uint64_t largest_script = 16ULL << 20;

bool is_dark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

QColor tag_colour(bool dark) { return dark ? QColor(120, 180, 255) : QColor(0, 80, 170); }
QColor wrong_colour(bool dark) { return dark ? QColor(255, 120, 110) : QColor(190, 20, 10); }

}  // namespace

void ScriptHighlighter::highlightBlock(const QString& text) {
  const bool dark = is_dark(QPalette());
  for (qsizetype open = text.indexOf(QLatin1Char('<')); open >= 0;
       open = text.indexOf(QLatin1Char('<'), open + 1)) {
    const qsizetype close = text.indexOf(QLatin1Char('>'), open);
    if (close < 0) return;
    QString name = text.mid(open + 1, close - open - 1).trimmed();
    if (name.startsWith(QLatin1Char('/'))) name.remove(0, 1);
    const std::string tag = from_qt(name);
    const bool known = equal_ignoring_case(tag, auto_root) || find_auto_tag(tag) != nullptr;
    QTextCharFormat format;
    format.setForeground(known ? tag_colour(dark) : wrong_colour(dark));
    setFormat(static_cast<int>(open), static_cast<int>(close - open + 1), format);
  }
}

autoscr::autoscr(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : QDialog(parent),
      open_address(platform::open_with_desktop),
      m_workspace(workspace),
      m_prompts(prompts),
      m_binder(workspace.texts) {
  setObjectName(QStringLiteral("autoscr"));
  auto* columns = new QSplitter(this);
  columns->setChildrenCollapsible(false);
  columns->addWidget(make_left());
  columns->addWidget(make_centre());
  columns->addWidget(make_right());
  columns->setStretchFactor(1, 1);
  columns->setSizes({side_width, centre_width, tags_width});
  auto* buttons = new QDialogButtonBox(this);
  QPushButton* start = push_button(buttons, "script_run");
  buttons->addButton(start, QDialogButtonBox::ActionRole);
  m_binder.caption(start, Section::commands, "run_script");
  m_binder.tooltip(start, "run_script");
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  close->setObjectName(QStringLiteral("Command1"));
  close->setAutoDefault(false);
  m_binder.caption(close, Section::commands, "close");
  auto* column = new QVBoxLayout(this);
  column->setMenuBar(make_menu());
  column->addWidget(columns, 1);
  column->addWidget(buttons);
  connect(start, &QPushButton::clicked, this, &autoscr::run);
  connect(buttons, &QDialogButtonBox::rejected, this, &autoscr::reject);
  m_check.setSingleShot(true);
  m_check.setInterval(typing_pause);
  connect(&m_check, &QTimer::timeout, this, &autoscr::check);
  connect(m_text, &QPlainTextEdit::textChanged, this, [this] {
    show_caption();
    m_check.start();
  });
  assign_mnemonics(*this);
  resize(window_width, window_height);
  list_scripts();
  begin_script();
  const std::string& last = m_workspace.settings.last_script;
  if (is_plain_file(last)) open_script(to_qt(last));
  m_text->setFocus();
}

QWidget* autoscr::make_left() {
  auto* box = new QWidget(this);
  m_files = new QListWidget(box);
  m_files->setObjectName(QStringLiteral("File1"));
  m_binder.tooltip(m_files, "script_files");
  auto* label = new QLabel(box);
  label->setBuddy(m_files);
  m_binder.caption(label, Section::labels, "script_files");
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label);
  column->addWidget(m_files, 1);
  connect(m_files, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    open_script(to_qt(platform::join(m_workspace.settings.scripts_folder, from_qt(item->text()))));
  });
  connect(m_files, &QListWidget::itemClicked, m_files, &QListWidget::itemActivated);
  return box;
}

QWidget* autoscr::make_centre() {
  auto* box = new QSplitter(Qt::Vertical, this);
  box->setChildrenCollapsible(false);
  m_text = new QPlainTextEdit(box);
  m_text->setObjectName(QStringLiteral("Text1"));
  m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_binder.name(m_text, Section::labels, "script_text");
  new ScriptHighlighter(m_text->document());
  m_problems = new QListWidget(box);
  m_problems->setObjectName(QStringLiteral("Text2"));
  m_problems->setWordWrap(true);
  m_binder.name(m_problems, Section::labels, "script_problems");
  m_binder.tooltip(m_problems, "script_problems");
  box->addWidget(m_text);
  box->addWidget(m_problems);
  box->setStretchFactor(0, 4);
  box->setStretchFactor(1, 1);
  connect(m_problems, &QListWidget::itemClicked, this, &autoscr::go_to);
  connect(m_problems, &QListWidget::itemActivated, this, &autoscr::go_to);
  return box;
}

QWidget* autoscr::make_right() {
  auto* box = new QWidget(this);
  m_tags = new QListWidget(box);
  m_tags->setObjectName(QStringLiteral("List1"));
  m_binder.tooltip(m_tags, "script_tags");
  auto* label = new QLabel(box);
  label->setBuddy(m_tags);
  m_binder.caption(label, Section::labels, "script_tags");
  for (const std::string& line : script_tag_templates(m_workspace)) {
    auto* item = new QListWidgetItem(to_qt(line), m_tags);
    const std::string_view name = std::string_view(line).substr(0, line.find('>'));
    const AutoTag* tag = find_auto_tag(name.substr(name.find('<') + 1));
    if (tag != nullptr) item->setToolTip(m_binder.said(tag->meaning));
  }
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label);
  column->addWidget(m_tags, 1);
  // "Activated" would come beside every click where the desktop activates with one.
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* enter = new QShortcut(QKeySequence(key), m_tags);
    enter->setContext(Qt::WidgetShortcut);
    connect(enter, &QShortcut::activated, this, [this] {
      if (m_tags->currentItem() != nullptr) insert(m_tags->currentItem());
    });
  }
  connect(m_tags, &QListWidget::itemClicked, this, &autoscr::insert);
  return box;
}

QMenuBar* autoscr::make_menu() {
  auto* bar = new QMenuBar(this);
  QMenu* menu = bar->addMenu(QString());
  m_binder.caption(menu, "script_menu");
  const auto add = [&](const char* key, const QKeySequence& shortcut, auto work) {
    QAction* action = menu->addAction(QString());
    action->setObjectName(QString::fromUtf8(key));
    action->setShortcut(shortcut);
    m_binder.caption(action, key);
    connect(action, &QAction::triggered, this, work);
  };
  add("script_new", QKeySequence::New, [this] {
    if (changes_are_settled("Save data?")) begin_script();
  });
  add("script_save", QKeySequence::Save, [this] { save(); });
  add("script_delete", {}, [this] { remove(); });
  menu->addSeparator();
  add("script_help", QKeySequence::HelpContents, [this] { help(); });
  return bar;
}

void autoscr::list_scripts() {
  m_files->clear();
  const std::string folder = m_workspace.settings.scripts_folder;
  for (const std::string& name : list_files(folder, {std::string(auto_ending)}))
    m_files->addItem(to_qt(name));
}

void autoscr::show_text(const std::string& text, const ScriptPlace& place) {
  m_place = place;
  m_text->setPlainText(shown_text(text));
  m_text->document()->setModified(false);
  m_run.clear();
  check();
  show_caption();
}

void autoscr::begin_script() {
  show_text(new_script(m_workspace),
            {platform::join(m_workspace.settings.scripts_folder, std::string(untitled_script)), false});
}

void autoscr::open_script(const QString& path) {
  if (m_place.is_own && from_qt(path) == m_place.path && !changed()) return;
  if (!changes_are_settled("Save data?")) return;
  const Result<std::string> text = read_file(from_qt(path), largest_script);
  if (!text.ok()) {
    m_prompts.tell(m_workspace.message(message_cannot_find) + from_qt(path) + "\r\n" + text.error,
                   Icon::warning);
    return list_scripts();
  }
  show_text(decode_tool_text(text.value), {from_qt(path), true});
}

bool autoscr::changed() const { return m_text->document()->isModified(); }

std::vector<AutoProblem> autoscr::problems() const {
  return check_auto_script(parse_auto_script(from_qt(m_text->toPlainText())), auto_facts(m_workspace));
}

bool autoscr::save() {
  const std::vector<AutoProblem> found = problems();
  if (!found.empty() && m_prompts.ask(join_texts(problem_lines(found), crlf) + "\r\n\r\n" +
                                          m_workspace.message(message_continue),
                                      Buttons::yes_no, Icon::warning) != Answer::yes)
    return false;
  const std::string saved = save_script(m_workspace, m_prompts, m_place, from_qt(m_text->toPlainText()));
  if (saved.empty()) return false;
  m_place = {saved, true};
  m_text->document()->setModified(false);
  show_caption();
  list_scripts();
  return true;
}

void autoscr::remove() {
  // A file that only happens to have the name of a new script is not the one that is shown.
  if (!m_place.is_own || !file_exists(m_place.path) || !delete_script(m_prompts, m_place.path)) return;
  list_scripts();
  begin_script();
}

// What is run is what lies on the disk.
void autoscr::run() {
  if (!is_saved(m_place, from_qt(m_text->toPlainText())) && !save()) return;
  m_run = to_qt(m_place.path);
  accept();
}

void autoscr::help() {
  const std::string problem = open_address(std::string(project_page));
  if (!problem.empty()) m_prompts.tell(problem, Icon::warning);
}

void autoscr::insert(const QListWidgetItem* item) {
  QTextCursor cursor = m_text->textCursor();
  // Positions count letters here and bytes there.
  const QString before = m_text->toPlainText().left(cursor.position());
  const EditedText edited =
      insert_tag(from_qt(m_text->toPlainText()), from_qt(before).size(), from_qt(item->text()));
  const QString text = to_qt(edited.text).remove(QLatin1Char('\r'));
  const QString to_caret = to_qt(edited.text.substr(0, edited.caret)).remove(QLatin1Char('\r'));
  cursor.select(QTextCursor::Document);
  cursor.insertText(text);  // one step for "undo"
  cursor.setPosition(static_cast<int>(to_caret.size()));
  m_text->setTextCursor(cursor);
  m_text->setFocus();
}

void autoscr::check() {
  if (m_text->document()->characterCount() <= most_checked_letters) return mark(problems());
  m_check.stop();
  m_text->setExtraSelections({});
  m_problems->clear();
  m_problems->addItem(m_binder.text(Section::labels, "script_long"));
}

void autoscr::mark(const std::vector<AutoProblem>& problems) {
  m_problems->clear();
  QList<QTextEdit::ExtraSelection> marks;
  const std::vector<std::string> lines = problem_lines(problems);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    auto* item = new QListWidgetItem(m_binder.said(lines[i]), m_problems);
    if (i >= problems.size()) continue;
    item->setData(Qt::UserRole, static_cast<int>(problems[i].line));
    QTextEdit::ExtraSelection selection;
    selection.cursor =
        QTextCursor(m_text->document()->findBlockByNumber(static_cast<int>(problems[i].line) - 1));
    selection.cursor.select(QTextCursor::LineUnderCursor);
    selection.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    selection.format.setUnderlineColor(wrong_colour(is_dark(palette())));
    selection.format.setToolTip(item->text());
    marks.append(selection);
  }
  if (lines.empty()) m_problems->addItem(m_binder.text(Section::labels, "script_fine"));
  m_text->setExtraSelections(marks);
}

void autoscr::go_to(const QListWidgetItem* item) {
  const int line = item->data(Qt::UserRole).toInt();
  if (line == 0) return;
  m_text->setTextCursor(QTextCursor(m_text->document()->findBlockByNumber(line - 1)));
  m_text->setFocus();
}

bool autoscr::changes_are_settled(const char* question) {
  if (!changed()) return true;
  const Answer answer = m_prompts.ask(question, Buttons::yes_no_cancel);
  return answer == Answer::no || (answer == Answer::yes && save());
}

void autoscr::show_caption() { setWindowTitle(m_binder.said(script_caption(m_place.path, changed()))); }

void autoscr::reject() {
  if (changes_are_settled("Save changes?")) QDialog::reject();
}

}  // namespace ferrowen::ui
