#include <algorithm>

#include "app/start_up.hpp"
#include "base/text.hpp"
#include "cli/build_table.hpp"
#include "cli/commands.hpp"
#include "cli/run_options.hpp"
#include "pipeline/build.hpp"
#include "pipeline/identifiers.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "platform/system.hpp"
#include "runner/command.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view saved_selection = "saved";

BuildRequest request_of(const BuildArguments& arguments) {
  BuildRequest request;
  // Who names the size of the tiles wants tiles, whatever the size of the input.
  request.split_again = arguments.split_again || arguments.max_nodes.has_value();
  if (!arguments.tiles) return request;
  request.use_saved_selection = *arguments.tiles == saved_selection;
  if (request.use_saved_selection) return request;
  for (const std::string& number : split(*arguments.tiles, ",")) {
    if (!trim(number).empty()) request.tiles.emplace_back(trim(number));
  }
  return request;
}

ExitStatus print_commands(Session& session, const BuildRequest& request) {
  const Result<std::vector<std::string>> planned =
      planned_commands(session.workspace, session.prompts, request);
  if (!planned.ok()) return session.fail(planned.error, ExitStatus::stopped);
  session.json["commands"] = planned.value;
  for (const std::string& command : planned.value) {
    const std::string shown = session.options.verbose ? one_option_per_line(command) : command;
    session.show(replace_all(replace_all(shown, " \r\n", "\n"), crlf, "\n") + "\n");
  }
  return ExitStatus::done;
}

ExitStatus write_arguments(Session& session, const BuildRequest& request) {
  const Result<std::string> written = save_arguments(session.workspace, session.prompts, request);
  if (!written.ok()) return session.fail(written.error, ExitStatus::stopped);
  session.json["file"] = written.value;
  session.show(written.value + "\n");
  return ExitStatus::done;
}

ExitStatus build(Session& session, RunSettings& run, const BuildRequest& request) {
  Workspace& workspace = session.workspace;
  query_java_version(workspace, session.prompts, session.progress);
  if (session.progress.stop_requested()) return stop_before_run(session, run);
  const BuildReport report = make_map(workspace, session.prompts, session.progress,
                                      build_services(session.prompts, session.progress), request);
  tell_end_of_run(session, report.result);
  show_report(session, report);
  return save_after_run(session, run, exit_status_of(report.result));
}

ExitStatus run_or_print(Session& session, const BuildArguments& arguments) {
  Workspace& workspace = session.workspace;
  RunSettings run(workspace);
  if (const Status applied = apply_options(workspace, run, arguments); !applied.ok())
    return session.fail(applied.error);
  const BuildRequest request = request_of(arguments);
  if (arguments.tiles && !request.use_saved_selection && request.tiles.empty())
    return session.fail(workspace.message(60));
  if (const Status input = check_input(workspace.settings.input, workspace.messages); !input.ok())
    return session.fail(input.error);
  if (arguments.fid == "auto") new_id(workspace, session.prompts);
  if (arguments.print) return print_commands(session, request);
  return arguments.save_arguments ? write_arguments(session, request) : build(session, run, request);
}

}  // namespace

ExitStatus run_command(Session& session, const BuildArguments& arguments) {
  platform::catch_interrupts();
  const auto access = arguments.print ? Session::Access::read : Session::Access::write;
  const auto notes = arguments.print ? Session::Notes::drop : Session::Notes::show;
  ExitStatus status = session.open(access, notes);
  if (status == ExitStatus::done && !arguments.print) status = check_program_path(session);
  return status == ExitStatus::done ? run_or_print(session, arguments) : status;
}

}  // namespace ferrowen
