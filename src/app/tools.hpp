// External tools found on this machine.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/settings.hpp"
#include "app/tool_places.hpp"

namespace ferrowen {

// Fills every empty tool path: from the system's own packages, PATH, the places of Windows setups, the folder
// "plugs" of the program folder; Java stays blank while it is in PATH. A path that leads to a file is never
// changed. One that leads nowhere is kept too, unless it is such a usual place (an update has put the tool
// into a folder with another number) and the tool is found again.
void find_tools(Settings& settings);
void find_tools(Settings& settings, const ToolPlaces& places);
// "PATH" with the folder of the Java program of the settings in front, when one is set.
std::vector<std::pair<std::string, std::string>> tool_environment(const Settings& settings);

}  // namespace ferrowen
