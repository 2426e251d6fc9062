// Reader of what the MP writer wrote: the lines, polygons and points of a Polish MP text as numbers, for a
// look at them. The header is passed over, of a point with several levels the first alone counts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mp/coordinate.hpp"
#include "mp/mp_types.hpp"

namespace ferrowen {

struct MpShape {
  MpKind kind = MpKind::line;
  std::string label;  // in the code page of the file
  std::vector<Position> points;
};

// Sections without good coordinates are left out.
std::vector<MpShape> read_mp_shapes(std::string_view text);

}  // namespace ferrowen
