// One tile of a split map.
#pragma once

#include <string>
#include <vector>

namespace ferrowen {

struct Corner {
  double latitude = 0;  // decimal degrees
  double longitude = 0;
};

struct Tile {
  std::string number;  // eight digits
  std::string description;
  Corner lower_left;
  Corner upper_right;
  bool selected = false;

  // CR LF separated: number, description, then the two corners as latitude, comma, longitude.
  [[nodiscard]] std::string record_text() const;
};

using TileList = std::vector<Tile>;

std::size_t selected_count(const TileList& tiles);

}  // namespace ferrowen
