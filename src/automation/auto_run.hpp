// Runs automation scripts: the tags become settings for one run, then the stages follow without a question.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "app/workspace.hpp"
#include "automation/auto_script.hpp"
#include "automation/quiet_prompts.hpp"
#include "base/prompts.hpp"
#include "pipeline/build.hpp"

namespace ferrowen {

struct AutoReport {
  std::string script;  // full path
  StageResult result = StageResult::stopped;
  std::vector<std::string> problems;  // of the script's text, with their lines; nothing was started then
  std::vector<StageTime> stages;      // contours, split, build, register, ... in their order
  BuildReport build;
  std::vector<QuietMessage> messages;  // everything that the quiet flag kept back
  double seconds = 0;
  std::string log;  // path of the log that was written; "" for none
};

// Runs one script. A problem in its text, or in a value, ends it before anything is started. Each stage runs
// only when the one before it was good. The settings that the script changed come back afterwards. The log
// holds the messages, the commands and what the tools said.
AutoReport run_auto_script(Workspace& workspace, Progress& progress, const std::string& path);

// The report of one run, or of several, for a person.
std::string report_text(const AutoReport& report);
std::string summary_text(const std::vector<AutoReport>& reports);
// The path of the script of the last later report that wrote files of this one anew; "" for none.
std::string replaced_by(const std::vector<AutoReport>& reports, std::size_t number);

// Starts a script the way the main window does: refused while one runs ("Auto Script already running"), asked
// ("Auto Create?"), remembered as the last script.
bool script_is_wanted(Workspace& workspace, Prompts& prompts, const std::string& path);

}  // namespace ferrowen
