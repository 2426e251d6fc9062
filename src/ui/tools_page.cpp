#include "ui/tools_page.hpp"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/tools.hpp"
#include "platform/desktop.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"
#include "ui/tool_card.hpp"

namespace ferrowen::ui {

ToolsPage::ToolsPage(Workspace& workspace, Prompts& prompts, TextBinder& binder, QWidget* parent)
    : QWidget(parent), m_workspace(workspace), m_prompts(prompts), m_binder(binder) {
  setObjectName(QStringLiteral("tools_page"));
  auto* column = new QVBoxLayout(this);
  column->addWidget(make_head());
  column->addWidget(make_cards(), 1);
  column->addWidget(make_buttons());
  m_binder.custom([this] { show_sentence(); });
}

QWidget* ToolsPage::make_head() {
  auto* head = new QWidget(this);
  auto* column = new QVBoxLayout(head);
  column->setContentsMargins(0, 0, 0, 0);
  auto* heading = new QLabel(head);
  QFont large = heading->font();
  large.setPointSizeF(large.pointSizeF() * 1.5);
  large.setBold(true);
  heading->setFont(large);
  heading->setWordWrap(true);
  m_binder.caption(heading, Section::labels, "tools_heading");
  m_sentence = new QLabel(head);
  m_sentence->setObjectName(QStringLiteral("tools_sentence"));
  m_sentence->setWordWrap(true);
  m_everything = new QWidget(head);
  auto* everything = new QVBoxLayout(m_everything);
  everything->setContentsMargins(0, 0, 0, 0);
  auto* caption = new QLabel(m_everything);
  caption->setWordWrap(true);
  m_binder.caption(caption, Section::labels, "tools_install_all");
  everything->addWidget(caption);
  everything->addWidget(copyable_command(m_command, m_binder, m_everything));
  m_command->setObjectName(QStringLiteral("install_all"));
  m_everything->hide();
  column->addWidget(heading);
  column->addWidget(m_sentence);
  column->addWidget(m_everything);
  return head;
}

QWidget* ToolsPage::make_cards() {
  auto* area = new QScrollArea(this);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  auto* content = new QWidget(area);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 4, 0);
  for (const ToolAdvice& advice : tool_advice()) {
    auto* card = new ToolCard(
        advice, [this](const std::string& link) { open_link(link); }, m_binder, content);
    m_cards.push_back(card);
    column->addWidget(card);
  }
  column->addStretch(1);
  area->setWidget(content);
  return area;
}

QWidget* ToolsPage::make_buttons() {
  auto* line = new QWidget(this);
  // Two rows, so that long texts find room.
  auto* grid = new QGridLayout(line);
  grid->setContentsMargins(0, 0, 0, 0);
  m_check = button("check_again", "check_again", &ToolsPage::check_requested);
  m_sample = button("open_sample", "open_sample", &ToolsPage::sample_requested);
  m_sample->setEnabled(false);
  grid->addWidget(m_check, 0, 0);
  grid->addWidget(button("open_settings", "open_settings", &ToolsPage::settings_requested), 0, 1);
  grid->addWidget(m_sample, 1, 0);
  grid->addWidget(button("close_tools", "close", &ToolsPage::closed), 1, 1);
  return line;
}

QPushButton* ToolsPage::button(const char* name, const char* key, void (ToolsPage::*signal)()) {
  auto* made = new QPushButton(this);
  made->setObjectName(QString::fromUtf8(name));
  m_binder.caption(made, Section::commands, key);
  connect(made, &QPushButton::clicked, this, signal);
  return made;
}

void ToolsPage::open_link(const std::string& link) {
  const std::string error = platform::open_with_desktop(link);
  if (!error.empty()) m_prompts.tell(error + "\r\n\r\n" + link, Icon::warning);
}

void ToolsPage::show_sentence() { m_sentence->setText(m_binder.text(Section::labels, m_state)); }

bool ToolsPage::look_again(Progress& progress) {
  find_tools(m_workspace.settings);
  m_check->setEnabled(false);
  m_state = "tools_checking";
  show_sentence();
  for (ToolCard* card : m_cards)
    card->show_checking();
  bool complete = true;
  QStringList packages;
  for (ToolCard* card : m_cards) {
    const ToolAdvice& advice = card->advice();
    const ToolReport report = tool_state(m_workspace, m_prompts, progress, advice.field);
    card->show_report(report);
    if (report.state == ToolState::found || !advice.essential) continue;
    complete = false;
    packages << to_qt(advice.package);
  }
  m_everything->setVisible(platform::separator == '/' && packages.size() > 1);
  m_command->setText(install_command(packages));
  m_state = complete ? "tools_complete" : "tools_missing";
  show_sentence();
  m_check->setEnabled(true);
  m_sample->setEnabled(complete);
  return complete;
}

}  // namespace ferrowen::ui
