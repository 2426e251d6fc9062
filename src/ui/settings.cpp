#include "ui/settings.hpp"

#include <QKeyEvent>
#include <QShortcut>
#include <QVBoxLayout>

#include "app/language_file.hpp"
#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "app/tools.hpp"
#include "ui/qt_text.hpp"
#include "ui/qt_texts.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr QSize first_size(940, 640);
constexpr QSize least_size(760, 420);

Page page_of(int page) { return static_cast<Page>(page); }

std::string page_key(int page) { return "set" + std::to_string(page); }

}  // namespace

settings::settings(Workspace& workspace, Prompts& prompts, Progress& progress, Page page, QWidget* parent)
    : QDialog(parent),
      m_workspace(workspace),
      m_prompts(prompts),
      m_progress(progress),
      m_binder(workspace.texts),
      m_controls(workspace, prompts, m_binder, this),
      m_tools_checked(page_count) {
  setObjectName(QStringLiteral("settings"));
  make_widgets();
  make_shortcuts();
  m_controls.show(workspace.settings);
  apply_texts();
  resize(first_size);
  restoreGeometry(WindowLayout(workspace.settings).value(objectName()));
  m_list->setCurrentRow(static_cast<int>(page));
  m_list->setFocus();
  connect(&m_controls, &SettingsControls::path_changed, this, [this](const Field* field) {
    if (find_tool_advice(field->name) != nullptr) check_tools({field});
  });
}

void settings::make_widgets() {
  auto* columns = new QHBoxLayout;
  columns->addWidget(make_side());
  columns->addWidget(make_content(), 1);
  auto* rows = new QVBoxLayout(this);
  rows->addLayout(columns, 1);
  rows->addWidget(make_buttons());
  connect(m_list, &QListWidget::currentRowChanged, this, &settings::show_page);
  connect(m_search, &QLineEdit::textChanged, this, &settings::search);
  m_when_shown.setSingleShot(true);
  m_when_shown.setInterval(0);
  connect(&m_when_shown, &QTimer::timeout, this, [this] { check_tools_once(m_list->currentRow()); });
}

QWidget* settings::make_side() {
  auto* side = new QWidget(this);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  m_search = new QLineEdit(side);
  m_search->setObjectName(QStringLiteral("search"));
  m_search->setClearButtonEnabled(true);
  m_search->installEventFilter(this);
  m_list = new QListWidget(side);
  m_list->setObjectName(QStringLiteral("pages"));
  for (int page = 0; page < page_count; ++page)
    m_list->addItem(QString());
  m_list->setSpacing(3);
  m_list->setWordWrap(true);
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  column->addWidget(m_search);
  column->addWidget(m_list, 1);
  return side;
}

QWidget* settings::make_content() {
  auto* content = new QWidget(this);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(8, 0, 0, 0);
  m_head = new QWidget(content);
  auto* head = new QHBoxLayout(m_head);
  head->setContentsMargins(0, 0, 0, 4);
  m_title = new QLabel(m_head);
  QFont large = m_title->font();
  large.setPointSizeF(large.pointSizeF() * 1.4);
  large.setBold(true);
  m_title->setFont(large);
  m_find = button("find_tools", Section::settings, "set10");
  head->addWidget(m_title, 1);
  head->addWidget(m_find);
  column->addWidget(m_head);
  m_no_match = new QLabel(content);
  m_no_match->hide();
  column->addWidget(m_no_match, 1, Qt::AlignTop);
  m_stack = new QStackedWidget(content);
  for (int page = 0; page < page_count; ++page) {
    m_pages.push_back(new SettingsPage(page_of(page), m_workspace, m_controls, m_binder, m_stack));
    m_stack->addWidget(m_pages.back());
  }
  column->addWidget(m_stack, 1);
  connect(m_find, &QPushButton::clicked, this, &settings::find_my_tools);
  return content;
}

QPushButton* settings::button(std::string_view name, Section section, std::string_view key) {
  auto* made = new QPushButton(this);
  made->setObjectName(to_qt(name));
  made->setAutoDefault(false);
  m_binder.caption(made, section, key);
  return made;
}

QWidget* settings::make_buttons() {
  m_frame = new QWidget(this);
  auto* column = new QVBoxLayout(m_frame);
  column->setContentsMargins(0, 4, 0, 0);
  auto* hint = new QLabel(m_frame);
  hint->setWordWrap(true);
  m_binder.caption(hint, Section::settings, "set30");
  auto* row = new QHBoxLayout;
  m_reset = button("reset_page", Section::settings, "set12");
  QPushButton* ok = button("ok", Section::commands, "ok");
  QPushButton* apply_button = button("apply", Section::commands, "apply");
  QPushButton* cancel = button("cancel", Section::commands, "cancel");
  ok->setDefault(true);
  row->addWidget(m_reset);
  row->addStretch(1);
  row->addWidget(ok);
  row->addWidget(apply_button);
  row->addWidget(cancel);
  column->addWidget(hint);
  column->addLayout(row);
  connect(m_reset, &QPushButton::clicked, this, &settings::reset_page);
  connect(ok, &QPushButton::clicked, this, &settings::accept);
  connect(apply_button, &QPushButton::clicked, this, &settings::apply);
  connect(cancel, &QPushButton::clicked, this, &settings::reject);
  return m_frame;
}

void settings::make_shortcuts() {
  const auto add = [this](const QKeySequence& keys, const std::function<void()>& work) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, work);
  };
  add(QKeySequence::Find, [this] {
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
  });
  const auto turn = [this](int step) {
    for (int page = m_list->currentRow() + step; page >= 0 && page < page_count; page += step) {
      if (m_list->item(page)->isHidden()) continue;
      m_list->setCurrentRow(page);
      return;
    }
  };
  add(Qt::CTRL | Qt::Key_PageDown, [turn] { turn(1); });
  add(Qt::CTRL | Qt::Key_PageUp, [turn] { turn(-1); });
}

void settings::apply_texts() {
  m_binder.apply();
  setWindowTitle(m_binder.text(Section::settings, "set9"));
  m_search->setPlaceholderText(m_binder.text(Section::settings, "set11"));
  m_search->setAccessibleName(m_binder.text(Section::settings, "set11"));
  m_search->setToolTip(m_binder.text(Section::labels, "settings_search_hint"));
  m_list->setAccessibleName(m_binder.text(Section::settings, "set9"));
  m_no_match->setText(m_binder.text(Section::labels, "settings_no_match"));
  for (int page = 0; page < page_count; ++page)
    m_list->item(page)->setText(m_binder.text(Section::settings, page_key(page)));
  // As wide as its names, up to a limit; longer ones go on in a second line.
  m_list->parentWidget()->setFixedWidth(std::clamp(m_list->sizeHintForColumn(0) + 40, 180, 260));
  m_title->setText(m_binder.text(Section::settings, page_key(std::max(m_list->currentRow(), 0))));
  // Pages are seen one at a time: each may use every letter that the buttons do not.
  QSet<QChar> taken = assign_mnemonics(*m_frame);
  taken = assign_mnemonics(*m_head, taken);
  for (SettingsPage* page : m_pages)
    assign_mnemonics(*page, taken);
  setMinimumSize(least_size.expandedTo(layout()->minimumSize()));
}

void settings::show_page(int page) {
  if (page < 0) return;
  m_stack->setCurrentIndex(page);
  m_title->setText(m_binder.text(Section::settings, page_key(page)));
  m_find->setVisible(page_of(page) == Page::tools);
  m_when_shown.start();
}

void settings::search() {
  const QStringList words = m_search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  int first = -1;
  for (int page = 0; page < page_count; ++page) {
    const bool found = page_at(page)->filter(words) > 0;
    m_list->item(page)->setHidden(!found);
    if (found && first < 0) first = page;
  }
  m_no_match->setVisible(first < 0);
  m_title->setVisible(first >= 0);
  m_stack->setVisible(first >= 0);
  m_reset->setEnabled(words.isEmpty());
  m_find->setVisible(first >= 0 && page_of(m_list->currentRow()) == Page::tools);
  if (first >= 0 && m_list->currentItem()->isHidden()) m_list->setCurrentRow(first);
}

void settings::find_first() {
  if (!m_stack->isHidden()) page_at(m_list->currentRow())->focus_first_visible();
}

// Enter goes to what was found instead of closing the window, Escape gives up the search first.
bool settings::eventFilter(QObject* watched, QEvent* event) {
  if (watched != m_search || event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    find_first();
    return true;
  }
  if (key == Qt::Key_Escape && !m_search->text().isEmpty()) {
    m_search->clear();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

void settings::accept() {
  if (apply()) QDialog::accept();
}

void settings::reject() {
  if (m_applied)
    QDialog::accept();
  else
    QDialog::reject();
}

bool settings::apply() {
  CheckedSettings checked;
  if (!settle(checked)) return false;
  tell_other_names(checked.settings);
  return keep(checked.settings);
}

// Asks and tells until nothing is left to say. A No gives the window back to the person, with every value as
// it was entered.
bool settings::settle(CheckedSettings& checked) {
  const FolderFacts disk = facts_of_disk();
  while (true) {
    checked = check_settings(m_workspace.settings, m_controls.changes(m_workspace.settings),
                             m_workspace.folder.path(), disk);
    if (checked.remarks.empty()) return true;
    const SettingsRemark& first = checked.remarks.front();
    const bool question = first.kind == SettingsRemark::Kind::question;
    if (question && m_prompts.ask(first.text, Buttons::yes_no, Icon::warning) == Answer::yes) continue;
    if (!question) m_prompts.tell(first.text, Icon::warning);
    reveal(first.field);
    return false;
  }
}

// What was chosen in a dialog has been told there; this is for what was typed.
void settings::tell_other_names(const Settings& changed) {
  for (const char* name : {"mkgmap", "splitter"}) {
    const Field& field = *find_field(name);
    const std::string path = stored_text(changed, field);
    const PathEdit* edit = m_controls.path_of(field);
    const bool told = edit->property("told").toString() == edit->text();
    if (path == stored_text(m_workspace.settings, field) || told) continue;
    if (const std::string remark = jar_name_remark(field, path); !remark.empty())
      m_prompts.tell(remark, Icon::warning);
  }
}

// A record that could not be saved is not used either: Cancel still changes nothing.
bool settings::keep(const Settings& changed) {
  const Settings before = m_workspace.settings;
  m_workspace.settings = changed;
  if (const Status saved = savedata(m_workspace); !saved.ok()) {
    m_workspace.settings = before;
    m_prompts.tell(saved.error, Icon::critical);
    return false;
  }
  m_applied = true;
  apply_language(before.language);
  m_controls.show(m_workspace.settings);
  return true;
}

void settings::apply_language(const std::string& before) {
  if (m_workspace.settings.language != before) {
    const Status chosen = choose_language(m_workspace, m_workspace.settings.language);
    if (!chosen.ok()) m_prompts.tell(chosen.error, Icon::warning);
  }
  translate_qt(m_workspace);
  apply_texts();
}

void settings::reveal(std::string_view field) {
  const Field& wanted = *find_field(field);
  m_search->clear();
  m_list->setCurrentRow(static_cast<int>(wanted.page));
  page_at(static_cast<int>(wanted.page))->reveal(wanted);
}

void settings::reset_page() {
  const int page = m_list->currentRow();
  Workspace fresh = m_workspace;
  fresh.settings = m_controls.entered(m_workspace.settings);
  const std::vector<const Field*> fields = page_at(page)->editable_fields();
  for (const Field* field : fields)
    assign_stored(fresh.settings, *field, "", m_workspace.folder.path());
  fill_machine_defaults(fresh);
  for (const Field* field : fields)
    m_controls.show_field(fresh.settings, *field);
  m_tools_checked[static_cast<std::size_t>(page)] = false;
  check_tools_once(page);
}

void settings::find_my_tools() {
  Settings found = m_controls.entered(m_workspace.settings);
  find_tools(found);
  std::vector<const Field*> fields;
  for (const ToolAdvice& advice : tool_advice()) {
    const Field& field = *find_field(advice.field);
    if (m_controls.path_of(field)->text().trimmed().isEmpty()) m_controls.show_field(found, field);
    fields.push_back(&field);
  }
  check_tools(fields);
}

void settings::check_tools_once(int page) {
  if (m_tools_checked[static_cast<std::size_t>(page)]) return;
  m_tools_checked[static_cast<std::size_t>(page)] = true;
  std::vector<const Field*> fields;
  for (const Field* field : page_at(page)->editable_fields())
    if (find_tool_advice(field->name) != nullptr) fields.push_back(field);
  check_tools(fields);
}

// The tools are asked with what is entered now, on a workspace of their own: nothing is accepted yet. The
// window lives meanwhile, so that more can be asked for, or the window closed.
void settings::check_tools(const std::vector<const Field*>& fields) {
  for (const Field* field : fields) {
    if (std::find(m_to_check.begin(), m_to_check.end(), field) == m_to_check.end())
      m_to_check.push_back(field);
    page_at(static_cast<int>(field->page))
        ->forget_tool(*field, m_binder.text(Section::labels, "tools_checking"));
  }
  if (m_checking) return;
  m_checking = true;
  while (!m_to_check.empty() && isVisible()) {
    const Field* field = m_to_check.front();
    m_to_check.erase(m_to_check.begin());
    Workspace trial = m_workspace;
    trial.settings = m_controls.entered(m_workspace.settings);
    const ToolReport report = tool_state(trial, m_prompts, m_progress, field->name);
    page_at(static_cast<int>(field->page))->show_tool(report);
  }
  m_checking = false;
}

void settings::done(int result) {
  WindowLayout layout(m_workspace.settings);
  layout.set(objectName(), saveGeometry());
  layout.store(m_workspace.settings);
  QDialog::done(result);
}

}  // namespace ferrowen::ui
