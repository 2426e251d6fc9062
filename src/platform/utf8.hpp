// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <string_view>

namespace ferrowen::platform {

// Bytes of the character that starts at `at` (below the size of the text); 0 when no valid one starts there.
std::size_t character_length(std::string_view text, std::size_t at);
bool is_utf8(std::string_view text);

}  // namespace ferrowen::platform
