// UTF-16 in its bytes (low byte first) to our UTF-8 and back: what registry texts and their values are made
// of.
#pragma once

#include <string>
#include <string_view>

namespace ferrowen {

// A half of a pair without the other one, and an odd byte at the end, become U+FFFD.
std::string utf8_of_utf16(std::string_view bytes);
// Bytes that are no UTF-8 become U+FFFD.
std::string utf16_of_utf8(std::string_view text);

}  // namespace ferrowen
