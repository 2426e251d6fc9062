#include "app/tile.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace ferrowen {

namespace {

std::string corner_text(const Corner& corner) {
  return number_text(corner.latitude) + "," + number_text(corner.longitude);
}

}  // namespace

std::string Tile::record_text() const {
  return join_texts({number, description, corner_text(lower_left), corner_text(upper_right)}, crlf);
}

std::size_t selected_count(const TileList& tiles) {
  return static_cast<std::size_t>(
      std::count_if(tiles.begin(), tiles.end(), [](const Tile& tile) { return tile.selected; }));
}

}  // namespace ferrowen
