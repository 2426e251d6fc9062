#include "contours/height_grid.hpp"

#include <algorithm>
#include <string>

namespace ferrowen {

namespace {

constexpr int sizes[] = {1201, 3601};

constexpr std::uint64_t bytes_of(int size) {
  return 2 * static_cast<std::uint64_t>(size) * static_cast<std::uint64_t>(size);
}

std::string size_problem(std::uint64_t bytes) {
  if (bytes == 0) return "the cell is empty";
  std::string text = "wrong size: " + std::to_string(bytes) + " bytes; a cell has ";
  for (const int size : sizes) {
    const std::string side = std::to_string(size);
    text += std::to_string(bytes_of(size)) + " (" + side;
    text += " x " + side + " samples)";
    if (size == sizes[0]) text += " or ";
  }
  return text;
}

}  // namespace

bool is_hgt_size(std::uint64_t bytes) {
  return std::any_of(std::begin(sizes), std::end(sizes), [&](int size) { return bytes_of(size) == bytes; });
}

HeightGrid grid_of_samples(std::string_view bytes, int size) {
  HeightGrid grid{size, {}};
  grid.heights.resize(bytes.size() / 2);
  for (std::size_t at = 0; at < grid.heights.size(); ++at) {
    const unsigned high = static_cast<unsigned char>(bytes[2 * at]);
    const unsigned low = static_cast<unsigned char>(bytes[2 * at + 1]);
    grid.heights[at] = static_cast<std::int16_t>(high << 8U | low);
  }
  return grid;
}

Result<HeightGrid> parse_hgt(std::string_view bytes) {
  for (const int size : sizes)
    if (bytes_of(size) == bytes.size()) return {grid_of_samples(bytes, size), ""};
  return failed<HeightGrid>(size_problem(bytes.size()));
}

bool all_void(const HeightGrid& grid) {
  return std::all_of(grid.heights.begin(), grid.heights.end(),
                     [](std::int16_t height) { return height == void_height; });
}

}  // namespace ferrowen
