// Joins several PBF files into one, with osmconvert.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "runner/console_script.hpp"

namespace ferrowen {

// A list file (*.lst): one path per line. For Windows "/" becomes "\" and a doubled "\" one.
std::vector<std::string> parse_merge_list(std::string_view text, Dialect dialect = native_dialect);
std::string merge_list_text(const std::vector<std::string>& files);
// Relative names are meant from the folder of the list.
Result<std::vector<std::string>> load_merge_list(const std::string& path);
Status save_merge_list(const std::string& path, const std::vector<std::string>& files);

struct MergeScript {
  std::string osmconvert;
  std::vector<std::string> files;
  std::string target;
  std::string work_folder;  // of p1.o5m, p2.o5m, ... and all.o5m
  // The files as the tool is given them; empty: as they are called. Messages never name these.
  std::vector<std::string> given_files = {};
};
ConsoleScript merge_script(const MergeScript& script, Dialect dialect = native_dialect);

struct MergeReport {
  StageResult result = StageResult::stopped;
  std::vector<std::string> left_out;  // inputs that could not be read
};
// Checks, asks before it replaces a target, and merges. Inputs that osmconvert cannot read are told and left
// out. The old target comes back when there is no new one.
MergeReport merg(Workspace& workspace, Prompts& prompts, Progress& progress,
                 const std::vector<std::string>& files, const std::string& target);

// The name osmconvert needs: it tells the format from an ending in lower case. The error says what is wrong.
Result<std::string> merge_target(const std::string& target);

}  // namespace ferrowen
