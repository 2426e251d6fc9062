// From an input file to a finished map: split when needed, check, plan, run, judge.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/build_checks.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

struct StageTime {
  std::string stage;
  double seconds = 0;
};

struct MadeFile {
  std::string path;
  std::uint64_t size = 0;
};

struct BuildReport {
  StageResult result = StageResult::stopped;
  bool built = false;  // the map itself is good, whatever became of the stages behind it
  std::vector<StageTime> stages;
  std::vector<MadeFile> files;    // what this build made, each where it is now
  std::string image;              // the device image in the place that it was brought to; "" for none
  std::string registered_folder;  // of the registered map; "" for none
  std::string command;            // as run
  std::string fid;                // family ID of the map
  std::size_t tiles = 0;
};

struct BuildRequest {
  bool split_again = false;        // split even when good tiles are there
  std::vector<std::string> tiles;  // tile numbers to build; empty: all
  bool use_saved_selection = false;
};

// Create Map: the checks, then the build of the tiles (or of the unsplit input), then the stages of
// pipeline/delivery.hpp.
BuildReport create_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                       const BuildServices& services, CheckScope scope = CheckScope::all);
// The first half of make_map: the input is split when it needs that, after the checks that need no tiles, and
// the tiles to build are selected. The split's time is in the report, and its result.
BuildReport prepare_tiles(Workspace& workspace, Prompts& prompts, Progress& progress,
                          const BuildServices& services, const BuildRequest& request);
// Create Map from any state: prepare_tiles, then the build.
BuildReport make_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                     const BuildServices& services, const BuildRequest& request);

// Writes the argument files of the build that make_map would run, and sel.args, which names them all for
// "mkgmap -c". Runs nothing. The result is the path of sel.args.
Result<std::string> save_arguments(Workspace& workspace, Prompts& prompts, const BuildRequest& request);

// The commands that make_map would run, without running or writing anything; one line each.
Result<std::vector<std::string>> planned_commands(Workspace& workspace, Prompts& prompts,
                                                  const BuildRequest& request);

}  // namespace ferrowen
