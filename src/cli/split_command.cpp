#include <chrono>

#include "app/start_up.hpp"
#include "cli/commands.hpp"
#include "cli/run_options.hpp"
#include "cli/tile_table.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

ExitStatus split(Session& session, RunSettings& run) {
  Workspace& workspace = session.workspace;
  const auto start = std::chrono::steady_clock::now();
  query_java_version(workspace, session.prompts, session.progress);
  if (session.progress.stop_requested()) return stop_before_run(session, run);
  const StageResult result = start_split(workspace, session.prompts, session.progress);
  tell_end_of_run(session, result);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  session.json["seconds"] = seconds.count();
  if (result == StageResult::done) show_tiles(session);
  return save_after_run(session, run, exit_status_of(result));
}

}  // namespace

ExitStatus run_command(Session& session, const SplitArguments& arguments) {
  platform::catch_interrupts();
  ExitStatus status = session.open(Session::Access::write, Session::Notes::show);
  if (status == ExitStatus::done) status = check_program_path(session);
  if (status != ExitStatus::done) return status;
  RunSettings run(session.workspace);
  if (const Status applied = apply_options(session.workspace, run, arguments); !applied.ok())
    return session.fail(applied.error);
  if (const Status input = check_input(session.workspace.settings.input, session.workspace.messages);
      !input.ok())
    return session.fail(input.error);
  return split(session, run);
}

}  // namespace ferrowen
