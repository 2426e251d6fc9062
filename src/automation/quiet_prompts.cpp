#include "automation/quiet_prompts.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::ptrdiff_t most_times_asked = 3;

}  // namespace

void QuietPrompts::keep(QuietMessage message) {
  m_messages.push_back(std::move(message));
  if (m_heard) m_heard(m_messages.back());
}

void QuietPrompts::tell(std::string_view text, Icon icon) { keep({std::string(text), icon, std::nullopt}); }

Answer QuietPrompts::ask(std::string_view text, Buttons /*buttons*/, Icon icon) {
  const auto times = std::count_if(m_messages.begin(), m_messages.end(),
                                   [&](const QuietMessage& message) { return message.text == text; });
  const Answer answer = times < most_times_asked ? Answer::yes : Answer::no;
  keep({std::string(text), icon, answer});
  return answer;
}

std::optional<std::string> QuietPrompts::choose_file(const FileQuestion& question) {
  keep({question.title, Icon::question, Answer::cancel});
  return std::nullopt;
}

std::optional<std::string> QuietPrompts::choose_folder(std::string_view title, const std::string& /*start*/) {
  keep({std::string(title), Icon::question, Answer::cancel});
  return std::nullopt;
}

void QuietPrompts::show_file(const std::string& path) { keep({path, Icon::information, std::nullopt}); }

std::string message_line(const QuietMessage& message) {
  std::string line = message.icon == Icon::critical  ? "error: "
                     : message.icon == Icon::warning ? "warning: "
                                                     : "";
  line += replace_all(replace_all(message.text, "\r\n", " "), "\n", " ");
  if (message.answer)
    line += message.answer == Answer::yes  ? " [yes]"
            : message.answer == Answer::no ? " [no]"
                                           : " [nothing chosen]";
  return std::string(trim(line));
}

}  // namespace ferrowen
