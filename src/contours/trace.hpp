// Contour lines of a grid of heights by marching squares: a line crosses an edge between two samples where
// the height, taken as linear along the edge, is the line's. Lines run with the higher ground on their left
// and are joined across the whole grid; the same grid always gives the same lines in the same order.
#pragma once

#include "base/status.hpp"
#include "contours/cell.hpp"
#include "contours/contour_lines.hpp"
#include "contours/height_grid.hpp"
#include "contours/line_rules.hpp"

namespace ferrowen {

// At zero every sample of that height would be a point of the line, where lines touch and plains are
// ambiguous.
inline constexpr double least_fake_distance = 0.000001;

struct Levels {
  int interval = 20;  // metres, 5 to 1000; lines at all multiples of it
  // A sample that lies exactly on a line is taken to be this much higher (below 0: lower), so that no line
  // runs through a sample and a flat sea or lake is on one side. In metres, other than 0, smaller than the
  // interval.
  double fake_distance = -0.5;
};

// A square between four samples of which two opposite ones lie higher is taken to be folded from its upper
// left to its lower right, so that lines of two levels never cross. Squares with a void corner have no lines:
// those that run into one end there. Fails when there are more points than a cell has numbers for.
Result<ContourLines> trace_contours(const HeightGrid& grid, Cell cell, const Levels& levels,
                                    const LineRules& rules);

}  // namespace ferrowen
