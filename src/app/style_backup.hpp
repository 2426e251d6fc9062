// Backups of style folders: copies in the program folder's "backup", each in a folder named by its time.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// Copies these styles of the styles folder (none named: every one that holds style files) to
// backup/<time>/<style>. Links are left out and named; a style that cannot be copied whole leaves nothing
// behind. True when everything asked for is backed up.
bool back_up_styles(const Workspace& workspace, Prompts& prompts, Progress& progress,
                    const std::vector<std::string>& styles, std::time_t now);

// Message 111 when a style has changed since its newest backup and that is older than seven days or missing;
// "" otherwise.
std::string style_backup_reminder(const Workspace& workspace, std::time_t now);

// Style folders that hold at least one of the files that make a style.
std::vector<std::string> styles_to_back_up(const Workspace& workspace);

}  // namespace ferrowen
