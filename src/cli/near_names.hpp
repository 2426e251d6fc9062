// Names that someone who mistyped one may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

// Fewest insertions, deletions and replacements that make one text of the other.
std::size_t edit_distance(std::string_view left, std::string_view right);
// At most three of the names, the nearest first.
std::vector<std::string> near_names(std::string_view name, const std::vector<std::string_view>& names);

}  // namespace ferrowen
