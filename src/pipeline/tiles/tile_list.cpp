#include "pipeline/tiles/tile_list.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/areas_list.hpp"
#include "pipeline/tiles/argument_file.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_cannot_find = 35, message_needs_splitting = 36, message_no_splitting = 37;
constexpr double many_nodes = 1000000;
constexpr double large_split_degrees = 15;
constexpr std::size_t problems_shown = 5;

std::string split_file(const Workspace& workspace, std::string_view name) {
  return platform::join(split_folder(workspace), name);
}

std::string split_text(const Workspace& workspace, std::string_view name) {
  return decode_tool_text(read_whole_file(split_file(workspace, name)));
}

bool same_path(const std::string& left, const std::string& right) {
  const std::string one = platform::absolute(left);
  const std::string other = platform::absolute(right);
  return platform::names_ignore_case ? equal_ignoring_case(one, other) : one == other;
}

bool is_last_split_input(const Settings& settings) {
  return !settings.last_split_input.empty() && same_path(settings.input, settings.last_split_input);
}

// Without a remembered input the tiles may be of the current one: their date decides.
bool is_of_other_input(const Settings& settings) {
  return !settings.input.empty() && !settings.last_split_input.empty() && !is_last_split_input(settings);
}

// The date in areas.list has whole seconds.
bool is_newer(double input_time, const AreasList& areas, double list_time) {
  return areas.generated ? std::floor(input_time) > *areas.generated : input_time > list_time;
}

// A list of comments alone says nothing of where the tiles lie.
bool lists_areas(const Workspace& workspace) {
  return !parse_areas_list(split_text(workspace, areas_list_name)).areas.empty();
}

double span(const TileList& tiles, double Corner::*axis) {
  double lowest = tiles.front().lower_left.*axis;
  double highest = tiles.front().upper_right.*axis;
  for (const Tile& tile : tiles) {
    lowest = std::min(lowest, tile.lower_left.*axis);
    highest = std::max(highest, tile.upper_right.*axis);
  }
  return highest - lowest;
}

bool is_large_split(const TileList& tiles) {
  return !tiles.empty() && (span(tiles, &Corner::latitude) >= large_split_degrees ||
                            span(tiles, &Corner::longitude) >= large_split_degrees);
}

void warn_of_max_nodes(const Workspace& workspace, Prompts& prompts) {
  const std::string& max_nodes = workspace.settings.max_nodes;
  if (lenient_number(max_nodes) > many_nodes && is_large_split(workspace.tiles))
    prompts.tell("Maxnodes (" + max_nodes + ") may need to be lowered to 800,000", Icon::warning);
}

void tell_problems(const Workspace& workspace, Prompts& prompts, std::vector<std::string> problems) {
  if (problems.empty()) return;
  const std::size_t count = problems.size();
  problems.resize(std::min(count, problems_shown));
  if (count > problems_shown) problems.push_back("and " + std::to_string(count - problems_shown) + " more");
  prompts.tell(split_file(workspace, areas_list_name) + std::string(crlf) + join_texts(problems, crlf),
               Icon::warning);
}

SplitState state_of_own_tiles(const Workspace& workspace) {
  if (!count_tiles(split_folder(workspace)).complete()) return SplitState::needs_splitting;
  return chksplit_date(workspace);
}

// The state that needs no look at the tiles: they cannot be of this input.
std::optional<SplitState> state_without_tiles(const Workspace& workspace) {
  const std::string& input = workspace.settings.input;
  if (!input.empty() && !file_exists(input)) return SplitState::input_missing;
  if (is_mp(input) || is_of_other_input(workspace.settings)) return input_state(workspace);
  if (list_files(split_folder(workspace), tile_endings()).empty()) return SplitState::no_files;
  return std::nullopt;
}

TileList joined(const AreasList& areas, std::string_view template_text) {
  std::map<std::string, std::string, std::less<>> descriptions;
  for (ArgumentBlock& block : parse_argument_file(template_text).blocks)
    descriptions.emplace(std::move(block.map_name), std::move(block.description));
  TileList tiles;
  for (const Area& area : areas.areas) {
    const auto description = descriptions.find(area.number);
    tiles.push_back({area.number, description == descriptions.end() ? "" : description->second,
                     lower_left(area), upper_right(area), false});
  }
  return tiles;
}

}  // namespace

const std::vector<std::string>& tile_endings() {
  static const std::vector<std::string> endings = {".pbf", ".o5m", ".osm.gz"};
  return endings;
}

void set_splitterfiles(Workspace& workspace, Prompts& prompts) {
  workspace.tiles.clear();
  if (const auto state = state_without_tiles(workspace)) {
    workspace.split_state = *state;
    return;
  }
  const AreasList areas = parse_areas_list(split_text(workspace, areas_list_name));
  workspace.tiles = joined(areas, split_text(workspace, template_name));
  workspace.split_state = workspace.tiles.empty() ? SplitState::no_files : state_of_own_tiles(workspace);
  tell_problems(workspace, prompts, areas.problems);
  warn_of_max_nodes(workspace, prompts);
}

void load_tiles_of_input(Workspace& workspace, Prompts& prompts) {
  workspace.tiles.clear();
  workspace.saved_selection = false;
  workspace.split_state = input_state(workspace);
  const bool may_have_tiles = workspace.split_state == SplitState::needs_splitting &&
                              is_last_split_input(workspace.settings) && lists_areas(workspace);
  if (may_have_tiles && count_tiles(split_folder(workspace)).complete())
    set_splitterfiles(workspace, prompts);
}

SplitState chksplit_date(const Workspace& workspace) {
  const std::optional<double> list_time = platform::change_time(split_file(workspace, areas_list_name));
  const std::optional<double> input_time = platform::change_time(workspace.settings.input);
  if (!list_time || !input_time) return input_state(workspace);
  const AreasList areas = parse_areas_list(split_text(workspace, areas_list_name));
  return is_newer(*input_time, areas, *list_time) ? SplitState::not_up_to_date : SplitState::no_need_to_split;
}

SplitState input_state(const Workspace& workspace) {
  const Settings& settings = workspace.settings;
  if (settings.input.empty()) return SplitState::unknown;
  if (!file_exists(settings.input)) return SplitState::input_missing;
  if (is_mp(settings.input) || settings.unsplit_input) return SplitState::no_need_to_split;
  const bool needed = file_size(settings.input) > split_size_bytes || is_last_split_input(settings);
  return needed ? SplitState::needs_splitting : SplitState::no_need_to_split;
}

bool is_already_split(const Workspace& workspace) {
  return is_last_split_input(workspace.settings) && lists_areas(workspace) &&
         count_tiles(split_folder(workspace)).complete() &&
         chksplit_date(workspace) == SplitState::no_need_to_split;
}

TileCount count_tiles(const std::string& folder) {
  const ArgumentFile file =
      parse_argument_file(decode_tool_text(read_whole_file(platform::join(folder, template_name))));
  TileCount count;
  count.expected = file.blocks.size();
  for (const ArgumentBlock& block : file.blocks) {
    if (!block.input_file.empty() && file_has_content(platform::join(folder, block.input_file)))
      ++count.finished;
  }
  return count;
}

TileList join_tiles(std::string_view areas_list_text, std::string_view template_text) {
  return joined(parse_areas_list(areas_list_text), template_text);
}

std::optional<StateDisplay> state_display(SplitState state, const Workspace& workspace) {
  const MessageTable& messages = workspace.messages;
  const auto label = [&](std::string_view key) { return workspace.texts(Section::labels, key); };
  switch (state) {
    case SplitState::no_files:
      return StateDisplay{label("no_files"), {0, 0, 0}};
    case SplitState::input_missing:
      return StateDisplay{messages(message_cannot_find), {255, 0, 0}};
    case SplitState::unknown:
      return StateDisplay{"", {200, 200, 200}};
    case SplitState::no_need_to_split:
      return StateDisplay{messages(message_no_splitting), {0, 255, 0}};
    case SplitState::needs_splitting:
      return StateDisplay{messages(message_needs_splitting), {252, 125, 0}};
    case SplitState::not_up_to_date:
      return StateDisplay{label("not_up_to_date"), {17, 125, 5}};
  }
  return std::nullopt;
}

std::string tile_list_label(const TileList& tiles, const InterfaceTexts& texts) {
  if (tiles.empty()) return texts(Section::labels, "not_split");
  const std::size_t selected = selected_count(tiles);
  if (selected == 0) return texts(Section::labels, "using_all");
  return texts(Section::labels, "maps_selected") + std::to_string(selected) + ")";
}

Status select_tiles(TileList& tiles, const std::vector<std::string>& numbers) {
  const std::set<std::string> wanted(numbers.begin(), numbers.end());
  std::set<std::string> unknown = wanted;
  for (const Tile& tile : tiles)
    unknown.erase(tile.number);
  if (!unknown.empty()) return {"No such tile: " + join_texts({unknown.begin(), unknown.end()}, ", ")};
  for (Tile& tile : tiles)
    tile.selected = wanted.contains(tile.number);
  return {};
}

}  // namespace ferrowen
