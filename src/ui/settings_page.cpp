#include "ui/settings_page.hpp"

#include <QVBoxLayout>

#include "base/files.hpp"
#include "platform/system.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

enum Column : int { caption_column, control_column, sign_column, state_column };
constexpr int caption_width = 230;
constexpr int state_width = 170;

bool holds_all(const QString& text, const QStringList& words) {
  return std::all_of(words.begin(), words.end(),
                     [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

// The heading of a group alone, not what stands in it: a font of its own would be handed down.
void make_heading(QWidget& box, const char* kind) {
  box.setStyleSheet(QStringLiteral("%1 { font-weight: bold; }").arg(QLatin1String(kind)));
}

// Paths and lists take the room there is, short values only what they need.
bool is_wide(const QWidget* control) {
  return control->maximumWidth() == QWIDGETSIZE_MAX && !control->inherits("QComboBox");
}

}  // namespace

SettingsPage::SettingsPage(Page page, Workspace& workspace, SettingsControls& controls, TextBinder& binder,
                           QWidget* parent)
    : QScrollArea(parent), m_workspace(workspace), m_controls(controls), m_binder(binder) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  auto* content = new QWidget(this);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(4, 0, 8, 8);
  column->setSpacing(10);
  setWidget(content);
  for (const SettingsGroup& group : settings_groups()) {
    if (group.page != page) continue;
    QGridLayout* grid = add_group(group);
    column->addWidget(m_groups.back().box);
    if (group.title == computer_group) add_facts(grid);
    for (const std::string_view name : group.fields)
      add_field(grid, *find_field(name), group.title == internal_group);
  }
  column->addStretch(1);
}

QGridLayout* SettingsPage::add_group(const SettingsGroup& group) {
  Group made;
  made.title = group.title;
  QGridLayout* grid = nullptr;
  if (group.title == internal_group) {
    grid = make_closed(made);
  } else {
    auto* box = new QGroupBox(widget());
    m_binder.caption(box, Section::labels, group.title);
    make_heading(*box, "QGroupBox");
    grid = new QGridLayout(box);
    made.box = box;
  }
  grid->setColumnStretch(control_column, 1);
  grid->setVerticalSpacing(6);
  m_groups.push_back(made);
  return grid;
}

QGridLayout* SettingsPage::make_closed(Group& made) {
  made.box = new QWidget(widget());
  auto* column = new QVBoxLayout(made.box);
  column->setContentsMargins(0, 0, 0, 0);
  made.opener = new QToolButton(made.box);
  make_heading(*made.opener, "QToolButton");
  made.opener->setObjectName(to_qt(made.title));
  made.opener->setCheckable(true);
  made.opener->setAutoRaise(true);
  made.opener->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  made.opener->setArrowType(Qt::RightArrow);
  made.opener->setFocusPolicy(Qt::StrongFocus);
  made.content = new QWidget(made.box);
  auto* rows = new QVBoxLayout(made.content);
  rows->setContentsMargins(18, 0, 0, 0);
  auto* note = new QLabel(made.content);
  note->setWordWrap(true);
  rows->addWidget(note);
  auto* grid = new QGridLayout;
  rows->addLayout(grid);
  made.content->hide();
  column->addWidget(made.opener, 0, Qt::AlignLeft);
  column->addWidget(made.content);
  m_binder.custom([this, opener = made.opener, note, title = made.title] {
    opener->setText(m_binder.text(Section::labels, title));
    opener->setAccessibleName(m_binder.text(Section::labels, title));
    note->setText(m_binder.text(Section::labels, "settings_internal"));
  });
  connect(made.opener, &QToolButton::toggled, made.content,
          [opener = made.opener, content = made.content](bool open) {
            opener->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
            content->setVisible(open);
          });
  return grid;
}

// The texts are sentences for tooltips; as a caption they do without the full stop.
QString SettingsPage::caption_of(const Field& field) const {
  QString text = m_binder.text(Section::settings, field.name);
  if (text.endsWith(QLatin1Char('.'))) text.chop(1);
  return text;
}

QLabel* SettingsPage::add_label(QGridLayout* grid, int line, QWidget* control,
                                const std::function<QString()>& text) {
  auto* label = new QLabel(widget());
  label->setWordWrap(true);
  label->setFixedWidth(caption_width);  // one column through all groups
  label->setBuddy(control);
  grid->addWidget(label, line, caption_column, Qt::AlignTop);
  label->setContentsMargins(0, 4, 0, 0);
  m_binder.custom([label, control, text] {
    label->setText(caption_text(text()));
    control->setAccessibleName(text());
  });
  return label;
}

void SettingsPage::add_field(QGridLayout* grid, const Field& field, bool read_only) {
  const int line = grid->rowCount();
  Row row;
  row.field = &field;
  row.read_only = read_only;
  row.group = m_groups.size() - 1;
  row.control = m_controls.make(field, read_only);
  row.words = [this, &field] {
    return caption_of(field) + QLatin1Char(' ') + to_qt(field.name) + QLatin1Char(' ') +
           m_binder.text(Section::settings, "set" + std::to_string(static_cast<int>(field.page)));
  };
  row.widgets.push_back(row.control);
  const auto caption = [this, &field] { return caption_of(field); };
  if (auto* flag = qobject_cast<QAbstractButton*>(row.control)) {
    m_binder.custom([flag, caption] { flag->setText(caption_text(caption())); });
    grid->addWidget(flag, line, caption_column, 1, 2);
  } else {
    row.widgets.push_back(add_label(grid, line, m_controls.focus_of(field), caption));
    grid->addWidget(row.control, line, control_column,
                    is_wide(row.control) ? Qt::Alignment() : Qt::AlignLeft);
  }
  if (find_tool_advice(field.name) != nullptr) add_state(grid, line, row);
  m_rows.push_back(std::move(row));
}

void SettingsPage::add_state(QGridLayout* grid, int line, Row& row) {
  row.sign = new ToolSign(widget());
  row.state = new QLabel(widget());
  row.state->setObjectName(QStringLiteral("state_") + to_qt(row.field->name));
  row.state->setWordWrap(true);
  row.state->setTextInteractionFlags(Qt::TextSelectableByMouse);
  row.state->setMinimumWidth(state_width);
  grid->setColumnStretch(control_column, 3);
  grid->setColumnStretch(state_column, 2);
  grid->addWidget(row.sign, line, sign_column);
  grid->addWidget(row.state, line, state_column);
  row.widgets.insert(row.widgets.end(), {row.sign, row.state});
}

void SettingsPage::add_fact(QGridLayout* grid, std::string_view key, const std::function<QString()>& value) {
  auto* shown = new QLabel(widget());
  shown->setObjectName(to_qt(key));
  shown->setWordWrap(true);
  shown->setContentsMargins(0, 4, 0, 0);
  shown->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  const auto caption = [this, key] { return m_binder.text(Section::settings, key); };
  const int line = grid->rowCount();
  QLabel* label = add_label(grid, line, shown, caption);
  m_binder.custom([shown, value] { shown->setText(value()); });
  grid->addWidget(shown, line, control_column);
  Row row;
  row.group = m_groups.size() - 1;
  row.widgets = {label, shown};
  row.words = caption;
  m_rows.push_back(std::move(row));
}

void SettingsPage::add_facts(QGridLayout* grid) {
  add_fact(grid, "set28", [this] {
    const int speed = platform::processor_mhz();
    return speed > 0 ? QString::number(speed) + QStringLiteral(" MHz")
                     : m_binder.text(Section::labels, "unknown");
  });
  add_fact(grid, "set29", [this] {
    QStringList lines;
    for (const std::string& folder :
         {m_workspace.settings.mapsource_tile_cache, m_workspace.settings.basecamp_tile_cache}) {
      if (folder.empty()) continue;
      const QString there =
          folder_exists(folder)
              ? QString()
              : QStringLiteral(" (") + m_binder.text(Section::labels, "folder_not_there") + QLatin1Char(')');
      lines << to_qt(folder) + there;
    }
    return lines.isEmpty() ? m_binder.text(Section::labels, "not_set") : lines.join(QLatin1Char('\n'));
  });
}

int SettingsPage::filter(const QStringList& words) {
  std::vector<int> shown(m_groups.size());
  int all = 0;
  for (const Row& row : m_rows) {
    const QString title = m_binder.text(Section::labels, m_groups[row.group].title);
    const bool found = holds_all(row.words() + QLatin1Char(' ') + title, words);
    for (QWidget* widget : row.widgets)
      widget->setVisible(found);
    shown[row.group] += found ? 1 : 0;
    all += found ? 1 : 0;
  }
  for (std::size_t group = 0; group < m_groups.size(); ++group) {
    m_groups[group].box->setVisible(shown[group] > 0);
    if (m_groups[group].opener != nullptr)
      m_groups[group].opener->setChecked(!words.isEmpty() && shown[group] > 0);
  }
  return all;
}

bool SettingsPage::reveal(const Field& field) {
  for (const Row& row : m_rows) {
    if (row.field != &field) continue;
    if (m_groups[row.group].opener != nullptr) m_groups[row.group].opener->setChecked(true);
    ensureWidgetVisible(row.control);
    m_controls.focus_of(field)->setFocus(Qt::OtherFocusReason);
    return true;
  }
  return false;
}

void SettingsPage::focus_first_visible() {
  for (const Row& row : m_rows) {
    if (row.control == nullptr || row.control->isHidden()) continue;
    reveal(*row.field);
    return;
  }
}

std::vector<const Field*> SettingsPage::editable_fields() const {
  std::vector<const Field*> fields;
  for (const Row& row : m_rows)
    if (row.field != nullptr && !row.read_only) fields.push_back(row.field);
  return fields;
}

void SettingsPage::show_tool(const ToolReport& report) {
  for (const Row& row : m_rows) {
    if (row.state == nullptr || row.field->name != report.advice->field) continue;
    row.sign->set_report(report);
    row.state->setText(tool_state_text(report, m_binder));
    row.state->setToolTip(to_qt(report.path));
    row.state->setAccessibleName(m_binder.text(Section::settings, "set15") + QLatin1Char(' ') +
                                 m_binder.said(report.advice->label) + QStringLiteral(", ") +
                                 m_binder.text(Section::settings, "set19"));
  }
}

void SettingsPage::forget_tool(const Field& field, const QString& text) {
  for (const Row& row : m_rows) {
    if (row.field != &field || row.state == nullptr) continue;
    row.sign->set_kind(ToolSign::Kind::unknown);
    row.state->setText(text);
  }
}

}  // namespace ferrowen::ui
