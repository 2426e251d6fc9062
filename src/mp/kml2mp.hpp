// KML placemarks to Polish MP: a path becomes a line, a single position a point of interest.
#pragma once

#include <string>
#include <vector>

#include "mp/conversion.hpp"

namespace ferrowen {

// The choices of the window kml2mp; the control behind each of them stands beside it.
struct KmlChoices {
  std::string line_type = "16";   // Text1: hexadecimal
  std::string point_type = "2f";  // Text3: hexadecimal
  std::string label;              // Text4: of all objects; empty: from the placemark's data
  bool writes_points = false;     // Check2: single positions as points of interest
  // Text5, filled by the conversion: the first coordinates that it read, as the file has them.
  std::string converted_coordinates = {};
};

SourceFormat kml_format(KmlChoices& choices);
// Converts the files into "mps". A line type that had to be shortened is changed in the choices.
Conversion kml2mp(Workspace& workspace, Prompts& prompts, Progress& progress,
                  const std::vector<std::string>& files, KmlChoices& choices);

}  // namespace ferrowen
