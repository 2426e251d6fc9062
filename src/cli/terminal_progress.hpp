// Progress on the error stream: on a terminal a bar that is redrawn in place, elsewhere one plain line for
// each change of the status. The tools' own lines only when they are wanted.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/prompts.hpp"
#include "cli/terminal.hpp"

namespace ferrowen {

// "[=====-----]  42%  01:23  status"; without a known fraction the bar is left out.
std::string progress_line(double fraction, double seconds, std::string_view status, int columns);
// "01:23", from an hour on "1:02:03".
std::string clock_text(double seconds);

class TerminalProgress : public Progress {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;
  struct Rules {
    bool quiet = false;
    bool verbose = false;
  };
  TerminalProgress(Terminal& terminal, const Rules& rules, Clock clock = std::chrono::steady_clock::now)
      : m_terminal(terminal), m_rules(rules), m_clock(std::move(clock)) {}

  void fraction(double done) override;
  void status(std::string_view text) override;
  void elapsed(double seconds) override;
  void output(std::string_view text) override;
  void command(std::string_view text) override;
  void process_events() override {}
  [[nodiscard]] bool stop_requested() override;

  // The run is over: the bar goes, an unfinished line of a tool is shown.
  void finish();
  // Every status shown, in order.
  [[nodiscard]] const std::vector<std::string>& statuses() const { return m_statuses; }

 private:
  void redraw(bool at_once);

  Terminal& m_terminal;
  Rules m_rules;
  Clock m_clock;
  std::chrono::steady_clock::time_point m_last_drawn;
  double m_fraction = 0;
  double m_seconds = 0;
  std::string m_status;
  std::vector<std::string> m_statuses;
  std::string m_tool_line;  // what has come of a line that is not finished
};

}  // namespace ferrowen
