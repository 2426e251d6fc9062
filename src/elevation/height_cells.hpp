// The height cells that tiles need, each with its file and what is wrong with it: the map compiler itself
// takes a missing or damaged cell for sea level and says nothing that anybody would notice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

enum class CellCondition : std::uint8_t { found, missing, damaged, wrong_case };

struct HeightCell {
  std::string name;  // N46W007.hgt
  CellCondition condition = CellCondition::missing;
  std::string path;     // of its file, "" when there is none
  std::string problem;  // damaged: the end of a sentence
};

// "N46W007.hgt" for the name of a file of that cell in any case: heights, plain or zipped, contours, clipped
// contours. "" for other names.
std::string cell_of_file(std::string_view file_name);
// Bytes of 1201 x 1201 or 3601 x 3601 samples.
bool is_height_size(std::uint64_t bytes);
// What is wrong with a cell's file, plain or zipped, as the end of a sentence; "" when nothing is. A zipped
// one is unpacked to see it.
std::string height_file_problem(const std::string& path, const std::string& cell_name);

// Looks for each cell in the folders, the first that has it counts.
std::vector<HeightCell> find_height_cells(const std::vector<std::string>& names,
                                          const std::vector<std::string>& folders);
// The names of the cells in this condition.
std::vector<std::string> cells_in(const std::vector<HeightCell>& cells, CellCondition condition);

// Loads the list of land cells when it is empty. A list that is there and cannot be read is told.
void load_land_list(Workspace& workspace, Prompts& prompts);
// The cells that the selected tiles need (all tiles when none is selected).
std::vector<std::string> needed_cells(Workspace& workspace, Prompts& prompts);

// A degree cell under the tiles of a map, for a picture of it.
struct AreaCell {
  enum class State : std::uint8_t { found, missing, sea };
  std::string name;
  int south = 0, west = 0;  // degrees
  State state = State::missing;
};
// The cells of the selected tiles (all tiles when none is selected), sea included. Damaged ones count as
// missing, as far as the list of an archive tells.
std::vector<AreaCell> cells_of_area(Workspace& workspace, Prompts& prompts);

// Offers to rename files of cells that the map compiler would not find because of their case; renamed cells
// are then found. The error tells of a file that could not be renamed.
Status offer_renaming(Prompts& prompts, std::vector<HeightCell>& cells);

// The same for the cells of the selected tiles.
void offer_renaming_in_area(Workspace& workspace, Prompts& prompts);

// The check of a DEM build: every cell that the tiles touch. Tells what is missing or damaged; false when not
// a single cell has heights, so that the build must not go on.
bool check_dem_cells(const Workspace& workspace, Prompts& prompts);
// The check of a build with contours: tells how many contour files are added and which are missing. The build
// goes on in any case, without contours when there are none.
void check_contour_files(const Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
