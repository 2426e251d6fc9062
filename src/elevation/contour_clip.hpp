// Cuts the contour files of the selected tiles down to the box around these tiles, with osmconvert.
#pragma once

#include <string>
#include <vector>

#include "app/tile.hpp"
#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "runner/console_script.hpp"

namespace ferrowen {

// Decimal degrees; x is longitude. Without a selected tile it keeps its start values.
struct SelectionBox {
  float xmin = 360, ymin = 180, xmax = -360, ymax = -180;
  std::size_t tiles = 0;
};
SelectionBox selection_box(const TileList& tiles);
// Text of clip2.poly, osmconvert's polygon format; CR LF.
// Format: https://wiki.openstreetmap.org/wiki/Osmosis/Polygon_Filter_File_Format
std::string polygon_text(const SelectionBox& box);
// "xmin,ymin,xmax,ymax".
std::string box_text(const SelectionBox& box);

// Writes clip2.poly for the selected tiles into the program folder and returns the text of their box.
Result<std::string> create_poly(const Workspace& workspace);

// "N46W007clp.pbf" for N46W007.osm.
std::string clipped_file_name(std::string_view contour_file);

struct ClipJob {
  std::string contours;  // full path
  std::string clipped;   // full path
};
struct ClipScript {
  std::string osmconvert;
  std::string polygon;
  std::vector<ClipJob> jobs;
  std::size_t files = 0;  // told at the start
};
ConsoleScript clip_script(const ClipScript& script, Dialect dialect = native_dialect);

enum class ClipStep : unsigned char { ended, locate_osmconvert };

struct ClipReport {
  StageResult result = StageResult::stopped;
  ClipStep step = ClipStep::ended;  // locate_osmconvert: the settings are the next thing to show
  std::vector<std::string> files;   // clipped files that were made
};

// Clips the contours of the selected tiles into the current clip folder. Older clips come back where no new
// one was made.
ClipReport clip(Workspace& workspace, Prompts& prompts, Progress& progress);
// The same for one tile.
ClipReport clip1tile(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& number);

}  // namespace ferrowen
