// The start-up sequence, in named steps.
#pragma once

#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// What the owner of the stage has to show next; the start-up itself opens no window.
enum class AfterStartUp : std::uint8_t { ready, offer_restore, open_settings };

// Folders, settings, defaults of the machine, styles, map-ID and FID lists. The error tells why the program
// folder cannot be used at all.
Status start_up(Workspace& workspace, Prompts& prompts);
// Runs "java -version" as a captured run and fills the Java version text.
void query_java_version(Workspace& workspace, Prompts& prompts, Progress& progress);
// Tells when mkgmap.jar is set but missing, and which action to offer.
AfterStartUp check_main_path(const Workspace& workspace, Prompts& prompts);

// True when Java, mkgmap.jar and splitter.jar are there: without them no map can be built.
bool essential_tools_present(const Workspace& workspace);

// First line of java's output without quotes when it names a build; "Java not installed" otherwise.
std::string java_version_text(std::string_view output);
// The same without the word "version", as the window shows it.
std::string java_label(std::string_view version_text);

// Names of the style folders; "default" is built into mkgmap and always there.
std::vector<std::string> style_names(const Settings& settings);
// The option sets that ship with the program become the options of a fresh record.
void take_option_sets(Workspace& workspace);
// In the program folder: where clipped contours go that no other folder is chosen for.
inline constexpr const char* default_clip_folder = "files";
// Defaults that depend on the machine: default TYP, map folder, Garmin programs, tile caches, tool paths, the
// folder of clipped contours.
void fill_machine_defaults(Workspace& workspace);

}  // namespace ferrowen
