// The tags that a style looks at, counted, and a place in its text where a word stands.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "styletools/style_doctor.hpp"

namespace ferrowen {

struct TagCount {
  std::string key, value;  // the value "*": any
  std::size_t rules = 0;   // rules that test it
  bool is_main = false;    // of one of the keys that make map objects
};

// Main keys first, in the order in which map makers look for them, then the others by name; each by count.
std::vector<TagCount> gettag(const LoadedStyle& style);
// The address of a web search for a tag.
std::string tag_search_address(std::string_view key, std::string_view value);

// Index of the next line of the text that holds a word, whatever its case, from a line on and then from the
// beginning.
std::optional<std::size_t> srch(const StyleText& style, std::string_view word, std::size_t from);
// The last line of the rule that begins at a line of a file; the line itself where none does.
std::uint32_t last_line(const LoadedStyle& style, std::string_view file, std::uint32_t line);
// Index of the line of the text that a place stands in.
std::optional<std::size_t> line_at(const StyleText& style, std::string_view file, std::uint32_t line);

}  // namespace ferrowen
