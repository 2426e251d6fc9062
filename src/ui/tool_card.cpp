#include "ui/tool_card.hpp"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr bool on_windows = platform::separator == '\\';

QLabel* wrapping_label(QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

// A phrase such as "a text editor" begins a heading with a capital; the name of a program is written as it
// is.
QString heading_of(QString heading) {
  if (heading.contains(QLatin1Char(' '))) heading[0] = heading.at(0).toUpper();
  return heading;
}

}  // namespace

QWidget* copyable_command(QLabel*& command, TextBinder& binder, QWidget* parent) {
  auto* line = new QWidget(parent);
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  command = wrapping_label(line);
  command->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  command->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* copy = new QPushButton(line);
  binder.caption(copy, Section::commands, "copy");
  QObject::connect(copy, &QPushButton::clicked, command,
                   [command] { QGuiApplication::clipboard()->setText(command->text()); });
  row->addWidget(command, 1);
  row->addWidget(copy);
  return line;
}

QString install_command(const QStringList& packages) {
  return QStringLiteral("sudo apt install ") + packages.join(QLatin1Char(' '));
}

ToolCard::ToolCard(const ToolAdvice& advice, const OpenLink& open_link, TextBinder& binder, QWidget* parent)
    : QFrame(parent),
      m_advice(advice),
      m_binder(binder),
      m_sign(new ToolSign(this)),
      m_name(wrapping_label(this)),
      m_state(wrapping_label(this)),
      m_purpose(wrapping_label(this)) {
  setObjectName(QStringLiteral("tool_") + to_qt(advice.field));
  setFrameShape(QFrame::StyledPanel);
  QFont bold = m_name->font();
  bold.setBold(true);
  m_name->setFont(bold);
  m_state->setObjectName(QStringLiteral("state"));
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addWidget(m_name);
  texts->addWidget(m_purpose);
  texts->addWidget(m_state);
  m_help = make_advice(open_link);
  texts->addWidget(m_help);
  auto* row = new QHBoxLayout(this);
  row->setSpacing(10);
  row->addWidget(m_sign, 0, Qt::AlignTop);
  row->addLayout(texts, 1);
  m_binder.custom([this] { show_texts(); });
}

QWidget* ToolCard::make_advice(const OpenLink& open_link) {
  auto* help = new QWidget(this);
  auto* column = new QVBoxLayout(help);
  column->setContentsMargins(0, 2, 0, 0);
  column->setSpacing(4);
  if (on_windows || m_advice.package.empty()) {
    auto* text = wrapping_label(help);
    m_binder.custom([this, text] {
      text->setText(m_binder.said(on_windows ? m_advice.windows_text : m_advice.linux_text));
    });
    column->addWidget(text);
  } else {
    QLabel* command = nullptr;
    column->addWidget(copyable_command(command, m_binder, help));
    command->setText(install_command({to_qt(m_advice.package)}));
  }
  if (!m_advice.link.empty()) {
    auto* page = new QPushButton(help);
    page->setToolTip(to_qt(m_advice.link));
    m_binder.caption(page, Section::commands, "home_page");
    connect(page, &QPushButton::clicked, this,
            [open_link, link = std::string(m_advice.link)] { open_link(link); });
    // With a command it stands beside the Copy button, otherwise below the text.
    QWidget* last = column->itemAt(column->count() - 1)->widget();
    if (last->layout() != nullptr)
      last->layout()->addWidget(page);
    else
      column->addWidget(page, 0, Qt::AlignLeft);
  }
  return help;
}

void ToolCard::show_report(const ToolReport& report) {
  m_report = report;
  show_texts();
}

void ToolCard::show_checking() {
  m_report.reset();
  show_texts();
}

QString ToolCard::state_text() const {
  if (m_report->state == ToolState::found || m_report->state == ToolState::wrong_program)
    return tool_state_text(*m_report, m_binder).replace(QLatin1Char('\n'), QLatin1Char(' '));
  const QString missing = m_binder.text(Section::labels, "tool_missing");
  return m_report->path.empty() ? missing : missing + QStringLiteral(": ") + to_qt(m_report->path);
}

void ToolCard::show_texts() {
  const auto text = [this](std::string_view key) { return m_binder.text(Section::labels, key); };
  m_name->setText(heading_of(m_binder.said(m_advice.label)) + QStringLiteral("  –  ") +
                  text(m_advice.essential ? "tool_needed" : "tool_optional"));
  m_purpose->setText(text("purpose_" + std::string(m_advice.field)));
  const bool known = m_report.has_value();
  const bool there = known && m_report->state == ToolState::found;
  m_help->setVisible(known && !there);
  if (!known) {
    m_sign->set_kind(ToolSign::Kind::unknown);
    m_state->setText(text("tools_checking"));
    return;
  }
  m_sign->set_report(*m_report);
  m_state->setText(state_text());
  m_state->setToolTip(to_qt(m_report->path));
  setAccessibleName(m_name->text() + QStringLiteral(": ") + m_state->text());
}

}  // namespace ferrowen::ui
