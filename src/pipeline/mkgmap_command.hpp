// The mkgmap command line from the settings and the files of one build.
#pragma once

#include <string>

#include "app/settings.hpp"
#include "pipeline/options_text.hpp"
#include "runner/command.hpp"

namespace ferrowen {

struct CommandFiles {
  std::string tiles;     // argument file with the tile blocks
  std::string contours;  // nodem.args, "" for none
  std::string dem;       // dem.args, "" for none
  std::string typ;       // TYP input, "" for none
};

// Options in their fixed order, then contours, DEM, tiles, TYP and the description once more: mkgmap applies
// options to the inputs that follow them.
Command mkgmap_command(const Settings& settings, const OptionsText& options, const CommandFiles& files);

// Name that all set-wide files of a build derive from: the overview name, "osmmap" when none is set.
std::string overview_name(const Settings& settings);
// Message text for the first character that no file name can hold; "" when the name is fine.
std::string overview_name_problem(std::string_view name, std::string_view message_33);

}  // namespace ferrowen
