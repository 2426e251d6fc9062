// The part of the command line about conversions to Polish MP: gpx2mp, kml2mp.
#pragma once

#include <string>

#include "cli/command_line.hpp"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave itself
class App;
}

namespace ferrowen {

struct ConverterArguments {
  GpxArguments gpx;
  KmlArguments kml;
};

// `hint` ends the help of every command.
void add_converters(CLI::App& app, ConverterArguments& arguments, const std::string& hint);

}  // namespace ferrowen
