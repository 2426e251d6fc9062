// Which traced lines are kept, and with which of their points.
#pragma once

#include <cstdint>
#include <vector>

#include "contours/contour_lines.hpp"

namespace ferrowen {

struct LineRules {
  std::size_t least_points = 3;   // as traced; the repeated first point of a closed line does not count
  std::int32_t least_extent = 0;  // the longer side of the bounding box, in units of Point
  // Largest distance between a traced and the simplified line (Douglas and Peucker), in units of Point; 0
  // keeps every point.
  double tolerance = 0;
};

// Without points that repeat the one before them (in a closed line also the first at its end).
void remove_repeated(std::vector<Point>& line, bool closed);
bool is_kept(const std::vector<Point>& line, const LineRules& rules);
// The ends of an open line stay; a closed line keeps three points at least.
void simplify(std::vector<Point>& line, bool closed, double tolerance);

}  // namespace ferrowen
