#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/table.hpp"
#include "cli/terminal.hpp"
#include "pipeline/cleanup.hpp"
#include "pipeline/registration.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

using Folders = std::vector<std::string>;

// A folder may be named by its path, or by its name in one of the folders that are searched.
std::string named_folder(const Folders& targets, const std::string& word) {
  for (const std::string& target : targets) {
    std::string path = platform::join(target, word);
    if (!word.empty() && platform::name_of(word) == word && folder_exists(path)) return path;
  }
  return platform::absolute(word);
}

// Why a folder that was named is not touched; "" when it may be. What lies elsewhere is not deleted: it may
// be anybody's map.
std::string folder_problem(const Folders& targets, const std::string& word, const std::string& folder,
                           bool is_deleted) {
  if (trim(word).empty() || !folder_exists(folder)) return "'" + word + "': there is no such folder.";
  if (!is_deleted) return "";
  const std::string above = platform::folder_of(platform::folder_of(platform::join(folder, "x")));
  const bool is_below = std::any_of(targets.begin(), targets.end(),
                                    [&](const std::string& target) { return same_file(target, above); });
  return is_below ? "" : "'" + folder + "' lies in none of the folders of maps: " + join_texts(targets, ", ");
}

ExitStatus list(Session& session, const CleanupServices& services, const Folders& targets) {
  const Result<Folders> found = find_unused_maps(session.workspace, session.prompts, services, targets);
  if (!found.ok()) return session.fail(found.error, ExitStatus::run_failed);
  Table table({{"Folder"}, {"Size", Table::Align::right}});
  session.json["unused"] = Json::array();
  for (const std::string& folder : found.value) {
    table.add({terminal_text(folder), size_text(map_folder_size(folder))});
    session.json["unused"].push_back({{"folder", folder}, {"size", map_folder_size(folder)}});
  }
  if (!found.value.empty()) session.show(table.text());
  return ExitStatus::done;
}

ExitStatus remove(Session& session, const CleanupServices& services, const Folders& folders) {
  const StageResult result = delete_unused_maps(session.workspace, session.prompts, services, folders);
  session.json["deleted"] = Json::array();
  for (const std::string& folder : folders) {
    if (result == StageResult::stopped || file_exists(folder)) continue;
    session.json["deleted"].push_back(folder);
    session.prompts.tell("Deleted: " + folder);
  }
  return exit_status_of(result);
}

ExitStatus recover(Session& session, const CleanupServices& services, const std::string& folder) {
  switch (recover_map(session.workspace, session.prompts, services, {folder})) {
    case Recovery::done:
      return ExitStatus::done;
    case Recovery::refused:
      return ExitStatus::stopped;
    case Recovery::nothing_found:
      return session.fail(folder + ": there is no .reg file; nothing was done.", ExitStatus::run_failed);
    case Recovery::failed:
      break;
  }
  return ExitStatus::run_failed;
}

}  // namespace

ExitStatus run_command(Session& session, const UnusedMapsArguments& arguments) {
  const bool changes = !arguments.remove.empty() || arguments.recover;
  const ExitStatus opened =
      session.open(changes ? Session::Access::write : Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  const CleanupServices services = cleanup_services(session.workspace, session.prompts, session.progress);
  const Folders targets = map_target_folders(session.workspace.settings);
  Folders words = arguments.remove;
  if (arguments.recover) words.push_back(*arguments.recover);
  Folders folders;
  for (const std::string& word : words) {
    folders.push_back(named_folder(targets, word));
    const std::string problem = folder_problem(targets, word, folders.back(), !arguments.recover);
    if (!problem.empty()) return session.fail(problem, ExitStatus::run_failed);
  }
  if (!arguments.remove.empty()) return remove(session, services, folders);
  if (arguments.recover) return recover(session, services, folders.front());
  return list(session, services, targets);
}

}  // namespace ferrowen
