// The free options of the options editor: one option per line, "#" comments, a <dem> block, "##" as the end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runner/command.hpp"

namespace ferrowen {

struct OptionsText {
  std::vector<Argument> options;         // in order, comments and DEM block taken out
  std::vector<std::string> dem_options;  // lines of the <dem> block, as written
  std::vector<std::string> warnings;     // told before the build; the build goes on
};

// `name` stands for the text in its warnings, e.g. "mkopts". Several options may stand on a line; blanks
// inside double quotes separate none. What does not begin with "-" is passed on as it is written.
OptionsText parse_options_text(std::string_view text, std::string_view name);
// What a line does to the DEM block: a line that holds the mark, in any case, and is no comment.
enum class DemMark : unsigned char { none, opens, closes };
DemMark dem_mark(std::string_view line);
// The name in front of "=": "--index", "--draw-priority", "-c".
std::string option_name(const Argument& argument);
// True when one of the options has this name ("--index" finds --index, not --indexes).
bool has_option_named(const std::vector<Argument>& options, std::string_view name);

}  // namespace ferrowen
