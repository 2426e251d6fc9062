// The splitter stage: decide, check the limits, build the command, run it, follow it, judge the tiles.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "runner/command.hpp"

namespace ferrowen {

enum class StageResult : std::uint8_t {
  done,
  stopped,    // by a check or by a No
  failed,     // the tool ran and the result is not good
  cancelled,  // by the person, while it ran
};

// "Split Map": checks whether a split is needed and allowed, then calls do_splitter.
StageResult start_split(Workspace& workspace, Prompts& prompts, Progress& progress);
// Validates, builds the command, runs it and refreshes the tile list. The old tiles come back when the new
// ones are not good.
StageResult do_splitter(Workspace& workspace, Prompts& prompts, Progress& progress);

// Asks whether to go on when the memory setting is below the minimum for the input; false on No.
bool memory_is_accepted(const Workspace& workspace, Prompts& prompts);

// "java -Xmx" + memory + "m -ea -jar"; without any memory setting "java -ea -jar".
std::string java_prefix(std::string_view memory_setting);
// What is wrong with the memory setting before a tool is started with it; ok for a blank one.
Status check_memory(std::string_view memory_setting);
// Memory in megabytes that Java takes: the setting, or for a blank one a quarter of the machine's memory. 0
// when that is unknown.
int java_memory(std::string_view memory_setting);

struct LimitCorrection {
  std::string value;
  int message = 0;  // 0: the value was fine
};
LimitCorrection corrected_max_nodes(std::string_view max_nodes);
LimitCorrection corrected_max_areas(std::string_view max_areas);

// Pure part: the command from the settings. Options that are not passed on are told in `notes`.
struct SplitterCommand {
  Command command;
  std::vector<std::string> notes;
};
SplitterCommand splitter_command(const Settings& settings);

// Progress bar (0 to 1) of a split: as it stands at the start while no tile is expected, one third until half
// of the tiles are there, then their share.
double split_fraction(std::size_t expected_tiles, std::size_t finished_tiles);
// Memory in megabytes below which a split of an input of this size (PBF) is likely to fail.
int least_memory_for_split(std::uint64_t input_bytes);

}  // namespace ferrowen
