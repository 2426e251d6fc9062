// The quiet flag: answers for itself and keeps what a person would have been told.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen {

struct QuietMessage {
  std::string text;
  Icon icon = Icon::none;
  std::optional<Answer> answer;  // set for a question
};

// Questions are answered Yes; one that comes back again and again with No, so that no run goes in circles.
class QuietPrompts : public Prompts {
 public:
  // `heard` is called for every message, in its order.
  explicit QuietPrompts(std::function<void(const QuietMessage&)> heard = {}) : m_heard(std::move(heard)) {}

  void tell(std::string_view text, Icon icon) override;
  Answer ask(std::string_view text, Buttons buttons, Icon icon) override;
  std::optional<std::string> choose_file(const FileQuestion& question) override;
  std::optional<std::string> choose_folder(std::string_view title, const std::string& start) override;
  void show_file(const std::string& path) override;

  [[nodiscard]] const std::vector<QuietMessage>& messages() const { return m_messages; }

 private:
  void keep(QuietMessage message);
  std::function<void(const QuietMessage&)> m_heard;
  std::vector<QuietMessage> m_messages;
};

// "warning", "error", ... and the answer of a question, as reports write them.
std::string message_line(const QuietMessage& message);

}  // namespace ferrowen
