#include "pipeline/tiles/last_split.hpp"

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_already_split = 8, message_not_up_to_date = 34, message_cannot_find = 35,
              message_no_last_split = 106, message_cancelled_selection = 130;

bool refuse(Prompts& prompts, const std::string& text) {
  prompts.tell(text, Icon::warning);
  return false;
}

bool tiles_are_there(const Workspace& workspace) {
  const std::string folder = split_folder(workspace);
  return file_exists(platform::join(folder, areas_list_name)) && count_tiles(folder).complete();
}

bool has_selection(const Workspace& workspace) {
  return workspace.saved_selection || selected_count(workspace.tiles) > 0;
}

}  // namespace

bool check_last_split(Workspace& workspace, Prompts& prompts) {
  Settings& settings = workspace.settings;
  const std::string missing = workspace.message(message_no_last_split);
  if (trim(settings.last_split_input).empty()) return refuse(prompts, missing);
  if (!tiles_are_there(workspace))
    return refuse(prompts, missing + std::string(crlf) + split_folder(workspace));
  if (!file_exists(settings.last_split_input))
    return refuse(prompts, missing + std::string(crlf) + workspace.message(message_cannot_find) +
                               settings.last_split_input);
  if (has_selection(workspace)) prompts.tell(workspace.message(message_cancelled_selection));
  workspace.saved_selection = false;
  settings.input = settings.last_split_input;
  settings.unsplit_input = false;  // these tiles are what is wanted
  set_splitterfiles(workspace, prompts);
  const bool newest = workspace.split_state == SplitState::no_need_to_split;
  prompts.tell(workspace.message(newest ? message_already_split : message_not_up_to_date),
               newest ? Icon::information : Icon::warning);
  return !workspace.tiles.empty();
}

}  // namespace ferrowen
