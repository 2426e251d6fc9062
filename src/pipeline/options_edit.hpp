// How the option editor puts an option into a text of options, and switches lines off and on.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pipeline/option_catalogue.hpp"
#include "pipeline/options_lint.hpp"

namespace ferrowen {

struct OptionInsertion {
  std::size_t line = 0;            // the new lines come in front of this one
  bool instead = false;            // they take its place
  std::vector<std::string> lines;  // without line ends
  TextRange selected;              // the value that a person fills in, as it stands afterwards
};

// True for the options of the elevation model, which may stand in the <dem> block.
bool is_dem_option(const CatalogueOption& option);
// Puts the option below the line of the cursor, or on it when that is blank, but never into a <dem> block or
// behind the end mark "##". With `in_dem_block` it becomes the last line of the block, which is made when
// there is none.
OptionInsertion option_insertion(std::string_view text, std::size_t cursor_line,
                                 const CatalogueOption& option, bool in_dem_block);
// Switches lines off with a "#" in front; when all of them (but blank ones) are off, those with an option
// behind the "#" are switched on, or all of them when none holds one. Never makes a "##", which would end the
// text.
std::vector<std::string> toggled_comments(const std::vector<std::string>& lines);

}  // namespace ferrowen
