// Which one-degree height cells (.hgt) the map tiles need, and which of them are found.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/tile.hpp"
#include "app/workspace.hpp"

namespace ferrowen {

// Eleven characters: N46W007.hgt. The whole-degree parts are cut from the texts, "," or "." both count as
// decimal separator; south and west cells are named after their south-west corner.
std::string hgt_name(std::string_view latitude, std::string_view longitude);
// Signed whole part of a coordinate text; a value between -1 and 0 comes back as it is, so that its sign
// stays.
double signed_whole_part(std::string_view coordinate);
// True for a name of that form whose cell lies on the earth: N00 to N89, S01 to S90, E000 to E179, W001 to
// W180.
bool is_hgt_name(std::string_view name);

// The names that one tile needs, joined without separator (each has eleven characters). A cell that a
// non-empty land list does not hold is left out.
std::string tile_coverage(const Tile& tile, std::string_view land_list);
std::vector<std::string> coverage_names(std::string_view tile_coverage);
// The names that the selected tiles need (all tiles when none is selected), each once, in order.
std::vector<std::string> coverage_of_selection(const TileList& tiles, std::string_view land_list);

// Every cell that the selected tiles (all tiles when none is selected) touch, by the degrees of the map and
// not by the texts of its corners; these are the heights that the map compiler reads.
std::vector<std::string> touched_cells(const TileList& tiles, std::string_view land_list);

enum class CellFile : std::uint8_t { hgt = 0, hgt_again = 1, contours = 2, clipped_contours = 3 };

struct CellFiles {
  std::vector<std::string> found;    // full paths, in the order of the names
  std::vector<std::string> missing;  // names
};
// Looks for each cell's file in a folder; heights are also found as .zip and .hgt.zip. Clips
// that are not whole count as missing.
CellFiles find_cell_files(const std::vector<std::string>& names, const std::string& folder, CellFile kind);
// The same in several folders; the first that has a cell's file counts.
CellFiles find_cell_files(const std::vector<std::string>& names, const std::vector<std::string>& folders,
                          CellFile kind);

// The height folder in use: the current slot's, else the root height folder.
std::string current_hgt_folder(const Settings& settings);
std::string current_clip_folder(const Settings& settings);
// Puts this folder of clips into use, in the slot that has it, else in the first empty one; no other folder
// is written over. False when every slot is taken.
bool use_clip_folder(Settings& settings, const std::string& folder);
// The current height folder; with automatic search also every other slot that names an existing folder,
// without repetition.
std::vector<std::string> searched_hgt_folders(const Settings& settings);
// These and the working folder of the contour tool, where contours may have been made.
std::vector<std::string> searched_contour_folders(const Settings& settings);
// True when a folder holds the heights of at least one cell, plain or zipped, under the name that the map
// compiler will look for.
bool holds_heights(const std::string& folder);

}  // namespace ferrowen
