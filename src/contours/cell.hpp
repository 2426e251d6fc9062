// One-degree height cells: named after their lower left corner, N46W007 reaches from 46 to 47 north and from
// 7 to 6 west.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen {

struct Cell {
  int latitude = 0;  // of the lower left corner, whole degrees
  int longitude = 0;
  bool operator==(const Cell&) const = default;
};

// Lower left corners reach from -90 to 89 and from -180 to 179.
bool is_on_earth(Cell cell);
std::string cell_name(Cell cell);  // without ".hgt"
// From the first seven characters of a file name, in capital or small letters. Nothing when they are no
// cell's.
std::optional<Cell> cell_of_name(std::string_view file_name);

// Every cell owns the numbers from first_id() to first_id() + ids_per_cell - 1, so that files of several
// cells can be merged: 10^10 + index x 10^8, where the index counts the cells of the earth from south to
// north and from west to east. Nodes come first, ways behind them; neither leaves its share.
inline constexpr std::uint64_t ids_per_cell = 100'000'000;
inline constexpr std::uint64_t nodes_per_cell = 90'000'000;
inline constexpr std::uint64_t ways_per_cell = ids_per_cell - nodes_per_cell;
std::uint64_t first_id(Cell cell);

}  // namespace ferrowen
