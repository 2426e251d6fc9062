#include "pipeline/tile_templates.hpp"

#include <algorithm>

#include "pipeline/argument_files.hpp"

namespace ferrowen {

std::vector<std::string> partial_selection(const TileList& tiles) {
  std::vector<std::string> numbers;
  if (selected_count(tiles) == tiles.size()) return numbers;
  for (const Tile& tile : tiles) {
    if (tile.selected) numbers.push_back(tile.number);
  }
  return numbers;
}

ArgumentFile selected_template(const ArgumentFile& file, const TileList& tiles) {
  const std::vector<std::string> numbers = partial_selection(tiles);
  return numbers.empty() ? file : small_template(file, numbers);
}

std::vector<std::string> tiles_without_block(const ArgumentFile& file, const TileList& tiles) {
  std::vector<std::string> missing;
  for (const std::string& number : partial_selection(tiles)) {
    const bool is_there = std::any_of(file.blocks.begin(), file.blocks.end(),
                                      [&](const ArgumentBlock& block) { return block.map_name == number; });
    if (!is_there) missing.push_back(number);
  }
  return missing;
}

bool needs_renumbering(const ArgumentFile& whole, std::string_view map_id) {
  return !whole.blocks.empty() && whole.blocks.front().map_name != map_id;
}

}  // namespace ferrowen
