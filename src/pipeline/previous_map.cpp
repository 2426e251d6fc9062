#include "pipeline/previous_map.hpp"

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view list_name = "system/lastmap";
constexpr int message_no_map = 128;
constexpr int message_remove = 160;

}  // namespace

Status remember_built_files(const Workspace& workspace) {
  return safe_write(workspace.path(list_name), join_texts(workspace.built_files, crlf));
}

std::vector<std::string> previous_map_files(const Workspace& workspace) {
  std::vector<std::string> listed = workspace.built_files;
  if (listed.empty()) listed = split_lines(read_whole_file(workspace.path(list_name)));
  std::vector<std::string> files;
  for (const std::string& path : listed) {
    // A list that was tampered with must not reach folders, nor names that depend on where the program runs.
    if (platform::is_absolute(path) && file_exists(path) && !folder_exists(path)) files.push_back(path);
  }
  return files;
}

bool remove_previous_map(Workspace& workspace, Prompts& prompts) {
  const std::vector<std::string> files = previous_map_files(workspace);
  if (files.empty()) {
    prompts.tell(workspace.message(message_no_map));
    return false;
  }
  const std::string question =
      workspace.message(message_remove) + workspace.settings.map_name + "?\r\n\r\n" + join_texts(files, crlf);
  if (prompts.ask(question, Buttons::yes_no, Icon::warning) != Answer::yes) return false;
  workspace.built_files.clear();
  for (const std::string& path : files) {
    const Status removed = remove_file(path);
    if (removed.ok()) continue;
    prompts.tell(removed.error, Icon::critical);
    return false;
  }
  const Status forgotten = remove_file(workspace.path(list_name));
  if (!forgotten.ok()) prompts.tell(forgotten.error, Icon::warning);
  return forgotten.ok();
}

}  // namespace ferrowen
