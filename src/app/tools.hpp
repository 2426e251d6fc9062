// External tools found on this machine.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/settings.hpp"

namespace ferrowen {

// Fills every empty tool path: from the system's own packages, PATH, the places of Windows setups, the folder
// "plugs" of the program folder. A set path is never changed; Java stays blank while it is in PATH.
void find_tools(Settings& settings);
// "PATH" with the folder of the Java program of the settings in front, when one is set.
std::vector<std::pair<std::string, std::string>> tool_environment(const Settings& settings);

}  // namespace ferrowen
