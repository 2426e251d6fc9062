#include "app/language_file.hpp"
#include "base/files.hpp"
#include "cli/commands.hpp"
#include "cli/table.hpp"
#include "cli/terminal.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_file_exists = 57;

void add_language(Session& session, Table& table, const Language& language) {
  const bool chosen = language.file == session.workspace.settings.language;
  table.add({chosen ? "*" : "", terminal_text(language.display_name), terminal_text(language.file)});
  session.json["languages"].push_back(
      {{"name", language.display_name}, {"file", language.file}, {"chosen", chosen}});
}

ExitStatus list(Session& session) {
  Table table({{""}, {"Language"}, {"File"}});
  add_language(session, table, {"", "English"});
  for (const Language& language : loadlanguages(session.workspace))
    add_language(session, table, language);
  session.json["languages_folder"] = session.workspace.settings.languages_folder;
  session.show(table.text());
  return ExitStatus::done;
}

ExitStatus write_template(Session& session, const std::string& path) {
  const std::string question = session.workspace.message(message_file_exists);
  if (file_exists(path) && session.prompts.ask(path + "\r\n" + question) != Answer::yes)
    return ExitStatus::stopped;
  const Status written = safe_write(path, language_template());
  if (!written.ok()) return session.fail(written.error, ExitStatus::run_failed);
  session.json["file"] = path;
  session.prompts.tell("Written: " + path);
  return ExitStatus::done;
}

ExitStatus check(Session& session, const std::string& path) {
  const Result<std::string> text = read_file(path, largest_language_file);
  if (!text.ok()) return session.fail(text.error);
  const std::vector<LanguageProblem> problems = check_language(text.value);
  std::string lines;
  session.json["problems"] = Json::array();
  for (const LanguageProblem& problem : problems) {
    lines += terminal_text(problem_text(problem)) + "\n";
    session.json["problems"].push_back({{"line", problem.line}, {"text", problem.text}});
  }
  session.show(lines);
  if (problems.empty()) {
    session.prompts.tell(path + ": nothing is missing and nothing is wrong.");
    return ExitStatus::done;
  }
  session.result = "problems found";
  return ExitStatus::run_failed;
}

}  // namespace

ExitStatus run_command(Session& session, const LanguageArguments& arguments) {
  // A check needs no program folder, so that it runs wherever translations are kept.
  if (arguments.action == LanguageArguments::Action::check)
    return check(session, platform::absolute(arguments.file));
  const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  return arguments.action == LanguageArguments::Action::list
             ? list(session)
             : write_template(session, platform::absolute(arguments.file));
}

}  // namespace ferrowen
