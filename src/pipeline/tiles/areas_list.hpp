// Reader of splitter's areas.list.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/tile.hpp"

namespace ferrowen {

// Bounds in splitter's map units (degrees * 2^24 / 360), latitude first.
struct Area {
  std::string number;
  long lower_latitude = 0, lower_longitude = 0, upper_latitude = 0, upper_longitude = 0;
};

struct AreasList {
  std::vector<Area> areas;
  // Date of the split from the comment that holds "generated" (any case), local time, seconds since 1970.
  std::optional<double> generated;
  std::vector<std::string> problems;  // "line 7: ..." for lines that are no area
};

AreasList parse_areas_list(std::string_view text);
double degrees_of_map_units(long units);
Corner lower_left(const Area& area);
Corner upper_right(const Area& area);

}  // namespace ferrowen
