#include "elevation/hgt_coverage.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t name_length = 11;
constexpr std::string_view height_ending = ".hgt";
// Endings of height files after the cell name, the plain one first.
constexpr std::array<std::string_view, 3> height_endings = {".hgt", ".zip", ".hgt.zip"};
constexpr std::string_view contour_ending = ".osm";
constexpr std::string_view clipped_ending = "clp.pbf";
constexpr double highest_latitude = 90;
constexpr double highest_longitude = 180;

double decimal_value(std::string_view text) { return lenient_number(replace_all(text, ",", ".")); }

// Text left of the separator that is looked for first, else of the other one, else the whole text.
std::string_view left_of(std::string_view text, char first, char second) {
  for (const char separator : {first, second}) {
    if (const std::size_t at = text.find(separator); at != std::string_view::npos) return text.substr(0, at);
  }
  return text;
}

std::string padded(long number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

// One half of a name; the cell is named after its south-west corner, so cells below zero count one further.
std::string half_name(std::string_view text, char positive, char negative, std::size_t width) {
  const bool below_zero = decimal_value(text) < 0;
  const long degrees = std::abs(lenient_whole_number(left_of(text, ',', '.')));
  return (below_zero ? negative : positive) + padded(degrees + (below_zero ? 1 : 0), width);
}

// A cell is named after its south-west corner, so the last one below zero counts one further.
bool is_half_name(std::string_view half, char positive, char negative, long highest) {
  if (!is_digits(half.substr(1))) return false;
  const long degrees = lenient_whole_number(half.substr(1));
  return (half[0] == positive && degrees < highest) ||
         (half[0] == negative && degrees > 0 && degrees <= highest);
}

struct Range {
  float from = 0;
  float to = 0;
};

// The loop runs over single-precision values; limits keep a damaged tile from running for ever.
Range degree_range(double first, double second, double limit) {
  const double one = std::clamp(signed_whole_part(number_text(first)), -limit, limit);
  const double other = std::clamp(signed_whole_part(number_text(second)), -limit, limit);
  return {static_cast<float>(std::min(one, other)), static_cast<float>(std::max(one, other))};
}

std::vector<float> degree_steps(const Range& range) {
  std::vector<float> steps;
  for (float degree = range.from; degree <= range.to;) {
    steps.push_back(degree);
    degree += 1.0F;
  }
  return steps;
}

// First and last whole degree that a tile reaches into; its edge alone reaches into nothing.
struct WholeDegrees {
  long first = 0;
  long last = 0;
};

WholeDegrees whole_degrees(double one, double other, double limit) {
  const double from = std::floor(std::clamp(std::min(one, other), -limit, limit - 1));
  const double to = std::ceil(std::clamp(std::max(one, other), -limit, limit)) - 1;
  return {static_cast<long>(from), static_cast<long>(std::max(from, to))};
}

std::string cell_name(long south, long west) {
  return (south < 0 ? 'S' : 'N') + padded(std::abs(south), 2) + (west < 0 ? 'W' : 'E') +
         padded(std::abs(west), 3) + std::string(height_ending);
}

std::string cell_of(std::string_view name) { return std::string(name.substr(0, name.find(height_ending))); }

// Path of a cell's file of this kind in the folder, "" when there is none.
std::string cell_path(const std::string& name, const std::string& folder, CellFile kind) {
  std::vector<std::string_view> endings(height_endings.begin(), height_endings.end());
  if (kind == CellFile::contours) endings = {contour_ending};
  if (kind == CellFile::clipped_contours) endings = {clipped_ending};
  for (const std::string_view ending : endings) {
    std::string path = platform::join(folder, cell_of(name) + std::string(ending));
    const bool is_there = file_exists(path) && !folder_exists(path);
    const bool is_whole = kind != CellFile::clipped_contours || pbf_state(path) != PbfState::damaged;
    if (is_there && is_whole) return path;
  }
  return "";
}

template <typename Slots>
std::string slot_text(const Slots& slots, int slot) {
  if (slot < 0 || static_cast<std::size_t>(slot) >= slots.size()) return "";
  return std::string(trim(slots.at(static_cast<std::size_t>(slot))));
}

}  // namespace

std::string hgt_name(std::string_view latitude, std::string_view longitude) {
  return half_name(latitude, 'N', 'S', 2) + half_name(longitude, 'E', 'W', 3) + std::string(height_ending);
}

double signed_whole_part(std::string_view coordinate) {
  const double value = decimal_value(coordinate);
  const std::string_view left = left_of(coordinate, '.', ',');
  if (left.size() == coordinate.size()) return value;
  const long whole = lenient_whole_number(left);
  return whole == 0 && value < 0 ? value : static_cast<double>(whole);
}

bool is_hgt_name(std::string_view name) {
  return name.size() == name_length && name.ends_with(height_ending) &&
         is_half_name(name.substr(0, 3), 'N', 'S', static_cast<long>(highest_latitude)) &&
         is_half_name(name.substr(3, 4), 'E', 'W', static_cast<long>(highest_longitude));
}

std::string tile_coverage(const Tile& tile, std::string_view land_list) {
  const Range latitudes = degree_range(tile.lower_left.latitude, tile.upper_right.latitude, highest_latitude);
  const Range longitudes =
      degree_range(tile.lower_left.longitude, tile.upper_right.longitude, highest_longitude);
  std::vector<std::string> names;
  for (const float latitude : degree_steps(latitudes)) {
    for (const float longitude : degree_steps(longitudes)) {
      std::string name = hgt_name(number_text(latitude), number_text(longitude));
      const bool is_land = land_list.empty() || contains(land_list, cell_of(name));
      const bool is_new = std::find(names.begin(), names.end(), name) == names.end();
      if (is_land && is_new && is_hgt_name(name)) names.push_back(std::move(name));
    }
  }
  return join_texts(names, "");
}

std::vector<std::string> coverage_names(std::string_view tile_coverage) {
  std::vector<std::string> names;
  for (; tile_coverage.size() >= name_length; tile_coverage.remove_prefix(name_length))
    names.emplace_back(tile_coverage.substr(0, name_length));
  return names;
}

std::vector<std::string> coverage_of_selection(const TileList& tiles, std::string_view land_list) {
  const bool all = selected_count(tiles) == 0;
  std::vector<std::string> names;
  for (const Tile& tile : tiles) {
    if (!all && !tile.selected) continue;
    for (std::string& name : coverage_names(tile_coverage(tile, land_list))) {
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
    }
  }
  return names;
}

std::vector<std::string> touched_cells(const TileList& tiles, std::string_view land_list) {
  const bool all = selected_count(tiles) == 0;
  std::vector<std::string> names;
  for (const Tile& tile : tiles) {
    if (!all && !tile.selected) continue;
    const Corner& one = tile.lower_left;
    const Corner& other = tile.upper_right;
    const WholeDegrees rows = whole_degrees(one.latitude, other.latitude, highest_latitude);
    const WholeDegrees columns = whole_degrees(one.longitude, other.longitude, highest_longitude);
    for (long south = rows.first; south <= rows.last; ++south) {
      for (long west = columns.first; west <= columns.last; ++west) {
        std::string name = cell_name(south, west);
        const bool is_land = land_list.empty() || contains(land_list, cell_of(name));
        if (is_land && std::find(names.begin(), names.end(), name) == names.end())
          names.push_back(std::move(name));
      }
    }
  }
  return names;
}

CellFiles find_cell_files(const std::vector<std::string>& names, const std::string& folder, CellFile kind) {
  return find_cell_files(names, std::vector<std::string>{folder}, kind);
}

CellFiles find_cell_files(const std::vector<std::string>& names, const std::vector<std::string>& folders,
                          CellFile kind) {
  CellFiles files;
  for (const std::string& name : names) {
    std::string path;
    for (auto folder = folders.begin(); path.empty() && folder != folders.end(); ++folder) {
      if (!folder->empty()) path = cell_path(name, *folder, kind);
    }
    if (!path.empty())
      files.found.push_back(std::move(path));
    else if (std::find(files.missing.begin(), files.missing.end(), name) == files.missing.end())
      files.missing.push_back(name);
  }
  return files;
}

std::string current_hgt_folder(const Settings& settings) {
  const std::string slot = slot_text(settings.hgt_folders, settings.hgt_slot);
  return slot.empty() ? std::string(trim(settings.hgt_folder)) : slot;
}

std::string current_clip_folder(const Settings& settings) {
  return slot_text(settings.clip_folders, settings.clip_slot);
}

bool use_clip_folder(Settings& settings, const std::string& folder) {
  auto& slots = settings.clip_folders;
  const auto holds = [](std::string_view text) {
    return [text](const std::string& slot) { return trim(slot) == text; };
  };
  auto slot = std::find_if(slots.begin(), slots.end(), holds(folder));
  if (slot == slots.end()) slot = std::find_if(slots.begin(), slots.end(), holds(""));
  if (slot == slots.end()) return false;
  *slot = folder;
  settings.clip_slot = static_cast<int>(slot - slots.begin());
  return true;
}

std::vector<std::string> searched_hgt_folders(const Settings& settings) {
  std::vector<std::string> folders = {current_hgt_folder(settings)};
  if (!settings.hgt_auto_search) return folders;
  std::vector<std::string> others(settings.hgt_folders.begin(), settings.hgt_folders.end());
  others.push_back(settings.hgt_folder);
  for (const std::string& other : others) {
    const std::string folder(trim(other));
    const bool is_new = std::find(folders.begin(), folders.end(), folder) == folders.end();
    if (is_new && platform::is_absolute(folder) && folder_exists(folder)) folders.push_back(folder);
  }
  return folders;
}

std::vector<std::string> searched_contour_folders(const Settings& settings) {
  std::vector<std::string> folders = searched_hgt_folders(settings);
  const std::string_view work = trim(settings.contour_work_folder);
  if (work.empty()) return folders;
  std::string folder = platform::absolute(std::string(work));
  if (std::find(folders.begin(), folders.end(), folder) == folders.end())
    folders.push_back(std::move(folder));
  return folders;
}

bool holds_heights(const std::string& folder) {
  for (const std::string_view ending : height_endings) {
    for (const std::string& file : list_files(folder, {std::string(ending)})) {
      std::string cell = file.substr(0, file.size() - ending.size());
      if (platform::names_ignore_case) cell = upper_ascii(cell);
      if (is_hgt_name(cell + std::string(height_ending))) return true;
    }
  }
  return false;
}

}  // namespace ferrowen
