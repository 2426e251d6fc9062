// The command line of ferrowen-contours.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"
#include "contours/make_contours.hpp"

namespace ferrowen {

struct ContourCommand {
  ContourOptions options;
  std::vector<ContourJob> jobs;
  bool overwrite = false;
  std::size_t threads = 0;  // cells in work at the same time; 0: as many as there are processors
  bool help = false, version = false;
};

// Options are --NAME=VALUE, their names in any letter case; the last of several counts. Either --Lat and
// --Lon name one cell, or files are named. The error says what is wrong and how it is meant.
Result<ContourCommand> parse_contour_command(const std::vector<std::string>& arguments);

std::string contour_help();

}  // namespace ferrowen
