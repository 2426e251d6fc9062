#include "ui/tool_window.hpp"

#include <QCloseEvent>
#include <QHBoxLayout>

#include "app/settings_file.hpp"
#include "platform/desktop.hpp"
#include "platform/files.hpp"
#include "ui/qt_text.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr int message_no_association = 203;
constexpr int output_height = 110;
constexpr int window_width = 760, window_height = 620;

}  // namespace

std::vector<FileFilter> program_filters(const char* caption) {
  return {{caption, platform::names_ignore_case ? "*.exe" : "*"}};
}

ToolWindow::ToolWindow(Workspace& workspace, Prompts& prompts, const char* name, const char* title,
                       QWidget* parent)
    : QDialog(parent),
      open_address(platform::open_with_desktop),
      m_workspace(workspace),
      m_prompts(prompts),
      m_binder(workspace.texts),
      m_body(new QWidget(this)),
      m_column(new QVBoxLayout(m_body)),
      m_bar(new QProgressBar(this)),
      m_elapsed(new QLabel(this)),
      m_status(new QLabel(this)),
      m_output(new ConsolePanel(this)),
      m_command(new QPlainTextEdit(this)) {
  setObjectName(QLatin1String(name));
  setWindowTitle(m_binder.text(Section::labels, title));
  m_command->hide();
  m_column->setContentsMargins(0, 0, 0, 0);
  m_bar->setObjectName(QStringLiteral("tool_bar"));
  m_bar->setTextVisible(false);
  m_binder.name(m_bar, Section::labels, "progress");
  m_elapsed->setObjectName(QStringLiteral("tool_elapsed"));
  m_status->setObjectName(QStringLiteral("Label5"));
  m_status->setWordWrap(true);
  m_output->setObjectName(QStringLiteral("tool_output"));
  m_output->setMinimumHeight(output_height);
  m_binder.name(m_output, Section::labels, "tab_console");
  m_progress.emplace(m_workspace.texts,
                     WindowProgress::Controls{m_bar, m_elapsed, m_status, m_output, m_command});
  m_progress->begin();
}

void ToolWindow::finish_layout(Runs runs) {
  m_stop = button("tool_stop", "stop", "stop", [this] { m_progress->request_stop(); });
  m_stop->setEnabled(false);
  m_close = button("tool_close", "close", "", [this] { reject(); });
  auto* run = new QHBoxLayout;
  run->addWidget(m_bar, 1);
  run->addWidget(m_elapsed);
  auto* end = new QHBoxLayout;
  end->addWidget(m_status, 1);
  end->addWidget(m_stop);
  if (m_accept != nullptr) end->addWidget(m_accept);
  end->addWidget(m_close);
  auto* column = new QVBoxLayout(this);
  column->addWidget(m_body, 1);
  column->addLayout(run);
  column->addWidget(m_output);
  column->addLayout(end);
  for (QWidget* shown : std::initializer_list<QWidget*>{m_bar, m_elapsed, m_output, m_stop})
    shown->setVisible(runs == Runs::stages);
  assign_mnemonics(*this);
  resize(window_width, window_height);
  restoreGeometry(WindowLayout(m_workspace.settings).value(objectName()));
}

QPushButton* ToolWindow::button(const char* name, const char* caption, const char* tooltip,
                                const std::function<void()>& work) {
  auto* made = new QPushButton(this);
  made->setObjectName(QLatin1String(name));
  made->setAutoDefault(false);
  m_binder.caption(made, Section::commands, caption);
  if (*tooltip != '\0') m_binder.tooltip(made, tooltip);
  connect(made, &QPushButton::clicked, this, work);
  return made;
}

QLabel* ToolWindow::label_for(QWidget* control, const char* caption) {
  auto* label = new QLabel(this);
  label->setBuddy(control);
  m_binder.caption(label, Section::labels, caption);
  return label;
}

// The stages pump the events themselves, so a second one could otherwise begin inside the first.
void ToolWindow::run_stage(const std::function<void()>& work) {
  if (m_busy) return;
  m_busy = true;
  m_body->setEnabled(false);
  m_stop->setEnabled(true);
  m_progress->begin();
  work();
  m_output->flush();
  m_stop->setEnabled(false);
  m_body->setEnabled(true);
  m_busy = false;
  Q_EMIT work_ended();
  if (m_close_when_done)
    QMetaObject::invokeMethod(
        this, [this] { reject(); }, Qt::QueuedConnection);
}

void ToolWindow::reject() {
  if (!m_busy) return QDialog::reject();
  if (m_prompts.ask(from_qt(m_binder.text(Section::labels, "stop_run")), Buttons::yes_no, Icon::warning) !=
      Answer::yes)
    return;
  if (!m_busy) return QDialog::reject();
  m_close_when_done = true;
  m_progress->request_stop();
}

// Closed by the program itself when it has to end: nothing is asked.
void ToolWindow::closeEvent(QCloseEvent* event) {
  if (!m_busy || event->spontaneous()) return QDialog::closeEvent(event);
  m_close_when_done = true;
  m_progress->request_stop();
  event->ignore();
}

void ToolWindow::done(int result) {
  WindowLayout layout(m_workspace.settings);
  layout.set(objectName(), saveGeometry());
  layout.store(m_workspace.settings);
  QDialog::done(result);
}

void ToolWindow::open_page(const std::string& address) {
  const std::string problem = open_address(address);
  if (!problem.empty())
    m_prompts.tell(m_workspace.message(message_no_association) + "\r\n" + address + "\r\n" + problem,
                   Icon::warning);
}

void ToolWindow::save_settings() {
  if (const Status saved = savedata(m_workspace); !saved.ok()) m_prompts.tell(saved.error, Icon::critical);
}

}  // namespace ferrowen::ui
