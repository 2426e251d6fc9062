#include "cli/terminal_prompts.hpp"

#include <algorithm>
#include <istream>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t shown_lines = 20;

std::string answer_text(Answer answer) {
  switch (answer) {
    case Answer::yes:
      return "Yes";
    case Answer::no:
      return "No";
    case Answer::cancel:
      break;
  }
  return "Cancel";
}

std::string last_lines(const std::string& path) {
  std::vector<std::string> lines = split_lines(decode_tool_text(read_whole_file(path)));
  while (!lines.empty() && trim(lines.back()).empty())
    lines.pop_back();
  const std::size_t dropped = lines.size() > shown_lines ? lines.size() - shown_lines : 0;
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(dropped));
  return join_texts(lines, "\n");
}

}  // namespace

void TerminalPrompts::tell(std::string_view text, Icon icon) {
  const bool is_note = icon == Icon::information || icon == Icon::none;
  if (is_note && m_drop_notes) return;
  m_log.push_back({std::string(text), icon, std::nullopt, ""});
  if (!is_note || !m_rules.quiet) m_terminal.print_line(text);
}

Answer TerminalPrompts::ask(std::string_view text, Buttons buttons, Icon icon) {
  m_terminal.print(terminal_text(text) + (buttons == Buttons::yes_no ? " [y/N] " : " [y/N/c] "));
  const Answer answer = answer_of(buttons);
  m_log.push_back({std::string(text), icon, answer, ""});
  return answer;
}

Answer TerminalPrompts::answer_of(Buttons buttons) {
  if (!m_rules.always_yes && m_rules.person_can_answer) return read_answer(buttons);
  const Answer answer = m_rules.always_yes ? Answer::yes : Answer::no;
  m_terminal.print_line(answer_text(answer));
  return answer;
}

Answer TerminalPrompts::read_answer(Buttons buttons) {
  std::string line;
  while (!platform::interrupted() && std::getline(m_input, line)) {
    const std::string word = lower_ascii(trim(line));
    if (word == "y" || word == "yes") return Answer::yes;
    if (word.empty() || word == "n" || word == "no") return Answer::no;
    if (buttons == Buttons::yes_no_cancel && (word == "c" || word == "cancel")) return Answer::cancel;
    m_terminal.print(buttons == Buttons::yes_no ? "y or n: " : "y, n or c: ");
  }
  m_terminal.print_line("");
  return platform::interrupted() && buttons == Buttons::yes_no_cancel ? Answer::cancel : Answer::no;
}

std::optional<std::string> TerminalPrompts::choose_file(const FileQuestion& /*question*/) {
  return m_chosen_file;
}

std::optional<std::string> TerminalPrompts::choose_folder(std::string_view /*title*/,
                                                          const std::string& /*start*/) {
  return std::nullopt;
}

void TerminalPrompts::show_file(const std::string& path) {
  if (std::find(m_shown_files.begin(), m_shown_files.end(), path) == m_shown_files.end())
    m_shown_files.push_back(path);
}

void TerminalPrompts::print_shown_files() {
  for (const std::string& path : m_shown_files) {
    const std::string text = last_lines(path);
    m_log.push_back({text, Icon::none, std::nullopt, path});
    std::string shown = path;
    shown.append(":\n").append(text);
    if (!text.empty()) m_terminal.print_line(shown);
  }
  m_shown_files.clear();
}

bool TerminalPrompts::was_asked() const {
  return std::any_of(m_log.begin(), m_log.end(),
                     [](const LoggedMessage& one) { return one.answer.has_value(); });
}

}  // namespace ferrowen
