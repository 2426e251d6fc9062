// The heights of a one-degree cell (.hgt, the format of the Shuttle Radar Topography Mission): big-endian
// signed 16-bit metres, rows from north to south, samples from west to east, without any header. The
// outermost samples lie on the degree lines.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

inline constexpr std::int16_t void_height = -32768;  // no height was measured there

struct HeightGrid {
  int size = 0;  // samples per row and rows
  std::vector<std::int16_t> heights;
  [[nodiscard]] const std::int16_t* row(int number) const {
    return heights.data() + static_cast<std::size_t>(number) * static_cast<std::size_t>(size);
  }
};

// Bytes of a cell with 1201 or 3601 samples per row; no other size is a cell.
bool is_hgt_size(std::uint64_t bytes);
inline constexpr std::uint64_t largest_hgt = 2ULL * 3601 * 3601;

// The error says what is wrong with the size. Any bytes of the right size are a cell.
Result<HeightGrid> parse_hgt(std::string_view bytes);
// The same for a grid of any size, two bytes for each of `size` x `size` samples.
HeightGrid grid_of_samples(std::string_view bytes, int size);
bool all_void(const HeightGrid& grid);

}  // namespace ferrowen
