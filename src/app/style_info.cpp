#include "app/style_info.hpp"

#include "base/text.hpp"

namespace ferrowen {

std::vector<BaseStyle> base_styles(std::string_view info) {
  constexpr std::string_view mark = "base-style";
  std::vector<BaseStyle> bases;
  unsigned number = 0;
  for (const std::string& line : split_lines(info)) {
    ++number;
    const std::string_view text = trim(line);
    if (!text.starts_with(mark)) continue;
    const std::size_t name = text.find_first_not_of(" \t:=", mark.size());
    if (name != std::string_view::npos) bases.push_back({std::string(text.substr(name)), number});
  }
  return bases;
}

}  // namespace ferrowen
