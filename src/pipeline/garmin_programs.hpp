// The programs that show registered maps: closing those that hold map files, and launching one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/registry.hpp"
#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "platform/other_programs.hpp"

namespace ferrowen {

// How the system is asked; tests put their own in.
struct HeldFiles {
  std::function<bool(const std::string&)> is_held = platform::is_held_by_other;
  std::function<int(const std::vector<std::string>&)> close_windows = platform::close_windows_titled;
  int milliseconds = 10'000;  // for the programs to close
};
// Makes sure that no other program holds one of the files: closes the Garmin programs when the person agrees,
// and asks as long as it takes. False when the person gave up.
bool release_files(Workspace& workspace, Prompts& prompts, Progress& progress,
                   const std::vector<std::string>& files, const HeldFiles& held = {});

// The programs that can be chosen for "Launch ": the Garmin programs, and map viewers installed here.
std::vector<std::string> launchable_programs();
// "Launch " and the name of the chosen program.
std::string launch_label(const Settings& settings);
// Where the program of this name is; "" when it is not here.
std::string launch_path(const Settings& settings, const std::string& name);
// The program that "Launch " starts.
std::string chosen_program(const Settings& settings);
// Starts a program (in the registry's Wine prefix where it needs one); false after a message.
bool launch(const Workspace& workspace, Prompts& prompts, Registry& registry, const std::string& name);
// Starts the chosen one.
bool go_mapsource(const Workspace& workspace, Prompts& prompts, Registry& registry);
// The same after a question.
bool mapsource(const Workspace& workspace, Prompts& prompts, Registry& registry);

}  // namespace ferrowen
