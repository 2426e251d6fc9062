// The settings file: load, save, back up, restore, reset.
#pragma once

#include <string>
#include <variant>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

struct FromProgramFolder {};  // ferrow6.dat, or ferrow5.dat when that does not exist
struct FromDefaults {};
using SettingsSource = std::variant<FromProgramFolder, FromDefaults, std::string>;  // or a path

// Fills the settings record. A file that cannot be read gives every field its default. Notes of the load
// rules are told.
void loaddata(Workspace& workspace, Prompts& prompts, const SettingsSource& source = FromProgramFolder{});
// Why the settings of the program folder cannot be read, if they are there at all: saving over them would
// lose them.
Status settings_are_readable(const Workspace& workspace);
// Writes the record to `target`, or to the program folder's settings file when that is empty.
Status savedata(const Workspace& workspace, const std::string& target = "");
// A settings file that holds what none can hold is kept under another name and told, with the automatic
// backup that could replace it; that one is not overwritten until settings were restored or the program
// starts again.
void put_damaged_settings_aside(Workspace& workspace, Prompts& prompts);
// What the main window does when it closes: the settings file and the automatic backup.
Status save_on_exit(const Workspace& workspace);

// The three actions of the settings menu. Each talks to the person and returns true when it was done.
bool back_up_settings(const Workspace& workspace, Prompts& prompts);
bool restore_settings(Workspace& workspace, Prompts& prompts);
bool reset_settings(Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
