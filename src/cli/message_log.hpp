// Every message, question and answer of one command, in order: what --json shows beside the result.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen {

struct LoggedMessage {
  std::string text;
  Icon icon = Icon::none;
  std::optional<Answer> answer;  // set for a question
  std::string file;              // set for a file that was shown; the text is its end
};

using MessageLog = std::vector<LoggedMessage>;

}  // namespace ferrowen
