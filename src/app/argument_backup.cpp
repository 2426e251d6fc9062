#include "app/argument_backup.hpp"

#include <algorithm>

#include "base/date_text.hpp"
#include "base/file_set.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_overwrite = 57, message_no_files = 86, message_select = 188, message_backed_up = 192;
constexpr std::string_view argument_ending = ".args";
constexpr std::string_view tiles_part = "tiles";  // subfolder of a backup for the files from beside the tiles

std::string or_default(const Workspace& workspace, const std::string& folder, std::string_view name) {
  return trim(folder).empty() ? workspace.path(name) : platform::absolute(folder);
}

std::string argument_folder(const Workspace& workspace) {
  return or_default(workspace, workspace.settings.argument_folder, "args");
}

std::string tiles_folder(const Workspace& workspace) {
  return or_default(workspace, workspace.settings.split_folder, "temp");
}

std::string backup_folder(const Workspace& workspace) {
  return or_default(workspace, workspace.settings.argument_backup_folder, "backup/args");
}

void add_files(const std::string& folder, const std::string& prefix, std::vector<FileToCopy>& files) {
  for (const std::string& name : list_files(folder, {std::string(argument_ending)}))
    files.push_back({platform::join(folder, name), prefix + name});
}

// Where a file of a backup belongs; "" for a file that is in no backup.
std::string home_of(const Workspace& workspace, const std::string& path) {
  std::string folder = platform::folder_of(platform::absolute(path));
  const bool is_of_tiles = platform::name_of(folder) == tiles_part;
  if (is_of_tiles) folder = platform::folder_of(folder);
  if (!is_time_stamp(platform::name_of(folder)) ||
      !same_file(platform::folder_of(folder), backup_folder(workspace)))
    return "";
  return is_of_tiles ? tiles_folder(workspace) : argument_folder(workspace);
}

}  // namespace

std::vector<std::string> argument_backups(const Workspace& workspace) {
  const std::string folder = backup_folder(workspace);
  std::vector<std::string> names = list_folders(folder);
  std::erase_if(names, [](const std::string& name) { return !is_time_stamp(name); });
  std::reverse(names.begin(), names.end());
  for (std::string& name : names)
    name = platform::join(folder, name);
  return names;
}

bool back_up_arguments(const Workspace& workspace, Prompts& prompts, std::time_t now) {
  std::vector<FileToCopy> files;
  add_files(argument_folder(workspace), "", files);
  add_files(tiles_folder(workspace), std::string(tiles_part) + "/", files);
  if (files.empty()) {
    prompts.tell(workspace.message(message_no_files), Icon::warning);
    return false;
  }
  const std::string backups = backup_folder(workspace);
  const std::string folder = platform::join(backups, time_stamp(now));
  Status done = make_folder(backups);
  if (done.ok()) done = copy_file_set(files, folder, {}, "");
  if (!done.ok()) {
    prompts.tell(done.error, Icon::critical);
    return false;
  }
  prompts.tell(workspace.message(message_backed_up) + folder);
  return true;
}

std::string restore_arguments(const Workspace& workspace, Prompts& prompts) {
  const std::vector<std::string> backups = argument_backups(workspace);
  const std::string start = backups.empty() ? backup_folder(workspace) : backups.front();
  const std::string select = workspace.message(message_select);
  const auto chosen = prompts.choose_file({select, {{"Argument Files (*.args)", "*.args"}}, start, false});
  if (!chosen || chosen->empty()) return "";
  const std::string home = home_of(workspace, *chosen);
  if (home.empty() || !ends_with_ignoring_case(*chosen, argument_ending) || !file_has_content(*chosen)) {
    prompts.tell(select, Icon::warning);
    return "";
  }
  std::string target = platform::join(home, platform::name_of(*chosen));
  if (file_exists(target) &&
      prompts.ask(workspace.message(message_overwrite) + std::string(crlf) + target) != Answer::yes)
    return "";
  Status restored = make_folder(home);
  if (restored.ok()) restored = copy_file(*chosen, target);
  if (restored.ok()) return target;
  prompts.tell(restored.error, Icon::critical);
  return "";
}

}  // namespace ferrowen
