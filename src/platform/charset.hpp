// Code pages at the border: text inside is UTF-8, what leaves for a tool is encoded here.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen::platform {

// A code page by its Windows number: 65001 UTF-8, 1250 to 1258, 437, 850, 932, ...
struct Encoded {
  std::string bytes;
  // Set when a character has no place in the code page, or the text is no valid UTF-8: byte offset of that
  // character in the text. `bytes` then holds what came before it.
  std::optional<std::size_t> failed_at;
};
Encoded encode(std::string_view utf8, int code_page);

// UTF-8 of bytes in a code page; nothing when a byte has no meaning there or the code page is unknown.
std::optional<std::string> decode(std::string_view bytes, int code_page);

// The code page that batch files are read in (Windows: GetOEMCP; elsewhere 437), and that REGEDIT4 texts
// are read in (Windows: the ANSI code page of the system, not of this process; elsewhere 1252).
int oem_code_page();
int ansi_code_page();

}  // namespace ferrowen::platform
