// The run entry: turns a tool command into the console script run.bat / run.sh, runs it as a visible run and
// returns what came of it. Splitter, build and automation all enter here.
#pragma once

#include <functional>
#include <string>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "runner/command.hpp"
#include "runner/visible_run.hpp"

namespace ferrowen {

inline constexpr const char* cancelled_text = "cancelxyz";

// The switches of one run, taken from the settings.
struct ScriptSwitches {
  bool log = false;  // mkgmap's log
  bool keep_error_stream = false;
  bool keep_console_open = false;
  Dialect dialect = native_dialect;
  std::string logging_properties;  // path, "" when there is none
};

// Script text with the log option, blanks for code 250, slashes, blanks and the error stream in order; or
// the message that stops the run (map name, character sets).
Result<std::string> prepared_script(const std::string& script, const ScriptSwitches& switches,
                                    const MessageTable& messages);

// Prepares and runs. `script` holds the command before and the script as run after, or "cancelxyz" when the
// person gave up before the run started or a check stopped it.
VisibleRunEnd run_script(Workspace& workspace, Prompts& prompts, Progress& progress, std::string& script,
                         const std::function<void()>& tick);

// True for a script that invokes the splitter; any other run is a build.
bool is_split_script(std::string_view script);
// Elapsed time for the status line: minutes with " min".
std::string timetaken(double seconds);

}  // namespace ferrowen
