// Removing a registered map: its keys first, then the files in its folder.
#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>

#include "base/files.hpp"
#include "base/fold_name.hpp"
#include "base/registry_text.hpp"
#include "base/text.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/registry_turn.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_delete_folder = 116, message_no_map = 128, message_remove = 160, message_shared = 227;
constexpr const char* registry_denied = "Access to Registry denied.";

std::vector<InstalledMap> maps_meant(const std::vector<InstalledMap>& maps, const MapChoice& choice) {
  std::vector<InstalledMap> meant;
  std::copy_if(maps.begin(), maps.end(), std::back_inserter(meant), [&](const InstalledMap& map) {
    if (!choice.key.empty()) return map.key == choice.key;
    return same_name(map.product, trim(choice.product)) && (choice.fid.empty() || map.fid == choice.fid);
  });
  return meant;
}

// The one map that is meant; told when there is none, or more than one.
std::optional<InstalledMap> chosen_map(const Workspace& workspace, Prompts& prompts,
                                       const std::vector<InstalledMap>& maps, const MapChoice& choice) {
  const std::vector<InstalledMap> meant = maps_meant(maps, choice);
  if (meant.size() == 1) return meant.front();
  if (meant.empty()) {
    prompts.tell(workspace.message(message_no_map) + "\r\n" + choice.product, Icon::warning);
    return std::nullopt;
  }
  std::string text = "Several maps have the name '" + choice.product + "'. Say which one by its FID:";
  for (const InstalledMap& map : meant)
    text += "\r\nFID " + map.fid + ", " + map.location;
  prompts.tell(text, Icon::warning);
  return std::nullopt;
}

// Why the files of this map stay; "" when they can go with it. `keys` are those that go.
std::string files_obstacle(const Workspace& workspace, const std::vector<InstalledMap>& maps,
                           const InstalledMap& map, const std::string& tdb,
                           const std::vector<std::string>& keys) {
  if (trim(map.location).empty()) return "No folder is registered.";
  if (map.path.empty()) return map.location;
  if (std::string obstacle = deletion_obstacle(workspace, map.path); !obstacle.empty()) return obstacle;
  std::vector<std::string> others;
  for (const InstalledMap& other : maps) {
    const bool goes = std::find(keys.begin(), keys.end(), other.key) != keys.end();
    if (!goes && !other.path.empty()) others.push_back(other.path);
  }
  if (is_registered_folder(others, map.path)) return workspace.message(message_shared);
  // A folder that does not hold the map itself is something else.
  const bool holds_map = file_exists(tdb) && same_file(platform::folder_of(tdb), map.path);
  if (!holds_map && folder_exists(map.path)) return map.path;
  return "";
}

// The Garmin programs are not to open on a map that is gone.
Status forget_last_used(Registry& registry, const InstalledMap& map, const std::string& file,
                        const std::function<void()>& tick) {
  const std::optional<long> fid = exact_whole_number(map.fid);
  if (!fid) return {};
  const std::string wanted =
      last_used_text({fid_bytes_text(static_cast<int>(*fid)), registry.user_identifier(), ""});
  std::vector<RegistryChange> forgotten;
  for (const RegistryChange& change : parse_registry_text(wanted).changes) {
    const Registry::Key key = registry.key(change.key);
    for (const platform::RegistryValue& last : change.values) {
      const platform::RegistryValue* value = find_value(key, last.name);
      const bool names_map = value != nullptr && value->type == last.type && value->data == last.data;
      if (names_map) forgotten.push_back({change.key, false, {}, {last.name}});
    }
  }
  if (forgotten.empty()) return {};
  if (Status written = safe_write(file, encode_registry_text(registry_text_of(forgotten))); !written.ok())
    return written;
  const Status imported = registry.import_file(file, tick);
  const Status cleared = remove_file(file);
  return imported.ok() ? cleared : imported;
}

std::string question_of(const Workspace& workspace, const InstalledMap& map, bool files_go) {
  std::string question = workspace.message(message_remove) + "'" + map.product + "'?";
  if (!files_go) return question;
  return question + "\r\n" + workspace.message(message_delete_folder) + map.path;
}

}  // namespace

namespace {

StageResult remove_in_turn(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                           const MapChoice& choice, const HeldFiles& held) {
  const std::vector<InstalledMap> maps = querymapsource(workspace, registry, prompts, progress);
  const std::optional<InstalledMap> found = chosen_map(workspace, prompts, maps, choice);
  if (!found) return StageResult::stopped;
  const InstalledMap& map = *found;
  if (map.key.empty()) {
    prompts.tell("Please remove files manually\r\n" + map.path, Icon::warning);
    return StageResult::stopped;
  }
  const std::vector<std::string> keys = keys_of_family(registry, map);
  std::vector<InstalledMap> known = maps_of_own_store(workspace, registry, prompts);
  known.insert(known.end(), maps.begin(), maps.end());
  const std::string obstacle = files_obstacle(workspace, known, map, registry.system_path(map.tdb), keys);
  if (prompts.ask(question_of(workspace, map, obstacle.empty()), Buttons::yes_no, Icon::warning) !=
      Answer::yes)
    return StageResult::stopped;
  std::vector<std::string> files;
  for (const std::string& name : list_files(map.path, {""}))
    files.push_back(platform::join(map.path, name));
  if (obstacle.empty() && !release_files(workspace, prompts, progress, files, held))
    return StageResult::stopped;

  for (const std::string& key : keys) {
    const Status removed = registry.remove_key(key, [&] { progress.process_events(); });
    registry.refresh();
    if (removed.ok() && !registry.key(key).exists) continue;
    prompts.tell(registry_denied, Icon::critical);
    return StageResult::failed;
  }
  const Status forgotten = forget_last_used(registry, map, workspace.path("system/remove.reg"),
                                            [&] { progress.process_events(); });
  if (!forgotten.ok()) prompts.tell(forgotten.error, Icon::warning);
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

}  // namespace

StageResult remove_registered_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                                  Registry& registry, const MapChoice& choice, const HeldFiles& held) {
  RegistryTurn turn;
  if (const Status mine = turn.take(progress); !mine.ok()) {
    prompts.tell(std::string(registry_denied) + "\r\n" + mine.error, Icon::critical);
    return StageResult::failed;
  }
  return remove_in_turn(workspace, prompts, progress, registry, choice, held);
}

}  // namespace ferrowen
