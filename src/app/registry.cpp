#include "app/registry.hpp"

#include <algorithm>
#include <random>
#include <utility>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view store_name = "system/registry.reg";
constexpr std::string_view work_folder_name = "system";
#ifndef _WIN32
constexpr std::string_view wine_system_file = "system.reg";
constexpr std::string_view garmin_key = R"(\\garmin\\)";

// Any key of a Garmin program: Wine itself makes none.
bool holds_garmin_keys(const std::string& prefix) {
  return contains(lower_ascii(read_whole_file(platform::join(prefix, wine_system_file))), garmin_key);
}
#endif

}  // namespace

const platform::RegistryValue* find_value(const Registry::Key& key, std::string_view name) {
  const auto found = std::find_if(key.values.begin(), key.values.end(),
                                  [&](const auto& value) { return equal_ignoring_case(value.name, name); });
  return found == key.values.end() ? nullptr : &*found;
}

std::string text_value(const Registry::Key& key, std::string_view name) {
  const platform::RegistryValue* value = find_value(key, name);
  const bool is_text = value != nullptr && (value->type == platform::registry_type::text ||
                                            value->type == platform::registry_type::expanding_text);
  return is_text ? value->data : "";
}

std::string wine_prefix_in_use(const Settings& settings) {
#ifdef _WIN32
  (void)settings;
  return "";
#else
  if (const std::string_view chosen = trim(settings.wine_prefix); !chosen.empty()) return std::string(chosen);
  std::string of_wine = platform::environment("WINEPREFIX").value_or("");
  if (platform::is_absolute(of_wine) &&
      file_has_content(platform::join(of_wine, std::string(wine_system_file))))
    return of_wine;
  const std::string usual = platform::join(platform::home_folder(), ".wine");
  return !platform::home_folder().empty() && holds_garmin_keys(usual) ? usual : "";
#endif
}

std::unique_ptr<Registry> open_registry(const Workspace& workspace) {
#ifdef _WIN32
  return system_registry(workspace.path(work_folder_name));
#else
  const std::string prefix = wine_prefix_in_use(workspace.settings);
  if (prefix.empty()) return embedded_registry(workspace.path(store_name));
  return wine_registry(prefix, workspace.path(work_folder_name));
#endif
}

std::unique_ptr<Registry> store_beside(const Workspace& workspace, const Registry& open) {
  const std::string file = workspace.path(store_name);
  if (!file_exists(file) || same_file(open.place(), file)) return nullptr;
  return embedded_registry(file);
}

std::string registry_work_file(const std::string& work_folder) {
  return platform::join(work_folder, "registry-" + std::to_string(std::random_device()()) + ".reg");
}

Status import_removal(Registry& registry, const std::string& key, const std::string& work_folder,
                      const std::function<void()>& tick) {
  const std::string file = registry_work_file(work_folder);
  const std::string text = registry_text_of({{key, true, {}, {}}});
  if (Status saved = safe_write(file, encode_registry_text(text)); !saved.ok()) return saved;
  Status imported = registry.import_file(file, tick);
  const Status removed = remove_file(file);
  if (!imported.ok()) return imported;
  registry.refresh();
  return registry.key(key).exists ? Status{key + ": the registry editor did not delete it"} : removed;
}

std::string path_on_z(const std::string& path) {
  // A backslash is a letter here and a separator there: such a name cannot be told.
  if (!path.starts_with('/') || contains(path, "\\")) return "";
  return "Z:" + replace_all(path, "/", "\\");
}

std::string path_from_z(const std::string& registered) {
  if (registered.starts_with('/')) return registered;
  if (registered.size() < 3 || !equal_ignoring_case(registered.substr(0, 2), "z:")) return "";
  std::string path = replace_all(registered.substr(2), "\\", "/");
  return path.starts_with('/') ? path : "";
}

std::string find_ignoring_case(const std::string& folder, std::string_view relative) {
  std::string path = folder;
  for (const std::string& part : split(relative, "/")) {
    if (part.empty()) continue;
    if (part == "." || part == "..") return "";
    std::string next = platform::join(path, part);
    if (!file_exists(next)) {
      std::vector<std::string> names = list_folders(path);
      const std::vector<std::string> files = list_files(path, {""});
      names.insert(names.end(), files.begin(), files.end());
      const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return equal_ignoring_case(name, part);
      });
      if (found == names.end()) return "";
      next = platform::join(path, *found);
    }
    path = std::move(next);
  }
  return path;
}

}  // namespace ferrowen
