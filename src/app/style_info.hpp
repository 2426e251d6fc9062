// The file "info" of an mkgmap style, and the lines by which its rule files include others.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

struct BaseStyle {
  std::string name;
  unsigned line = 0;  // of the file, from 1
};
// The styles that it names as those below this one, in its order.
std::vector<BaseStyle> base_styles(std::string_view info);

// What an include line names: include 'name'; and include 'name' from style;
struct IncludeWords {
  std::string_view name, style;  // the name is "" when the line includes nothing
  bool is_quoted = false;
};
IncludeWords include_words(std::string_view line);

}  // namespace ferrowen
