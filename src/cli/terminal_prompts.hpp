// Prompts on a terminal, or for a script that no person watches: texts go to the error stream, a question is
// answered at the terminal, by --yes, or else with No.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/prompts.hpp"
#include "cli/message_log.hpp"
#include "cli/terminal.hpp"

namespace ferrowen {

struct PromptRules {
  bool always_yes = false;
  bool quiet = false;  // no informational texts
  bool person_can_answer = false;
};

class TerminalPrompts : public Prompts {
 public:
  TerminalPrompts(Terminal& terminal, std::istream& input, const PromptRules& rules)
      : m_terminal(terminal), m_input(input), m_rules(rules) {}

  void tell(std::string_view text, Icon icon = Icon::information) override;
  Answer ask(std::string_view text, Buttons buttons = Buttons::yes_no, Icon icon = Icon::question) override;
  // The file given beforehand; there is no dialog to choose one.
  std::optional<std::string> choose_file(const FileQuestion& question) override;
  std::optional<std::string> choose_folder(std::string_view title, const std::string& start) override;
  // Keeps the file in mind: a run shows its error stream before it is clear whether it failed.
  void show_file(const std::string& path) override;

  void set_chosen_file(std::string path) { m_chosen_file = std::move(path); }
  // While on, informational texts are dropped: they are not what the person asked for.
  void drop_notes(bool drop) { m_drop_notes = drop; }
  // Prints the last lines of the files that were to be shown.
  void print_shown_files();
  [[nodiscard]] const MessageLog& log() const { return m_log; }
  [[nodiscard]] bool was_asked() const;
  [[nodiscard]] bool person_can_answer() const { return m_rules.person_can_answer; }

 private:
  [[nodiscard]] Answer read_answer(Buttons buttons);
  [[nodiscard]] Answer answer_of(Buttons buttons);

  Terminal& m_terminal;
  std::istream& m_input;
  PromptRules m_rules;
  std::optional<std::string> m_chosen_file;
  std::vector<std::string> m_shown_files;
  bool m_drop_notes = false;
  MessageLog m_log;
};

}  // namespace ferrowen
