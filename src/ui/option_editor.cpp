#include "ui/option_editor.hpp"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPointer>
#include <QShortcut>
#include <QVBoxLayout>

#include "app/settings_file.hpp"
#include "base/text.hpp"
#include "pipeline/options_text.hpp"
#include "ui/push_button.hpp"
#include "ui/qt_text.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr int message_continue = 171, message_apply = 190, message_clear = 191;
constexpr int window_width = 980, window_height = 640;
constexpr qsizetype most_remarks = 3;
constexpr int list_share = 2, text_share = 3;

}  // namespace

option_editor::option_editor(Workspace& workspace, Prompts& prompts, Progress& progress, Tool tool,
                             QWidget* parent)
    : QDialog(parent),
      m_workspace(workspace),
      m_prompts(prompts),
      m_progress(progress),
      m_tool(tool == Tool::mkgmap ? OptionTool::mkgmap : OptionTool::splitter),
      m_keeper(tool == Tool::mkgmap ? OptionKeeper::mkgmap : OptionKeeper::splitter),
      m_binder(workspace.texts) {
  setObjectName(QStringLiteral("option_editor"));
  setWindowTitle(
      m_binder.text(Section::labels, tool == Tool::mkgmap ? "option_title_mkgmap" : "option_title_splitter"));
  make_controls();
  m_text->setPlainText(shown_text(current_options(m_workspace.settings, m_keeper)));
  m_sets->show_sets();
  show_remarks();
  show_choice();
  assign_mnemonics(*this);
  resize(window_width, window_height);
  const WindowLayout layout(m_workspace.settings);
  restoreGeometry(layout.value(objectName()));
  m_columns->restoreState(layout.value(QStringLiteral("option_editor.columns")));
}

void option_editor::make_controls() {
  // Made in the order in which the Tab key visits them.
  m_sets = new OptionSetBar(m_workspace, m_prompts, m_binder, m_keeper,
                            {[this] { return from_qt(m_text->toPlainText()); },
                             [this](const std::string& text) { m_text->replace_text(shown_text(text)); }},
                            this);
  m_list = new OptionList(m_binder, this);
  m_columns = new QSplitter(Qt::Horizontal, this);
  m_columns->setChildrenCollapsible(false);
  m_columns->addWidget(make_list_side());
  m_columns->addWidget(make_text_side());
  m_columns->setStretchFactor(0, list_share);
  m_columns->setStretchFactor(1, text_share);
  auto* column = new QVBoxLayout(this);
  column->addWidget(m_sets);
  column->addWidget(m_columns, 1);
  column->addWidget(make_bottom());
  connect(m_text, &OptionsView::linted, this, [this] {
    m_sets->text_changed();
    show_remarks();
    m_list->show_places(m_text->lint());
  });
  connect(m_text, &OptionsView::cursorPositionChanged, this, &option_editor::show_remarks);
  connect(m_list, &OptionList::current_changed, this, &option_editor::show_choice);
  connect(m_list, &OptionList::chosen, this, &option_editor::insert_option);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    m_list->search()->setFocus();
    m_list->search()->selectAll();
  });
}

QWidget* option_editor::make_list_side() {
  auto* side = new QWidget(this);
  m_insert = push_button(side, "option_insert");
  m_binder.caption(m_insert, Section::commands, "insert");
  m_binder.tooltip(m_insert, "option_insert");
  m_dem = new QCheckBox(side);
  m_dem->setObjectName(QStringLiteral("option_dem"));
  m_dem->setChecked(true);
  m_dem->setVisible(m_tool == OptionTool::mkgmap);
  m_binder.caption(m_dem, Section::labels, "option_dem");
  m_binder.tooltip(m_dem, "option_dem");
  auto* row = new QHBoxLayout;
  row->addWidget(m_insert);
  row->addWidget(m_dem, 1);
  row->addStretch();
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(m_list, 1);
  column->addLayout(row);
  connect(m_insert, &QPushButton::clicked, this, &option_editor::insert_option);
  return side;
}

QWidget* option_editor::make_text_side() {
  auto* side = new QWidget(this);
  m_text = new OptionsView(m_tool, m_binder, side);
  m_text->setObjectName(QStringLiteral("option_text"));
  m_binder.name(m_text, Section::labels, "option_text");
  m_binder.tooltip(m_text, "option_text");
  auto* toggle = push_button(side, "option_toggle");
  auto* clear = push_button(side, "option_clear");
  m_binder.caption(toggle, Section::commands, "option_toggle");
  m_binder.tooltip(toggle, "option_toggle");
  m_binder.caption(clear, Section::commands, "clear");
  m_binder.tooltip(clear, "option_clear");
  auto* row = new QHBoxLayout;
  row->addWidget(toggle);
  row->addWidget(clear);
  row->addStretch();
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(m_text, 1);
  column->addLayout(row);
  connect(toggle, &QPushButton::clicked, m_text, &OptionsView::toggle_comments);
  connect(clear, &QPushButton::clicked, this, &option_editor::clear_text);
  for (const auto& keys : {Qt::CTRL | Qt::Key_Slash, Qt::CTRL | Qt::Key_D})
    connect(new QShortcut(keys, m_text, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, m_text,
            &OptionsView::toggle_comments);
  return side;
}

QWidget* option_editor::make_bottom() {
  auto* bottom = new QWidget(this);
  m_remarks = new QLabel(bottom);
  m_remarks->setObjectName(QStringLiteral("option_remarks"));
  m_remarks->setWordWrap(true);
  m_remarks->setTextFormat(Qt::PlainText);
  m_remarks->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_remarks->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // The window does not jump when a remark comes or goes.
  m_remarks->setMinimumHeight(m_remarks->fontMetrics().lineSpacing() * static_cast<int>(most_remarks));
  m_binder.name(m_remarks, Section::labels, "option_remarks");
  m_next = push_button(bottom, "option_next");
  m_binder.caption(m_next, Section::commands, "option_next");
  m_binder.tooltip(m_next, "option_next");
  auto* buttons = new QDialogButtonBox(bottom);
  QPushButton* ok = buttons->addButton(QDialogButtonBox::Ok);
  QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
  ok->setObjectName(QStringLiteral("option_ok"));
  cancel->setObjectName(QStringLiteral("option_cancel"));
  m_binder.caption(ok, Section::commands, "ok");
  m_binder.tooltip(ok, "option_ok");
  m_binder.caption(cancel, Section::commands, "cancel");
  for (QPushButton* button : {ok, cancel})
    button->setAutoDefault(false);  // Enter in the search field takes an option
  auto* upper = new QHBoxLayout;
  upper->addWidget(m_remarks, 1);
  upper->addWidget(m_next, 0, Qt::AlignTop);
  auto* column = new QVBoxLayout(bottom);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(upper);
  column->addWidget(buttons);
  connect(m_next, &QPushButton::clicked, m_text, &OptionsView::show_next_finding);
  connect(new QShortcut(Qt::Key_F8, this), &QShortcut::activated, m_text, &OptionsView::show_next_finding);
  connect(new QShortcut(Qt::CTRL | Qt::Key_Return, this), &QShortcut::activated, this,
          &option_editor::accept);
  connect(buttons, &QDialogButtonBox::accepted, this, &option_editor::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &option_editor::reject);
  return bottom;
}

void option_editor::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (m_asked) return;
  m_asked = true;
  m_list->search()->setFocus();
  m_list->show_state(m_binder.text(Section::labels, "option_asking"));
  // The window is seen first: the tool takes a second to answer.
  QMetaObject::invokeMethod(this, &option_editor::ask_tool_for_options, Qt::QueuedConnection);
}

void option_editor::ask_tool_for_options() {
  const QPointer<option_editor> self(this);
  Result<std::vector<CatalogueOption>> asked =
      query_option_catalogue(m_workspace, m_prompts, m_progress, m_tool);
  if (!self) return;  // closed while the tool was asked
  if (asked.ok()) {
    m_list->show_options(asked.value);
    m_text->set_known(std::move(asked.value));
  } else {
    m_list->show_state(m_binder.text(Section::labels, "option_not_asked").arg(m_binder.said(asked.error)));
  }
  show_choice();
  Q_EMIT catalogue_shown();
}

void option_editor::insert_option() {
  const CatalogueOption* option = m_list->current();
  if (option == nullptr) return;
  if (const OptionPlace* place = m_text->lint().find(option->name); place != nullptr)
    return m_text->select(place->range);
  m_text->insert(*option, m_dem->isVisible() && m_dem->isChecked() && is_dem_option(*option));
}

void option_editor::clear_text() {
  const bool blank = m_text->toPlainText().trimmed().isEmpty();
  if (!blank &&
      m_prompts.ask(m_workspace.message(message_clear), Buttons::yes_no, Icon::warning) == Answer::yes)
    m_text->replace_text({});
}

void option_editor::show_choice() {
  const CatalogueOption* option = m_list->current();
  m_insert->setEnabled(option != nullptr);
  m_dem->setEnabled(option != nullptr && is_dem_option(*option));
}

// First what the build will say, then the line of the cursor, then the others.
void option_editor::show_remarks() {
  QStringList remarks;
  const std::string text = from_qt(m_text->toPlainText());
  if (m_tool == OptionTool::mkgmap) {
    const std::string name = m_sets->name();
    for (const std::string& warning : parse_options_text(text, name.empty() ? "mkopts" : name).warnings)
      remarks << m_binder.said(warning).replace(QLatin1Char('\n'), QLatin1Char(' '));
  }
  if (const Status sound = check_option_set("", text, m_workspace.messages); !sound.ok())
    remarks << m_binder.said(sound.error);
  const OptionFinding* at_cursor = m_text->finding_at_cursor();
  if (at_cursor != nullptr) remarks << m_text->explanation(*at_cursor);
  for (const OptionFinding& finding : m_text->lint().findings) {
    if (&finding != at_cursor) remarks << m_text->explanation(finding);
  }
  const qsizetype more = remarks.size() - most_remarks;
  if (more > 0) {
    remarks.resize(most_remarks);
    remarks.back() += m_binder.text(Section::labels, "option_more").arg(more);
  }
  if (remarks.isEmpty()) remarks << m_binder.text(Section::labels, "option_fine");
  m_remarks->setText(remarks.join(QLatin1Char('\n')));
  m_next->setEnabled(!m_text->lint().findings.empty());
}

bool option_editor::apply() {
  Settings& settings = m_workspace.settings;
  const Settings before = settings;
  std::string& options = m_tool == OptionTool::mkgmap ? settings.options_text : settings.splitter_options;
  options = with_crlf(from_qt(m_text->toPlainText()));
  if (m_tool == OptionTool::mkgmap) settings.option_set = m_sets->name();
  Status saved = m_sets->store();
  if (saved.ok()) saved = savedata(m_workspace);
  if (saved.ok()) return true;
  // A folder that cannot be written must not keep anyone from using the options now.
  const std::string question = saved.error + "\r\n\r\n" + m_workspace.message(message_continue);
  if (m_prompts.ask(question, Buttons::yes_no, Icon::warning) == Answer::yes) return true;
  settings = before;
  return false;
}

void option_editor::accept() {
  if (apply()) QDialog::accept();
}

void option_editor::reject() {
  const std::string before = with_crlf(trim(current_options(m_workspace.settings, m_keeper)));
  if (with_crlf(trim(from_qt(m_text->toPlainText()))) != before) {
    const Answer answer = m_prompts.ask(m_workspace.message(message_apply), Buttons::yes_no_cancel);
    if (answer == Answer::yes) return accept();
    if (answer == Answer::cancel) return;
  }
  QDialog::reject();
}

void option_editor::done(int result) {
  WindowLayout layout(m_workspace.settings);
  layout.set(objectName(), saveGeometry());
  layout.set(QStringLiteral("option_editor.columns"), m_columns->saveState());
  layout.store(m_workspace.settings);
  QDialog::done(result);
}

}  // namespace ferrowen::ui
