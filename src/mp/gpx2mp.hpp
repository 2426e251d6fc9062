// GPX routes and tracks to Polish MP: each segment a line or polygon, with points at its start, its finish
// and half way.
#pragma once

#include <string>
#include <vector>

#include "mp/conversion.hpp"

namespace ferrowen {

// The choices of the window gpx2mp; the control behind each of them stands beside it.
struct GpxChoices {
  std::string line_type = "16";      // Text1 0: line or polygon, hexadecimal
  std::string start_type = "6412";   // Text1 1
  std::string half_way_type = "52";  // Text1 2
  std::string finish_type = "6412";  // Text1 3
  std::string label;                 // Text4: of the line; empty: the name found in the file
  bool offers_name = false;          // Check1: look for a name and offer it as label
  bool writes_points = false;        // Check3: start, half way and finish
  bool is_polygon = false;           // the polygon option
};

SourceFormat gpx_format(GpxChoices& choices);
// Converts the files into "mps". A line type that had to be shortened is changed in the choices.
Conversion gpx2mp(Workspace& workspace, Prompts& prompts, Progress& progress,
                  const std::vector<std::string>& files, GpxChoices& choices);

}  // namespace ferrowen
