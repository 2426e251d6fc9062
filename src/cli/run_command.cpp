#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "automation/auto_editor.hpp"
#include "automation/auto_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/run_options.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr const char* summary_name = "logs/summary.txt";
constexpr int message_cancelled = 148;

// By its path, or by its name in the folder of scripts.
std::string script_path(const Settings& settings, const std::string& word) {
  if (file_exists(word)) return platform::absolute(word);
  const std::string kept = platform::join(settings.scripts_folder, word);
  return platform::name_of(word) == word && file_exists(kept) ? kept : platform::absolute(word);
}

Json json_of(const AutoReport& report) {
  Json stages = Json::array(), files = Json::array(), messages = Json::array();
  for (const StageTime& stage : report.stages)
    stages.push_back({{"stage", stage.stage}, {"seconds", stage.seconds}});
  for (const MadeFile& file : report.build.files)
    files.push_back({{"path", file.path}, {"size", file.size}});
  for (const QuietMessage& message : report.messages)
    messages.push_back(message_line(message));
  return {{"script", report.script},
          {"result", report.problems.empty() ? result_word(report.result) : "not started"},
          {"seconds", report.seconds},
          {"problems", report.problems},
          {"fid", report.build.fid},
          {"stages", stages},
          {"files", files},
          {"image", report.build.image},
          {"registered", report.build.registered_folder},
          {"messages", messages},
          {"log", report.log}};
}

// The worst of all: a failed run, a script that could not be read, one that a check stopped.
ExitStatus status_of(const std::vector<AutoReport>& reports) {
  bool unread = false, stopped = false;
  for (const AutoReport& report : reports) {
    if (!report.problems.empty())
      unread = true;
    else if (report.result == StageResult::stopped)
      stopped = true;
    else if (report.result != StageResult::done)
      return ExitStatus::run_failed;
  }
  if (unread) return ExitStatus::wrong_usage;
  return stopped ? ExitStatus::stopped : ExitStatus::done;
}

void show(Session& session, const AutoReport& report) {
  session.progress.finish();
  session.show(report_text(report));
  if (!report.log.empty()) session.show("  log: " + report.log + "\n");
}

ExitStatus run_all(Session& session, const std::vector<std::string>& words) {
  Workspace& workspace = session.workspace;
  std::vector<AutoReport> reports;
  for (const std::string& word : words) {
    const std::string path = script_path(workspace.settings, word);
    if (session.progress.stop_requested()) {
      reports.push_back({path, StageResult::cancelled, {}, {}, {}, {}, 0, ""});
      continue;
    }
    workspace.settings.last_script = path;
    reports.push_back(run_auto_script(workspace, session.progress, path));
    show(session, reports.back());
    // After each: what was split last must be known to the next start, however this one ends.
    if (const Status saved = savedata(workspace); !saved.ok())
      session.prompts.tell(saved.error, Icon::warning);
  }
  session.json["scripts"] = Json::array();
  for (std::size_t number = 0; number < reports.size(); ++number) {
    session.json["scripts"].push_back(json_of(reports[number]));
    session.json["scripts"].back()["replaced_by"] = replaced_by(reports, number);
  }
  const std::string summary = summary_text(reports);
  session.show("\n" + summary);
  const std::string path = workspace.path(summary_name);
  Status written = make_folder(platform::folder_of(path));
  if (written.ok()) written = safe_write(path, with_crlf(summary));
  if (!written.ok()) return session.fail(written.error, ExitStatus::run_failed);
  const ExitStatus status = status_of(reports);
  if (session.progress.stop_requested())
    return session.fail(workspace.message(message_cancelled), ExitStatus::run_failed);
  return status;
}

}  // namespace

ExitStatus run_command(Session& session, const RunArguments& arguments) {
  platform::catch_interrupts();
  ExitStatus status = session.open(Session::Access::write, Session::Notes::show);
  if (status == ExitStatus::done) status = check_program_path(session);
  if (status != ExitStatus::done) return status;
  query_java_version(session.workspace, session.prompts, session.progress);
  return run_all(session, arguments.scripts);
}

}  // namespace ferrowen
