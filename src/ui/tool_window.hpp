// What the tool windows have in common: a body, and below it the progress, the output and the way to stop of
// the stage that the window runs.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>
#include <optional>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "ui/console_panel.hpp"
#include "ui/text_binder.hpp"
#include "ui/window_progress.hpp"

namespace ferrowen::ui {

// What a dialog for a console program offers; only one system marks programs by an ending.
std::vector<FileFilter> program_filters(const char* caption);

// Controls, by object name: tool_bar, tool_elapsed, Label5 (status), tool_output, tool_stop, tool_close.
class ToolWindow : public QDialog {
  Q_OBJECT
 public:
  ToolWindow(Workspace& workspace, Prompts& prompts, const char* name, const char* title, QWidget* parent);

  // Opens a web address; "" or the reason why not. The desktop's browser unless a test puts something else
  // here.
  std::function<std::string(const std::string&)> open_address;
  [[nodiscard]] bool busy() const { return m_busy; }
  void reject() override;  // asks while a stage runs
  void done(int result) override;

 Q_SIGNALS:
  void work_ended();

 protected:
  void closeEvent(QCloseEvent* event) override;
  // Below the body, last of all. A window that runs nothing shows no progress.
  enum class Runs : unsigned char { nothing, stages };
  void finish_layout(Runs runs = Runs::stages);
  void run_stage(const std::function<void()>& work);
  void open_page(const std::string& address);
  // Settings that were changed here are kept.
  void save_settings();
  QPushButton* button(const char* name, const char* caption, const char* tooltip,
                      const std::function<void()>& work);
  QLabel* label_for(QWidget* control, const char* caption);

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder m_binder;
  QWidget* m_body;
  QVBoxLayout* m_column;            // of the body
  QPushButton* m_accept = nullptr;  // beside the closing button, in windows that have one
  std::optional<WindowProgress> m_progress;

 private:
  bool m_busy = false;
  bool m_close_when_done = false;
  QProgressBar* m_bar;
  QLabel *m_elapsed, *m_status;
  ConsolePanel* m_output;
  QPlainTextEdit* m_command;  // the windows of tools show no command line
  QPushButton *m_stop = nullptr, *m_close = nullptr;
};

}  // namespace ferrowen::ui
