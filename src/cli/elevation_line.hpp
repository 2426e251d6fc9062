// The part of the command line about heights and contours: hgt, contours, unzip, merge.
#pragma once

#include <string>

#include "cli/command_line.hpp"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave itself
class App;
}

namespace ferrowen {

struct ElevationArguments {
  HgtArguments hgt;
  ContoursArguments contours;
  UnzipArguments unzip;
  MergeArguments merge;
};

// `hint` ends the help of every command.
void add_elevation(CLI::App& app, ElevationArguments& arguments, const std::string& hint);

}  // namespace ferrowen
