#include "elevation/merge.hpp"

#include "cli/commands.hpp"
#include "platform/system.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const MergeArguments& arguments) {
  platform::catch_interrupts();
  const ExitStatus opened = session.open(Session::Access::write, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  std::vector<std::string> files = arguments.files;
  if (arguments.list) {
    const Result<std::vector<std::string>> listed = load_merge_list(*arguments.list);
    if (!listed.ok()) return session.fail(listed.error);
    files.insert(files.end(), listed.value.begin(), listed.value.end());
  }
  const MergeReport report =
      merg(session.workspace, session.prompts, session.progress, files, arguments.output);
  session.json["output"] = arguments.output;
  session.json["left_out"] = report.left_out;
  const StageResult result = failed_in_part(report.result, !report.left_out.empty());
  session.result = result_word(result);
  return exit_status_of(result);
}

}  // namespace ferrowen
