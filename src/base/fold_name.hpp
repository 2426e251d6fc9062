// Names as the registry compares them: without regard to the case of any letter, not of ASCII alone.
#pragma once

#include <string>
#include <string_view>

namespace ferrowen {

// The UTF-8 text in lower case: Latin, Greek, Cyrillic and Armenian letters. No character changes its number
// of bytes. Other bytes, also those that are no UTF-8, stay as they are.
std::string fold_name(std::string_view text);
bool same_name(std::string_view left, std::string_view right);

}  // namespace ferrowen
