// What `split` and `build` have in common: options that hold for one run, and the steps around a run.
#pragma once

#include <optional>
#include <string>

#include "app/run_settings.hpp"
#include "cli/command_line.hpp"
#include "cli/session.hpp"

namespace ferrowen {

// Sets a field for this run when the option was given.
Status override_text(RunSettings& run, std::string_view name, const std::optional<std::string>& value);
Status override_path(RunSettings& run, std::string_view name, const std::optional<std::string>& path);
// --hgt: the folder takes the place of the one that is in use now.
Status override_hgt(RunSettings& run, const std::optional<std::string>& folder);
// --memory: megabytes.
Status override_memory(RunSettings& run, const std::optional<std::string>& megabytes);

// The options of one command, applied to the record. The input is no override: it is kept.
Status apply_options(Workspace& workspace, RunSettings& run, const SplitArguments& arguments);
Status apply_options(Workspace& workspace, RunSettings& run, const BuildArguments& arguments);
// The options text with further lines, which stand before an end mark ("##").
std::string with_option_lines(std::string_view options_text, const std::vector<std::string>& lines);

// Main program path (with the offer of the backup), before the options of the run are applied.
ExitStatus check_program_path(Session& session);
// Saves what the run left in the record; the status gets worse when that fails.
ExitStatus save_after_run(Session& session, RunSettings& run, ExitStatus status);
// The person stopped the program before the stage began.
ExitStatus stop_before_run(Session& session, RunSettings& run);
// Says what the run itself has not said: that it was stopped, the end of its error stream.
void tell_end_of_run(Session& session, StageResult result);

}  // namespace ferrowen
