// Changes to the text of a ready console script that respect its quoting: what stands inside quotes belongs
// to a path or a value and is never touched.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runner/command.hpp"

namespace ferrowen {

// A command's own "java " (first word of a line or after && || ; & | ( @, blanks between them or not, also
// behind call, exec, time, nice, then, else and do) becomes "java  -Dlog.config=<quoted path> ", two blanks
// after java.
Result<std::string> add_log_option(std::string_view script, const std::string& properties_path,
                                   Dialect dialect);
// "/" becomes "\" outside quotes. One that begins a word is a switch (cd /d) and stays.
std::string backslashes_outside_quotes(std::string_view script, Dialect dialect);
// Runs of blanks become one outside quotes.
std::string collapse_outside_quotes(std::string_view script, Dialect dialect);
// Value of the first "--mapname=" option that stands outside quotes; nothing when there is none.
std::optional<std::string> map_name_option(std::string_view script, Dialect dialect);
// True when a word of the script outside quotes begins with this option name ("--latin" finds --latin1).
bool has_option(std::string_view script, std::string_view option_name, Dialect dialect);
// Bytes with the number 250 stand for blanks inside stored option values. The same byte as a part of a UTF-8
// letter is left alone.
std::string blanks_for_code_250(std::string_view script);

}  // namespace ferrowen
