#include "automation/auto_editor.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/commands.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_exists = 121;

ExitStatus make(Session& session, std::string path) {
  if (!ends_with_ignoring_case(path, auto_ending)) path += auto_ending;
  const std::string question =
      session.workspace.message(message_exists) + platform::name_of(path) + "\r\n\r\nOverwrite?";
  if (file_exists(path) && session.prompts.ask(question) != Answer::yes) return ExitStatus::stopped;
  const std::string text = new_script(session.workspace);
  if (text.empty())
    return session.fail(session.workspace.path(file_name::script_template) + ": no such file",
                        ExitStatus::run_failed);
  const Status written = safe_write(path, text);
  if (!written.ok()) return session.fail(written.error, ExitStatus::run_failed);
  session.json["file"] = platform::absolute(path);
  session.show(platform::absolute(path) + "\n");
  return ExitStatus::done;
}

ExitStatus check(Session& session, const std::string& path) {
  if (file_exists(path) && !is_plain_file(path)) return session.fail(path + ": is no file");
  const Result<std::string> bytes = read_file(path);
  if (!bytes.ok()) return session.fail(bytes.error);
  const std::vector<AutoProblem> problems =
      check_auto_script(parse_auto_script(bytes.value), auto_facts(session.workspace));
  session.json["problems"] = Json::array();
  for (const AutoProblem& problem : problems) {
    session.json["problems"].push_back({{"line", problem.line}, {"text", problem.text}});
    session.show(path + ":" + std::to_string(problem.line) + ": " + problem.text + "\n");
  }
  return problems.empty() ? ExitStatus::done : ExitStatus::run_failed;
}

}  // namespace

ExitStatus run_command(Session& session, const ScriptArguments& arguments) {
  const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  return arguments.action == ScriptArguments::Action::make ? make(session, arguments.file)
                                                           : check(session, arguments.file);
}

}  // namespace ferrowen
