// The map that the last good build made: remembered over restarts, and removed on request.
#pragma once

#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

// Keeps the list of built files in the program folder.
Status remember_built_files(const Workspace& workspace);
// The files of the last good build, of this run of the program or an earlier one, that are still there.
std::vector<std::string> previous_map_files(const Workspace& workspace);
// "Remove Previous Map": asks, then deletes exactly those files. Message 128 when there are none. True when
// all of them are gone.
bool remove_previous_map(Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
