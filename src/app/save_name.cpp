#include "app/save_name.hpp"

#include "base/files.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr int message_overwrite = 57;

}  // namespace

std::optional<std::string> name_to_write(const MessageTable& messages, Prompts& prompts,
                                         const FileQuestion& question, std::string_view ending) {
  std::optional<std::string> chosen = prompts.choose_file(question);
  if (!chosen || chosen->empty()) return std::nullopt;
  if (ends_with_ignoring_case(*chosen, ending)) return chosen;
  *chosen += ending;
  if (!file_exists(*chosen)) return chosen;
  const std::string text = messages(message_overwrite) + "\r\n" + *chosen;
  return prompts.ask(text, Buttons::yes_no, Icon::warning) == Answer::yes ? chosen : std::nullopt;
}

}  // namespace ferrowen
