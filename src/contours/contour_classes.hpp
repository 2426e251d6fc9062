// Which contour lines are drawn how strongly.
#pragma once

#include <string_view>

namespace ferrowen {

// Lines at multiples of these elevations, in metres; all others are minor.
struct ContourClasses {
  int medium = 100;
  int major = 500;
};

inline std::string_view contour_class(int elevation, const ContourClasses& classes) {
  if (elevation % classes.major == 0) return "elevation_major";
  if (elevation % classes.medium == 0) return "elevation_medium";
  return "elevation_minor";
}

}  // namespace ferrowen
