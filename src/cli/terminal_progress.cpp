#include "cli/terminal_progress.hpp"

#include <algorithm>
#include <cmath>

#include "base/text.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr auto redraw_interval = std::chrono::milliseconds(100);
constexpr int widest_bar = 30, narrowest_bar = 10;
constexpr int bar_share = 3;  // of the columns

std::string two_digits(long number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string bar(double fraction, int width) {
  const auto filled = static_cast<std::size_t>(std::lround(fraction * width));
  return "[" + std::string(filled, '=') + std::string(static_cast<std::size_t>(width) - filled, '-') + "]";
}

std::string percent(double fraction) {
  const std::string number = std::to_string(static_cast<int>(fraction * 100));
  return std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + "%";
}

}  // namespace

std::string clock_text(double seconds) {
  const long whole = seconds > 0 ? static_cast<long>(seconds) : 0;
  constexpr long minute = 60, hour = 3600;
  const std::string rest = two_digits(whole / minute % 60) + ":" + two_digits(whole % minute);
  return whole < hour ? rest : std::to_string(whole / hour) + ":" + rest;
}

std::string progress_line(double fraction, double seconds, std::string_view status, int columns) {
  const int width = std::clamp(columns / bar_share, narrowest_bar, widest_bar);
  const double done = std::clamp(fraction, 0.0, 1.0);
  return bar(done, width) + " " + percent(done) + "  " + clock_text(seconds) + "  " + std::string(status);
}

void TerminalProgress::fraction(double done) {
  m_fraction = std::isnan(done) ? 0 : done;
  redraw(false);
}

void TerminalProgress::status(std::string_view text) {
  const std::string shown = replace_all(terminal_text(text), "\n", " ");
  if (shown == m_status) return;
  m_status = shown;
  if (!shown.empty()) m_statuses.push_back(shown);
  if (m_terminal.is_live())
    redraw(true);
  else if (!m_rules.quiet && !m_status.empty())
    m_terminal.print_line(m_status);
}

void TerminalProgress::elapsed(double seconds) {
  m_seconds = seconds;
  redraw(false);
}

void TerminalProgress::output(std::string_view text) {
  if (!m_rules.verbose) return;
  m_tool_line += replace_all(text, "\r", "\n");
  std::size_t start = 0;
  for (std::size_t end = 0; (end = m_tool_line.find('\n', start)) != std::string::npos; start = end + 1) {
    if (end > start) m_terminal.print_line(std::string_view(m_tool_line).substr(start, end - start));
  }
  m_tool_line.erase(0, start);
}

void TerminalProgress::command(std::string_view text) {
  if (m_rules.verbose) m_terminal.print_line(text);
}

bool TerminalProgress::stop_requested() { return platform::interrupted(); }

void TerminalProgress::finish() {
  if (!m_tool_line.empty()) m_terminal.print_line(m_tool_line);
  m_tool_line.clear();
  m_terminal.clear_bar();
}

void TerminalProgress::redraw(bool at_once) {
  if (m_rules.quiet || !m_terminal.is_live()) return;
  const auto now = m_clock();
  if (!at_once && now - m_last_drawn < redraw_interval) return;
  m_last_drawn = now;
  m_terminal.show_bar(progress_line(m_fraction, m_seconds, m_status, m_terminal.columns()));
}

}  // namespace ferrowen
