// Where on a line of a style quotes and comments begin.
#pragma once

#include <string_view>

#include "base/text.hpp"

namespace ferrowen {

inline constexpr std::string_view comment_may_follow = " ]};{[";

// Calls `each` for every character outside quotes until a comment begins or it returns false; returns where
// that is.
template <typename Each>
std::size_t scan(std::string_view text, Each each) {
  char quote = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '\'' || c == '"') {
      quote = c;
      if (!each('x', at)) return at;
    } else {
      const bool comment = c == '#' && (at == 0 || contains(comment_may_follow, text.substr(at - 1, 1)));
      if (comment || !each(c, at)) return at;
    }
  }
  return text.size();
}

inline std::string_view without_comment(std::string_view line) {
  return trim(line.substr(0, scan(line, [](char, std::size_t) { return true; })));
}

}  // namespace ferrowen
