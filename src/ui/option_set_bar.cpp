#include "ui/option_set_bar.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QScopeGuard>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "base/text.hpp"
#include "ui/push_button.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int message_cannot_find = 89, message_continue_unsaved = 193, message_saved = 202;
constexpr int longest_name = 100;

bool same_text(std::string_view one, std::string_view other) {
  return with_crlf(trim(one)) == with_crlf(trim(other));
}

}  // namespace

OptionSetBar::OptionSetBar(Workspace& workspace, Prompts& prompts, TextBinder& binder, OptionKeeper keeper,
                           Text text, QWidget* parent)
    : QWidget(parent),
      m_workspace(workspace),
      m_prompts(prompts),
      m_binder(binder),
      m_keeper(keeper),
      m_text(std::move(text)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(make_row());
  column->addWidget(make_name_row());
  show_name_row(false);
}

QWidget* OptionSetBar::make_row() {
  auto* row = new QWidget(this);
  m_combo = new QComboBox(row);
  m_combo->setObjectName(QStringLiteral("option_sets"));
  m_combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  auto* label = new QLabel(row);
  label->setBuddy(m_combo);
  m_binder.caption(label, Section::labels, "option_set");
  m_binder.tooltip(m_combo, "option_set");
  m_save = push_button(row, "option_set_save");
  auto* save_under = push_button(row, "option_set_save_as");
  m_load = push_button(row, "option_set_load");
  m_delete = push_button(row, "option_set_delete");
  m_binder.caption(m_save, Section::commands, "save");
  m_binder.caption(save_under, Section::commands, "save_as");
  m_binder.caption(m_load, Section::commands, "load");
  m_binder.caption(m_delete, Section::commands, "delete");
  m_binder.tooltip(m_save, "option_set_save");
  m_binder.tooltip(save_under, "option_set_save_as");
  m_binder.tooltip(m_load, "option_set_load");
  m_binder.tooltip(m_delete, "option_set_delete");
  auto* cells = new QHBoxLayout(row);
  cells->setContentsMargins(0, 0, 0, 0);
  cells->addWidget(label);
  cells->addWidget(m_combo, 1);
  for (QPushButton* button : {m_save, save_under, m_load, m_delete})
    cells->addWidget(button);
  connect(m_combo, &QComboBox::activated, this,
          [this](int index) { load(m_sets.sets.at(static_cast<std::size_t>(index)).name); });
  connect(m_save, &QPushButton::clicked, this, &OptionSetBar::save);
  connect(save_under, &QPushButton::clicked, this, [this] { show_name_row(true); });
  connect(m_load, &QPushButton::clicked, this, [this] { load(m_name); });
  connect(m_delete, &QPushButton::clicked, this, &OptionSetBar::remove);
  return row;
}

QWidget* OptionSetBar::make_name_row() {
  m_name_row = new QWidget(this);
  m_new_name = new QLineEdit(m_name_row);
  m_new_name->setObjectName(QStringLiteral("option_set_name"));
  m_new_name->setMaxLength(longest_name);
  auto* label = new QLabel(m_name_row);
  label->setBuddy(m_new_name);
  m_binder.caption(label, Section::labels, "option_set_name");
  auto* keep = push_button(m_name_row, "option_set_keep");
  auto* give_up = push_button(m_name_row, "option_set_give_up");
  m_binder.caption(keep, Section::commands, "save");
  m_binder.caption(give_up, Section::commands, "cancel");
  auto* cells = new QHBoxLayout(m_name_row);
  cells->setContentsMargins(0, 0, 0, 0);
  cells->addWidget(label);
  cells->addWidget(m_new_name, 1);
  cells->addWidget(keep);
  cells->addWidget(give_up);
  connect(keep, &QPushButton::clicked, this, &OptionSetBar::save_as);
  connect(give_up, &QPushButton::clicked, this, [this] { show_name_row(false); });
  // Keys of this row, which the window around it would take for its own.
  for (const int key : {Qt::Key_Return, Qt::Key_Enter})
    connect(new QShortcut(key, m_new_name, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
            &OptionSetBar::save_as);
  connect(new QShortcut(Qt::Key_Escape, m_name_row, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
          &QShortcut::activated, this, [this] { show_name_row(false); });
  return m_name_row;
}

void OptionSetBar::show_name_row(bool shown) {
  m_name_row->setVisible(shown);
  if (!shown) {
    if (isVisible()) m_combo->setFocus();
    return;
  }
  m_new_name->setText(to_qt(m_name));
  m_new_name->selectAll();
  m_new_name->setFocus();
}

std::string OptionSetBar::name() const { return m_name; }

std::string OptionSetBar::stored_text() const {
  const OptionSet* set = m_sets.find(m_name);
  return set == nullptr ? "" : set->text;
}

bool OptionSetBar::changed() const { return !same_text(m_text.get(), stored_text()); }

void OptionSetBar::show_sets() {
  reload("");
  if (!m_sets.problems.empty()) m_prompts.tell(join_texts(m_sets.problems, crlf), Icon::warning);
  const std::string& wanted = m_workspace.settings.option_set;
  const auto holds_text = [&](const OptionSet& set) { return same_text(set.text, m_text.get()); };
  const auto same = std::find_if(m_sets.sets.begin(), m_sets.sets.end(), holds_text);
  if (m_keeper == OptionKeeper::mkgmap && m_sets.find(wanted) != nullptr)
    reload(wanted);
  else if (same != m_sets.sets.end())
    reload(same->name);
}

void OptionSetBar::reload(const std::string& name) {
  Result<OptionSets> read = load_option_sets(m_workspace, m_keeper);
  if (!read.ok()) {
    m_prompts.tell(read.error, Icon::warning);
    read.value = parse_option_sets("", m_workspace.messages);
  }
  m_sets = std::move(read.value);
  const OptionSet* set = m_sets.find(name);
  m_name = set == nullptr ? "" : set->name;
  m_combo->clear();
  for (const OptionSet& each : m_sets.sets)
    m_combo->addItem(each.name.empty() ? m_binder.text(Section::labels, "option_set_unnamed")
                                       : to_qt(each.name));
  const auto is_chosen = [&](const OptionSet& each) { return each.name == m_name; };
  m_combo->setCurrentIndex(static_cast<int>(std::find_if(m_sets.sets.begin(), m_sets.sets.end(), is_chosen) -
                                            m_sets.sets.begin()));
  text_changed();
}

void OptionSetBar::text_changed() {
  const bool differs = changed();
  m_save->setEnabled(differs);
  m_load->setEnabled(differs);
  m_delete->setEnabled(!m_name.empty());
}

void OptionSetBar::load(const std::string& name) {
  const bool may_go =
      !changed() || m_prompts.ask(m_workspace.message(message_continue_unsaved)) == Answer::yes;
  reload(may_go ? name : m_name);
  if (!may_go) return;
  if (m_name != name)
    m_prompts.tell(m_workspace.message(message_cannot_find) + "[" + name + "]", Icon::warning);
  m_text.set(stored_text());
}

Status OptionSetBar::store() {
  if (!changed()) return {};
  Status stored = store_option_set(m_workspace, m_keeper, m_name, with_crlf(m_text.get()));
  if (stored.ok()) reload(m_name);
  return stored;
}

void OptionSetBar::save() {
  if (const Status stored = store(); !stored.ok()) return m_prompts.tell(stored.error, Icon::warning);
  m_prompts.tell(m_workspace.message(message_saved));
}

bool OptionSetBar::with_text_in_settings(const std::function<bool()>& work) {
  Settings& settings = m_workspace.settings;
  std::string& options = m_keeper == OptionKeeper::mkgmap ? settings.options_text : settings.splitter_options;
  const std::string before = std::exchange(options, with_crlf(m_text.get()));
  const std::string set_before = settings.option_set;
  const auto back = qScopeGuard([&] {
    options = before;
    settings.option_set = set_before;
  });
  return work();
}

void OptionSetBar::save_as() {
  const std::string wanted(trim(from_qt(m_new_name->text())));
  if (wanted.empty()) return m_new_name->setFocus();
  const bool saved =
      with_text_in_settings([&] { return save_option_set(m_workspace, m_prompts, m_keeper, wanted); });
  if (!saved) return m_new_name->setFocus();
  reload(wanted);
  show_name_row(false);
}

void OptionSetBar::remove() {
  const bool removed =
      with_text_in_settings([&] { return delete_option_set(m_workspace, m_prompts, m_keeper, m_name); });
  if (!removed) return;
  Settings& settings = m_workspace.settings;
  if (m_keeper == OptionKeeper::mkgmap && equal_ignoring_case(settings.option_set, m_name))
    settings.option_set.clear();
  reload("");
}

}  // namespace ferrowen::ui
