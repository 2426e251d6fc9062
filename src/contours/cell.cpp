#include "contours/cell.hpp"

#include <cstdlib>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t name_length = 7;
constexpr std::uint64_t first_of_all = 10'000'000'000;  // far above the numbers of real map data
constexpr int highest_latitude = 90;
constexpr int highest_longitude = 180;

std::string padded(int number, std::size_t width) {
  const std::string digits = std::to_string(std::abs(number));
  return std::string(width - digits.size(), '0') + digits;
}

}  // namespace

bool is_on_earth(Cell cell) {
  return cell.latitude >= -highest_latitude && cell.latitude < highest_latitude &&
         cell.longitude >= -highest_longitude && cell.longitude < highest_longitude;
}

std::string cell_name(Cell cell) {
  return (cell.latitude < 0 ? "S" : "N") + padded(cell.latitude, 2) + (cell.longitude < 0 ? "W" : "E") +
         padded(cell.longitude, 3);
}

std::optional<Cell> cell_of_name(std::string_view file_name) {
  if (file_name.size() < name_length) return std::nullopt;
  const std::string name = upper_ascii(file_name.substr(0, name_length));
  const std::string_view latitude = std::string_view(name).substr(1, 2);
  const std::string_view longitude = std::string_view(name).substr(4, 3);
  if ((name[0] != 'N' && name[0] != 'S') || (name[3] != 'E' && name[3] != 'W')) return std::nullopt;
  if (!is_digits(latitude) || !is_digits(longitude)) return std::nullopt;
  const int north = static_cast<int>(lenient_whole_number(latitude));
  const int east = static_cast<int>(lenient_whole_number(longitude));
  const Cell cell{name[0] == 'S' ? -north : north, name[3] == 'W' ? -east : east};
  return is_on_earth(cell) ? std::optional(cell) : std::nullopt;
}

std::uint64_t first_id(Cell cell) {
  const int row = cell.latitude + highest_latitude;
  const int column = cell.longitude + highest_longitude;
  const int index = row * 2 * highest_longitude + column;
  return first_of_all + static_cast<std::uint64_t>(index) * ids_per_cell;
}

}  // namespace ferrowen
