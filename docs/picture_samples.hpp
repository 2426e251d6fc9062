// What the windows of the pictures show: a small style with a few mistakes, tracks, heights, an automation
// script and a map that no program knows any more.
#pragma once

#include <string>

#include "app/workspace.hpp"

namespace ferrowen {

struct PictureSamples {
  std::string track, placemarks, contours, map;  // files for the converters and for merging
};

// Writes them into the program folder and lets the settings name them. The map must be built and registered.
Result<PictureSamples> make_picture_samples(Workspace& workspace, const std::string& contour_tool);

}  // namespace ferrowen
