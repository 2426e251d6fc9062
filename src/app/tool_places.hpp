// Where the external tools are looked for: a list of places for each, and the lookup in them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

// What of a machine the lists depend on, so that those of one system can be tried out on another.
struct ToolPlaces {
  bool windows = false;
  std::function<std::string(const std::string&)> program_in_path;  // full path; "" when there is none
  std::vector<std::string> path_folders;
  std::vector<std::string> program_files;  // %ProgramFiles% and its kin; none elsewhere
  std::string java_home;
  std::string program_folder;  // the person's; its subfolder "plugs" is for tools
  std::string own_folder;      // that of the executable
};
ToolPlaces places_of_this_machine(const std::string& program_folder);

// The paths to try behind PATH, best first. `setting` is the name of the setting that holds the tool's path.
// "*" at the end of a folder's name stands for any rest of it.
std::vector<std::string> tool_candidates(std::string_view setting, const ToolPlaces& places);
// A tool by PATH, else the first candidate that is there; of several folders that a "*" stands for the one
// with the highest version in its name. "" when there is none. Archives (.jar) of the system's own packages
// come before PATH.
std::string find_tool(std::string_view setting, const ToolPlaces& places);

// True when a candidate stands for this path, whether or not a file is there.
bool is_usual_place(std::string_view setting, const std::string& path, const ToolPlaces& places);

// True when `left` names a newer version: the numbers in the names decide.
bool is_newer_version(std::string_view left, std::string_view right);

}  // namespace ferrowen
