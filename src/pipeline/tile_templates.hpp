// Which tile blocks a build takes from splitter's template.args, and under which map names. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/tile.hpp"
#include "base/status.hpp"
#include "pipeline/tiles/argument_file.hpp"

namespace ferrowen {

// Numbers of the selected tiles; none when the whole split is built, because nothing or everything is
// selected.
std::vector<std::string> partial_selection(const TileList& tiles);
// The blocks of the selection, or the whole file.
ArgumentFile selected_template(const ArgumentFile& file, const TileList& tiles);
// Selected tiles for which the template has no block.
std::vector<std::string> tiles_without_block(const ArgumentFile& file, const TileList& tiles);
// True when the map ID asks for other map names than splitter gave: it differs from the first tile's.
bool needs_renumbering(const ArgumentFile& whole, std::string_view map_id);

}  // namespace ferrowen
