// Progress of a stage in the main window: bar, elapsed time, console, command box, and the Stop button.
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "app/interface_texts.hpp"
#include "base/prompts.hpp"
#include "ui/console_panel.hpp"

namespace ferrowen::ui {

class WindowProgress : public Progress {
 public:
  struct Controls {
    QProgressBar* bar;
    QLabel* elapsed;
    QLabel* status;
    ConsolePanel* console;    // null in a window whose work runs no tool
    QPlainTextEdit* command;  // the same
  };
  WindowProgress(const InterfaceTexts& texts, const Controls& controls)
      : m_texts(texts), m_controls(controls) {}

  void begin();  // a new piece of work: no stop is requested, the bar is empty
  void clear_stop() { m_stop = false; }
  void request_stop() { m_stop = true; }
  [[nodiscard]] const std::string& last_command() const { return m_command; }

  void fraction(double done) override;
  void status(std::string_view text) override;
  void elapsed(double seconds) override;
  void output(std::string_view text) override;
  void command(std::string_view text) override;
  void process_events() override;
  [[nodiscard]] bool stop_requested() override { return m_stop; }

 private:
  const InterfaceTexts& m_texts;
  Controls m_controls;
  bool m_stop = false;
  std::string m_command;
};

}  // namespace ferrowen::ui
