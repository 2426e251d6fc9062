// Backups of mkgmap's argument files: those of the argument folder and those beside the tiles, together in a
// folder of the argument-backup folder that is named by its time.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// Message 192 with the folder; message 86 when there is nothing to back up.
bool back_up_arguments(const Workspace& workspace, Prompts& prompts, std::time_t now);
// Brings one file of a backup back to the folder that it came from; asks before it replaces one. Message 188
// when the file chosen is none of a backup. "" when nothing was restored, else the path of the restored file.
std::string restore_arguments(const Workspace& workspace, Prompts& prompts);
// Folders of the backups, the newest first.
std::vector<std::string> argument_backups(const Workspace& workspace);

}  // namespace ferrowen
