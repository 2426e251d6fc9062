// Small grids of heights, written row by row from the north.
#pragma once

#include <initializer_list>
#include <string>

#include "contours/height_grid.hpp"

namespace ferrowen::test {

inline HeightGrid grid(int size, std::initializer_list<int> heights) {
  HeightGrid result{size, {}};
  for (const int height : heights)
    result.heights.push_back(static_cast<std::int16_t>(height));
  return result;
}

// The bytes of a cell; `height` gives the metres at a row (from the north) and a column.
template <typename Height>
std::string cell_bytes(int size, Height height) {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) * 2);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      const auto metres = static_cast<std::uint16_t>(height(row, column));
      bytes += static_cast<char>(metres >> 8U);
      bytes += static_cast<char>(metres & 0xFFU);
    }
  }
  return bytes;
}

}  // namespace ferrowen::test
