// Shorelines of the world for the background of maps on the screen. Reader of the asset "coastline"; its
// format is told in the program that makes it, assets/make_coastline.py.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/tile.hpp"

namespace ferrowen {

struct Shoreline {
  std::vector<Corner> points;
  Corner lower_left, upper_right;  // bounds
};

// Lines that cannot be read are left out; positions outside the world end their line.
std::vector<Shoreline> parse_coastline(std::string_view text);
// The shipped coastline; empty when the asset is not there.
std::vector<Shoreline> load_coastline();

}  // namespace ferrowen
