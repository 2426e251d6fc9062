// One encoder per consumer of a text that leaves the program. What a consumer cannot read is an error that
// names the character and its place, never a silent "?".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/status.hpp"

namespace ferrowen {

enum class Consumer : std::uint8_t {
  java_arguments,  // argument files: Java's default charset (UTF-8, on Windows the ANSI code page)
  shell_script,    // UTF-8, no NUL
  batch_script,    // OEM code page, no NUL
  regedit4,        // ANSI code page
  ascii,
};

// `what` names the text in the error, e.g. the path of the file that is to be written.
Result<std::string> encode_for(Consumer consumer, std::string_view text, std::string_view what);
// Text of a file whose writer used UTF-8 or the system's ANSI code page; bytes that fit neither stay as they
// are.
std::string decode_tool_text(std::string_view bytes);
// A line of a text whose writer used UTF-8 or Latin-1, which every byte has a meaning in.
std::string utf8_or_latin1(std::string_view line);

}  // namespace ferrowen
