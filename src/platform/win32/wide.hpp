// UTF-8 to the system's own UTF-16 and back, for the few calls whose 8-bit form will not do.
#pragma once

#include <string>
#include <string_view>

namespace ferrowen::platform {

// Bytes that are no UTF-8 become the replacement character.
std::wstring wide(std::string_view utf8);
std::string narrow(std::wstring_view text);

}  // namespace ferrowen::platform
