#include "platform/process.hpp"

namespace ferrowen::platform {
namespace {

constexpr std::string_view blanks = " \t\r\n";

// Inside double quotes a backslash is itself unless it stands before one of these.
constexpr std::string_view escaped_in_quotes = "\"\\$`";

// Appends the word that starts at `at` and returns where it ends.
std::size_t take_word(std::string_view line, std::size_t at, std::string& word) {
  char quote = '\0';
  for (; at < line.size(); ++at) {
    const char character = line[at];
    const bool has_next = at + 1 < line.size();
    if (quote == '\0' && blanks.find(character) != std::string_view::npos) break;
    if (character == quote) {
      quote = '\0';
    } else if (quote == '\0' && (character == '"' || character == '\'')) {
      quote = character;
    } else if (character == '\\' && quote != '\'' && has_next &&
               (quote == '\0' || escaped_in_quotes.find(line[at + 1]) != std::string_view::npos)) {
      word += line[++at];
    } else {
      word += character;
    }
  }
  return at;
}

}  // namespace

std::vector<std::string> split_command_line(std::string_view line) {
  std::vector<std::string> words;
  std::size_t at = line.find_first_not_of(blanks);
  while (at < line.size()) {
    std::string& word = words.emplace_back();
    at = line.find_first_not_of(blanks, take_word(line, at, word));
  }
  return words;
}

}  // namespace ferrowen::platform
