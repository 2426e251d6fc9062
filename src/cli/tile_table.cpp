#include "cli/tile_table.hpp"

#include <array>
#include <cmath>
#include <ctime>
#include <map>
#include <optional>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/table.hpp"
#include "pipeline/tiles/areas_list.hpp"
#include "pipeline/tiles/argument_file.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int corner_decimals = 4;

using TileFiles = std::map<std::string, std::string>;  // tile number -> path

std::string split_text(const Workspace& workspace, const char* name) {
  return decode_tool_text(read_whole_file(platform::join(split_folder(workspace), name)));
}

TileFiles tile_files(const Workspace& workspace) {
  TileFiles files;
  for (const ArgumentBlock& block : parse_argument_file(split_text(workspace, template_name)).blocks) {
    if (block.input_file.empty()) continue;
    files[block.map_name] = platform::is_absolute(block.input_file)
                                ? block.input_file
                                : platform::join(split_folder(workspace), block.input_file);
  }
  return files;
}

std::string corner_text(const Corner& corner) {
  return fixed_text(corner.latitude, corner_decimals) + "," + fixed_text(corner.longitude, corner_decimals);
}

std::string path_of(const TileFiles& files, const Tile& tile) {
  const auto found = files.find(tile.number);
  return found == files.end() ? "" : found->second;
}

Json corner_object(const Corner& corner) {
  return {{"latitude", corner.latitude}, {"longitude", corner.longitude}};
}

Json tile_object(const Tile& tile, const std::string& path) {
  return {{"number", tile.number},
          {"lower_left", corner_object(tile.lower_left)},
          {"upper_right", corner_object(tile.upper_right)},
          {"file", path},
          {"size", file_size(path)},
          {"selected", tile.selected},
          {"description", tile.description}};
}

// Local time, as areas.list gives it.
std::string split_date(const Workspace& workspace) {
  std::optional<double> seconds = parse_areas_list(split_text(workspace, areas_list_name)).generated;
  if (!seconds) seconds = platform::change_time(platform::join(split_folder(workspace), areas_list_name));
  if (!seconds) return "";
  const std::tm time = platform::local_time(static_cast<std::time_t>(std::floor(*seconds)));
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &time)};
}

std::string state_text(const Workspace& workspace) {
  const auto display = state_display(workspace.split_state, workspace);
  if (!display) return "";
  const bool missing = workspace.split_state == SplitState::input_missing;
  return display->text + (missing ? workspace.settings.input : "");
}

std::string table_text(const TileList& tiles, const TileFiles& files) {
  using enum Table::Align;
  Table table({{"Tile"},
               {"Lower left", right},
               {"Upper right", right},
               {"Size", right},
               {"Selected"},
               {"Description"}});
  for (const Tile& tile : tiles) {
    const std::string path = path_of(files, tile);
    table.add({tile.number, corner_text(tile.lower_left), corner_text(tile.upper_right),
               file_has_content(path) ? size_text(file_size(path)) : "missing", tile.selected ? "yes" : "no",
               tile.description});
  }
  return table.text();
}

std::string summary_text(const Workspace& workspace, const std::string& date) {
  Table table({{""}, {""}});
  table.add({"Input", workspace.settings.input});
  table.add({"State", state_text(workspace)});
  table.add({"Tiles", std::string(trim(tile_list_label(workspace.tiles, workspace.texts)))});
  if (!workspace.tiles.empty()) {
    table.add({"Split", date});
    table.add({"Folder", split_folder(workspace)});
  }
  return table.text();
}

}  // namespace

void show_tiles(Session& session) {
  const Workspace& workspace = session.workspace;
  const TileFiles files = tile_files(workspace);
  const std::string date = workspace.tiles.empty() ? "" : split_date(workspace);
  if (!workspace.tiles.empty()) session.show(table_text(workspace.tiles, files) + "\n");
  session.show(summary_text(workspace, date));
  session.json["input"] = workspace.settings.input;
  session.json["state"] = static_cast<int>(workspace.split_state);
  session.json["state_text"] = state_text(workspace);
  session.json["label"] = tile_list_label(workspace.tiles, workspace.texts);
  session.json["split_date"] = date;
  session.json["folder"] = split_folder(workspace);
  session.json["tiles"] = Json::array();
  for (const Tile& tile : workspace.tiles)
    session.json["tiles"].push_back(tile_object(tile, path_of(files, tile)));
}

}  // namespace ferrowen
