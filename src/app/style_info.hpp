// The file "info" of an mkgmap style.
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

}  // namespace ferrowen
