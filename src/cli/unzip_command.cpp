#include "elevation/unzip.hpp"

#include "cli/commands.hpp"
#include "platform/system.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const UnzipArguments& arguments) {
  platform::catch_interrupts();
  const ExitStatus opened = session.open(Session::Access::write, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  const UnzipReport report = unzip(session.workspace, session.prompts, session.progress, arguments.folder);
  session.json["files"] = report.files;
  session.json["failed"] = report.failed;
  session.json["refused"] = report.refused;
  session.result = result_word(report.result);
  return exit_status_of(report.result);
}

}  // namespace ferrowen
