// Contour lines as an OSM file (XML, API version 0.6): nodes, then one way per line with the tags that styles
// look for: contour=elevation, contour_ext=elevation_minor, _medium or _major, ele=METRES.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/status.hpp"
#include "contours/cell.hpp"
#include "contours/contour_classes.hpp"
#include "contours/contour_lines.hpp"

namespace ferrowen {

// Given pieces of the file in order; returns the reason of a failure, which ends the writing, or "".
using OsmSink = std::function<std::string(std::string_view)>;

// Numbers of nodes and ways are the cell's, ascending. The error is the sink's, or tells that the lines have
// more points than the cell has numbers.
Status write_osm(const ContourLines& contours, Cell cell, const ContourClasses& classes, const OsmSink& sink);

// The same into a file: to a neighbour first ("NAME.new"), flushed, and renamed when whole. `stopped` is
// asked now and then; when it says yes the neighbour is removed. The error begins with the path.
Status write_osm_file(const std::string& path, const ContourLines& contours, Cell cell,
                      const ContourClasses& classes, const std::function<bool()>& stopped);

}  // namespace ferrowen
