// What a build will run and write, decided before anything is touched.
#pragma once

#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "runner/command.hpp"

namespace ferrowen {

struct PlannedFile {
  std::string path;
  std::string text;  // UTF-8; encoded for Java when it is written
};

// What lies on the disk, read beforehand by gather_plan_facts().
struct PlanFacts {
  std::string template_text;               // of template.args; "" when there is none
  std::string argument_file;               // path of a saved selection that is in use; "" for none
  std::string argument_file_text;          // its text
  std::vector<std::string> contour_files;  // full paths
  std::vector<std::string> hgt_folders;    // absolute; those that hold heights
  bool areas_poly_exists = false;
  bool typ_is_in_place = false;  // the TYP of the settings is the one that lies in the output folder
};

struct BuildPlan {
  Command command;
  std::vector<PlannedFile> files;
  std::vector<std::string> map_names;  // of every image that mkgmap is expected to leave
  // The TYP of the settings and the one in the output folder that the command names: copied before the run,
  // unless they are the same file. Both "" for none.
  std::string typ_source, typ_copy;
  std::vector<std::string> notes;      // told to the person; the build goes on
  std::vector<std::string> log_lines;  // for the log of the run: which argument files it uses
};

// True when the build of this input goes over splitter's tiles.
bool builds_from_tiles(const Workspace& workspace);

// Where the TYP of the settings lies or will lie when mkgmap reads it.
std::string typ_in_output_folder(const Settings& settings);

// Pure: the plan, or the message that stops the build.
Result<BuildPlan> plan_build(const Workspace& workspace, const PlanFacts& facts);
PlanFacts gather_plan_facts(const Workspace& workspace);

// Plans, tells the notes, writes the argument files and returns the command for the run; "cancelxyz" when a
// check ended it, which has then been told. The plan is left in `plan`.
std::string createselectedarg(const Workspace& workspace, Prompts& prompts, BuildPlan& plan);
// templatetmp.args: the blocks of the tiles selected now.
Status create_smalltemparg(const Workspace& workspace);
// templatenw.args: the tiles to build (all, or the selection) with map names that begin at the map ID for the
// first tile of the split.
Status save_newtemplate(const Workspace& workspace);
// Keeps the selection in templatesel.args. loadarg() brings one back: the tiles of that argument file are
// selected. The error names what is wrong with the file.
Status save_selection(const Workspace& workspace);
Status loadarg(Workspace& workspace, const std::string& path);
// Writes sel.args for a command; "Error saving " + path, then the reason on a line of its own, on failure.
Status save_current_arguments(const Workspace& workspace, const Command& command);

}  // namespace ferrowen
