#include "app/style_info.hpp"

#include <algorithm>

#include "base/encoding.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view include_keyword = "include";

std::string_view next_word(std::string_view& text) {
  text = trim(text);
  std::size_t end = 0;
  if (!text.empty() && (text.front() == '\'' || text.front() == '"')) {
    const char quote = text.front();
    text.remove_prefix(1);
    end = text.find(quote);
    if (end == std::string_view::npos) return text = {};
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end + 1);
    return word;
  }
  end = std::min(text.find_first_of(" ;\t"), text.size());
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

}  // namespace

std::vector<BaseStyle> base_styles(std::string_view info) {
  constexpr std::string_view mark = "base-style";
  std::vector<BaseStyle> bases;
  unsigned number = 0;
  for (const std::string& line : split_lines(info)) {
    ++number;
    const std::string known = utf8_or_latin1(line);
    const std::string_view text = trim(known);
    if (!text.starts_with(mark)) continue;
    const std::size_t name = text.find_first_not_of(" \t:=", mark.size());
    if (name != std::string_view::npos) bases.push_back({std::string(text.substr(name)), number});
  }
  return bases;
}

IncludeWords include_words(std::string_view line) {
  IncludeWords words;
  line = trim(line);
  if (!equal_ignoring_case(line.substr(0, include_keyword.size()), include_keyword)) return words;
  line.remove_prefix(include_keyword.size());
  if (line.empty() || !contains(" \t'\"", line.substr(0, 1))) return words;
  words.is_quoted = contains("'\"", trim(line).substr(0, 1));
  const std::string_view name = trim(next_word(line));
  if (name.empty() || contains("=&|!~<>", name.substr(0, 1))) return words;
  words.name = name;
  if (next_word(line) == "from") words.style = next_word(line);
  return words;
}

}  // namespace ferrowen
