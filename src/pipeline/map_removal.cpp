// Removing a registered map: its keys first, then the files in its folder.
#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/registry_turn.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_delete_folder = 116, message_no_map = 128, message_remove = 160, message_shared = 227;
constexpr const char* registry_denied = "Access to Registry denied.";

const InstalledMap* find_map(const std::vector<InstalledMap>& maps, const std::string& product) {
  const auto named = [&](const InstalledMap& map) { return map.product == product; };
  const auto alike = [&](const InstalledMap& map) { return equal_ignoring_case(map.product, product); };
  auto found = std::find_if(maps.begin(), maps.end(), named);
  if (found == maps.end()) found = std::find_if(maps.begin(), maps.end(), alike);
  return found == maps.end() ? nullptr : &*found;
}

// Why the files of this map stay; "" when they can go with it.
std::string files_obstacle(const Workspace& workspace, const std::vector<InstalledMap>& maps,
                           const InstalledMap& map, const std::string& tdb) {
  if (trim(map.location).empty()) return "No folder is registered.";
  if (map.path.empty()) return map.location;
  if (std::string obstacle = deletion_obstacle(workspace, map.path); !obstacle.empty()) return obstacle;
  std::vector<std::string> others;
  for (const InstalledMap& other : maps) {
    const bool same = other.key == map.key || equal_ignoring_case(other.product, map.product);
    if (!same && !other.path.empty()) others.push_back(other.path);
  }
  if (is_registered_folder(others, map.path)) return workspace.message(message_shared);
  // A folder that does not hold the map itself is something else.
  const bool holds_map = file_exists(tdb) && same_file(platform::folder_of(tdb), map.path);
  if (!holds_map && folder_exists(map.path)) return map.path;
  return "";
}

// Deletes directly, then through the registry editor, which may ask for more rights.
bool remove_key(const Workspace& workspace, Registry& registry, Progress& progress, const std::string& key) {
  const auto tick = [&] { progress.process_events(); };
  const Status removed = registry.remove_key(key, tick);
  registry.refresh();
  if (!registry.key(key).exists) return removed.ok();
  const std::string file = workspace.path("system/remove.reg");
  if (!safe_write(file, encode_registry_text(registry_text_of({{key, true, {}, {}}}))).ok()) return false;
  const Status imported = registry.import_file(file, tick);
  const Status cleared = remove_file(file);
  registry.refresh();
  return imported.ok() && cleared.ok() && !registry.key(key).exists;
}

std::string question_of(const Workspace& workspace, const InstalledMap& map, bool files_go) {
  const std::string question = workspace.message(message_remove) + "'" + map.product + "'?";
  if (!files_go) return question;
  return question + "\r\n" + workspace.message(message_delete_folder) + map.path;
}

}  // namespace

StageResult remove_registered_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                                  Registry& registry, const std::string& product, const HeldFiles& held) {
  RegistryTurn turn;
  if (const Status mine = turn.take(progress); !mine.ok()) {
    prompts.tell(std::string(registry_denied) + "\r\n" + mine.error, Icon::critical);
    return StageResult::failed;
  }
  const std::vector<InstalledMap> maps = querymapsource(workspace, registry, prompts, progress);
  const InstalledMap* found = find_map(maps, std::string(trim(product)));
  if (found == nullptr) {
    prompts.tell(workspace.message(message_no_map) + "\r\n" + product, Icon::warning);
    return StageResult::stopped;
  }
  const InstalledMap map = *found;
  if (map.key.empty()) {
    prompts.tell("Please remove files manually\r\n" + map.path, Icon::warning);
    return StageResult::stopped;
  }
  const std::string tdb = registry.system_path(map.tdb);
  const std::string obstacle = files_obstacle(workspace, maps, map, tdb);
  if (prompts.ask(question_of(workspace, map, obstacle.empty()), Buttons::yes_no, Icon::warning) !=
      Answer::yes)
    return StageResult::stopped;
  std::vector<std::string> files;
  for (const std::string& name : list_files(map.path, {""}))
    files.push_back(platform::join(map.path, name));
  if (obstacle.empty() && !release_files(workspace, prompts, progress, files, held))
    return StageResult::stopped;

  for (const std::string& key : keys_of_family(registry, map)) {
    if (remove_key(workspace, registry, progress, key)) continue;
    prompts.tell(registry_denied, Icon::critical);
    return StageResult::failed;
  }
  querymapsource(workspace, registry, prompts, progress);
  const bool files_are_gone = obstacle.empty() && killfolder(workspace, prompts, map.path);
  progress.status("Click Create Map");
  if (files_are_gone) {
    prompts.tell("All files were removed.");
    return StageResult::done;
  }
  prompts.tell("Not all files were removed\r\nPlease remove files manually" +
                   (obstacle.empty() ? "" : "\r\n" + obstacle),
               Icon::warning);
  return StageResult::failed;
}

}  // namespace ferrowen
