// "Archive map": keeps the files of a finished map in a folder of the archive folder.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// Copies the map (what the last good build made, else what lies in the output folder of the map that the
// settings describe), its argument files and its .reg file to <archive folder>/<map name> <date>. Every copy
// is checked; one that fails leaves nothing behind. The path of the archive; "" when there is none, which has
// then been told (messages 117, 119, 120, 148), or when the person did not want to replace one (message 121).
std::string archive_map(const Workspace& workspace, Prompts& prompts, Progress& progress, std::time_t now);

// Map name, blank, date in the format of the settings; characters that no folder name can hold become "-".
std::string archive_name(const Settings& settings, std::time_t now);
// The files of the map to archive, full paths.
std::vector<std::string> map_files(const Workspace& workspace);

}  // namespace ferrowen
