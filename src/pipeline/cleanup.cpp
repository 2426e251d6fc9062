#include "pipeline/cleanup.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/registration_repair.hpp"
#include "pipeline/registry_turn.hpp"
#include "platform/desktop.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace fs = std::filesystem;
using platform::file_system_path;
using platform::path_text;
using Folders = std::vector<std::string>;

namespace {

constexpr int message_select = 20, message_installed = 194;
constexpr std::string_view typ_folder = "typ";

std::string without_end_separators(std::string path) {
  while (path.size() > 1 && (path.ends_with('/') || path.ends_with(platform::separator)))
    path.pop_back();
  return path;
}

// For comparing alone: never the path that is deleted.
std::string comparable(const std::string& path) {
  const std::string text = path_text(file_system_path(path).lexically_normal());
  return lower_ascii(without_end_separators(replace_all(text, "/", std::string(1, platform::separator))));
}

// The path with all its links resolved; the path itself where the system cannot tell.
std::string real_path(const std::string& path) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(file_system_path(platform::absolute(path)), error);
  return error ? path : path_text(real);
}

bool is_same_or_inside(const std::string& inner, const std::string& outer) {
  const std::string below = comparable(outer);
  const std::string path = comparable(inner);
  return path == below ||
         path.starts_with(below.ends_with(platform::separator) ? below : below + platform::separator);
}

bool is_drive_root(const std::string& folder) {
  const fs::path path = file_system_path(folder).lexically_normal();
  // The top of a share on a server is one too.
  const bool is_share = path.root_name().native().size() > 2 && !path.relative_path().has_parent_path();
  return path.relative_path().empty() || path == path.root_path() || is_share;
}

Folders folders_of_settings(const Workspace& workspace) {
  const Settings& settings = workspace.settings;
  Folders folders = {
      platform::home_folder(),      workspace.folder.path(),      build_output_folder(settings),
      settings.map_folder,          settings.styles_folder,       split_folder(workspace),
      settings.gmapsupp_folder,     settings.scripts_folder,      settings.languages_folder,
      settings.argument_folder,     settings.archive_folder,      settings.argument_backup_folder,
      settings.image_folder,        settings.hgt_folder,          settings.contour_work_folder,
      settings.basecamp_tile_cache, settings.mapsource_tile_cache};
  folders.insert(folders.end(), settings.hgt_folders.begin(), settings.hgt_folders.end());
  folders.insert(folders.end(), settings.clip_folders.begin(), settings.clip_folders.end());
  std::erase_if(folders, [](const std::string& folder) { return trim(folder).empty(); });
  return folders;
}

bool holds_tdb(const std::string& folder) {
  const std::vector<std::string> names = list_files(folder, {""});
  return std::any_of(names.begin(), names.end(),
                     [](const std::string& name) { return ends_with_ignoring_case(name, ".tdb"); });
}

// Deletes what is no folder; a link goes, what it leads to stays. False when something could not be read.
bool delete_files(const std::string& folder) {
  std::error_code error;
  std::vector<fs::path> doomed;
  for (fs::directory_iterator entry(file_system_path(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    if (platform::is_link(path_text(entry->path())) || !entry->is_directory(ignored))
      doomed.push_back(entry->path());
  }
  for (const fs::path& path : doomed) {
    std::error_code ignored;  // what stays keeps the folder, and that is told
    fs::remove(path, ignored);
  }
  return !error;
}

// Only ever an empty folder.
void delete_empty_folder(const std::string& folder) {
  std::error_code ignored;
  if (fs::is_empty(file_system_path(folder), ignored)) fs::remove(file_system_path(folder), ignored);
}

void delete_typ_folder(const std::string& folder) {
  for (const std::string& name : list_folders(folder)) {
    const std::string path = platform::join(folder, name);
    if (!equal_ignoring_case(name, typ_folder) || platform::is_link(path)) continue;
    delete_files(path);
    delete_empty_folder(path);
  }
}

Result<Folders> registered_now(const CleanupServices& services) {
  if (services.registered_folders) return services.registered_folders();
  return failed<Folders>("The registered maps cannot be read.");
}

// True when it is this program's turn; else that has been told.
bool took_turn(const CleanupServices& services, Prompts& prompts, RegistryTurn& turn) {
  const Status taken = services.take_turn ? services.take_turn(turn) : Status{};
  if (!taken.ok()) prompts.tell(taken.error, Icon::critical);
  return taken.ok();
}

bool is_unused(const Workspace& workspace, const Folders& registered, const std::string& folder) {
  return !platform::is_link(folder) && deletion_obstacle(workspace, folder).empty() && holds_tdb(folder) &&
         !is_registered_folder(registered, folder);
}

}  // namespace

Folders map_target_folders(const Settings& settings) {
  Folders folders = {platform::absolute(build_output_folder(settings))};
  const std::string maps = platform::absolute(std::string(trim(settings.map_folder)));
  if (!maps.empty() && comparable(maps) != comparable(folders.front()) && !same_file(maps, folders.front()))
    folders.push_back(maps);
  return folders;
}

bool is_registered_folder(const Folders& registered, const std::string& folder) {
  const std::string wanted = comparable(folder);
  return std::any_of(registered.begin(), registered.end(), [&](const std::string& one) {
    return !trim(one).empty() && (comparable(one) == wanted || same_file(one, folder));
  });
}

std::string deletion_obstacle(const Workspace& workspace, const std::string& folder) {
  const std::string refused = "'" + folder + "' is not deleted: ";
  if (trim(folder).empty()) return refused + "no folder is named.";
  if (!platform::is_absolute(folder)) return refused + "the path is not a whole one.";
  if (is_drive_root(folder)) return refused + "it is the top of a drive.";
  if (platform::is_link(folder)) return refused + "it is a link to another folder.";
  const std::string real = real_path(folder);
  if (is_drive_root(real)) return refused + "it is the top of a drive.";
  for (const std::string& kept : folders_of_settings(workspace)) {
    if (is_same_or_inside(kept, folder) || is_same_or_inside(real_path(kept), real))
      return refused + "it is or holds a folder of yours or of this program, " + kept;
  }
  return "";
}

Result<Folders> unused_maps(const Workspace& workspace, const CleanupServices& services,
                            const std::string& folder) {
  const Result<Folders> registered = registered_now(services);
  if (!registered.ok()) return failed<Folders>(registered.error);
  Result<Folders> unused;
  for (const std::string& name : list_folders(folder)) {
    const std::string path = platform::join(platform::absolute(folder), name);
    if (is_unused(workspace, registered.value, path)) unused.value.push_back(path);
  }
  return unused;
}

Result<Folders> find_unused_maps(const Workspace& workspace, Prompts& prompts,
                                 const CleanupServices& services, const Folders& folders) {
  Result<Folders> all;
  for (const std::string& folder : folders) {
    const Result<Folders> found = unused_maps(workspace, services, folder);
    if (!found.ok()) return found;
    all.value.insert(all.value.end(), found.value.begin(), found.value.end());
  }
  if (all.value.empty()) {
    for (const std::string& folder : folders)
      prompts.tell("None found in folder: " + folder);
  }
  return all;
}

std::uint64_t map_folder_size(const std::string& folder) {
  Folders folders = {folder};
  for (const std::string& name : list_folders(folder)) {
    if (equal_ignoring_case(name, typ_folder)) folders.push_back(platform::join(folder, name));
  }
  std::uint64_t bytes = 0;
  for (const std::string& one : folders) {
    for (const std::string& name : list_files(one, {""}))
      bytes += file_size(platform::join(one, name));
  }
  return bytes;
}

bool killfolder(const Workspace& workspace, Prompts& prompts, const std::string& folder) {
  if (const std::string obstacle = deletion_obstacle(workspace, folder); !obstacle.empty()) {
    prompts.tell(obstacle, Icon::warning);
    return false;
  }
  if (!file_exists(folder)) return true;
  const std::string real = real_path(folder);
  delete_typ_folder(real);
  delete_files(real);
  delete_empty_folder(real);
  if (!file_exists(real)) return true;
  prompts.tell("Not all files deleted in " + folder + "\r\nFile(s) write protected.", Icon::warning);
  return false;
}

StageResult delete_unused_maps(const Workspace& workspace, Prompts& prompts, const CleanupServices& services,
                               const Folders& folders) {
  if (folders.empty()) {
    prompts.tell("Tick box to select folders.", Icon::warning);
    return StageResult::stopped;
  }
  const std::string question =
      "Are you sure you want to delete these maps?\r\n" + join_texts(folders, std::string(crlf));
  if (prompts.ask(question, Buttons::yes_no, Icon::warning) != Answer::yes) return StageResult::stopped;
  RegistryTurn turn;
  if (!took_turn(services, prompts, turn)) return StageResult::failed;
  bool all_gone = true;
  for (const std::string& folder : folders) {
    // The map may have been registered while the question stood there.
    const Result<Folders> registered = registered_now(services);
    if (!registered.ok()) {
      prompts.tell(registered.error, Icon::critical);
      return StageResult::failed;
    }
    if (deletion_obstacle(workspace, folder).empty() && !is_unused(workspace, registered.value, folder)) {
      prompts.tell("'" + folder + "' is not deleted: it is no unused map.", Icon::warning);
      all_gone = false;
    } else {
      all_gone = killfolder(workspace, prompts, folder) && all_gone;
    }
  }
  return all_gone ? StageResult::done : StageResult::failed;
}

Recovery recover_map(const Workspace& workspace, Prompts& prompts, const CleanupServices& services,
                     const Folders& folders) {
  if (folders.size() != 1) {
    prompts.tell(folders.empty() ? workspace.message(message_select) : "Please select only 1 map.",
                 Icon::warning);
    return Recovery::refused;
  }
  prompts.tell("\r\nThe map you want to recover might share an FID with another map!", Icon::warning);
  const std::string registration = registration_in(folders.front());
  if (registration.empty()) return Recovery::nothing_found;
  RegistryTurn turn;
  if (!took_turn(services, prompts, turn)) return Recovery::failed;
  const Result<Folders> registered = registered_now(services);
  if (registered.ok() && is_registered_folder(registered.value, folders.front())) {
    prompts.tell("'" + folders.front() + "' is registered already.", Icon::warning);
    return Recovery::refused;
  }
  const Status opened =
      registered.ok() ? services.import_registration(registration) : Status{registered.error};
  if (opened.ok()) {
    prompts.tell("'" + platform::name_of(folders.front()) + "' " + workspace.message(message_installed));
    return Recovery::done;
  }
  prompts.tell(opened.error, Icon::critical);
  return Recovery::failed;
}

}  // namespace ferrowen
