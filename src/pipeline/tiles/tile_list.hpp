// The tile list: what the split left behind, whether it belongs to the current input, and the selection.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

inline constexpr const char* areas_list_name = "areas.list";
inline constexpr const char* areas_poly_name = "areas.poly";
inline constexpr const char* template_name = "template.args";

// Endings of the names that the splitter gives to tiles.
const std::vector<std::string>& tile_endings();

// Reloads the tile list from the split output folder and sets the split state. Tiles that are known to be of
// another input are not listed.
void set_splitterfiles(Workspace& workspace, Prompts& prompts);
// What choosing an input does: its state, and its tiles when it is the input of the last split and all of
// them are there, also older ones (not_up_to_date).
void load_tiles_of_input(Workspace& workspace, Prompts& prompts);
// Compares the date of the split with that of the input: not_up_to_date when the input is newer.
SplitState chksplit_date(const Workspace& workspace);
// State of the current input before anything is asked of the splitter's files.
SplitState input_state(const Workspace& workspace);
// True when the tiles in the split output folder were made from the current input, are all there and are not
// older than it.
bool is_already_split(const Workspace& workspace);

// Tiles that the template.args of a folder names, and how many of them are there and not empty.
struct TileCount {
  std::size_t expected = 0;
  std::size_t finished = 0;
  [[nodiscard]] bool complete() const { return expected > 0 && finished == expected; }
};
TileCount count_tiles(const std::string& folder);

// Pure part: joins areas and blocks by tile number, in the order of areas.list.
TileList join_tiles(std::string_view areas_list_text, std::string_view template_text);

struct StateColour {
  int red = 0, green = 0, blue = 0;
};
struct StateDisplay {
  std::string text;
  StateColour colour;
};
// Indicator of a state; nothing for a state that leaves the indicator unchanged.
std::optional<StateDisplay> state_display(SplitState state, const Workspace& workspace);
// "Using all splitter files", " (Maps Selected:3)" or " NOT split".
std::string tile_list_label(const TileList& tiles, const InterfaceTexts& texts);

// Selects exactly these tile numbers (an empty list selects none, so that all are built). The error names
// the numbers that the list does not hold; nothing is changed then.
Status select_tiles(TileList& tiles, const std::vector<std::string>& numbers);

}  // namespace ferrowen
