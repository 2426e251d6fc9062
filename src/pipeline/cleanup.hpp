// Map folders that no registered family uses any more: found, deleted or registered again.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

class RegistryTurn;

// What the cleanup needs to know from the registry, and asks it to do.
struct CleanupServices {
  // The folders of all registered families, as this system writes paths. Without a sure answer nothing is
  // called unused.
  std::function<Result<std::vector<std::string>>()> registered_folders;
  // Registers the map of this .reg file again.
  std::function<Status(const std::string&)> import_registration;
  // Waits until no other program changes the registry.
  std::function<Status(RegistryTurn&)> take_turn;
};

// The folders that maps are built or kept in: those whose subfolders are searched.
std::vector<std::string> map_target_folders(const Settings& settings);

// Pure: whether one of the registered folders is this one, whole entries compared without regard to case.
bool is_registered_folder(const std::vector<std::string>& registered, const std::string& folder);

// Why a folder must not be deleted; "" when it may. Never an empty or relative path, the top of a drive, a
// link, the home folder, the program folder, a folder of the settings, or one that holds any of these.
std::string deletion_obstacle(const Workspace& workspace, const std::string& folder);

// unused_maps: subfolders of `folder` that hold a .tdb file and belong to no registered family, by their full
// paths. Links and folders that must not be deleted are never among them.
Result<std::vector<std::string>> unused_maps(const Workspace& workspace, const CleanupServices& services,
                                             const std::string& folder);
// The same for several folders; tells "None found in folder: " for each when there is none at all.
Result<std::vector<std::string>> find_unused_maps(const Workspace& workspace, Prompts& prompts,
                                                  const CleanupServices& services,
                                                  const std::vector<std::string>& folders);

// Bytes of the files that killfolder would delete there.
std::uint64_t map_folder_size(const std::string& folder);

// killfolder: deletes the files of the folder and of its "typ" subfolder, then these folders. Other folders
// in it stay, and so does then the folder itself. Links are deleted, never followed. Tells what stayed; true
// when nothing did.
bool killfolder(const Workspace& workspace, Prompts& prompts, const std::string& folder);

// Delete (button): asks, then kills each folder that is still unused. "Done" when all of them are
// gone, "stopped" when nothing was to be done.
StageResult delete_unused_maps(const Workspace& workspace, Prompts& prompts, const CleanupServices& services,
                               const std::vector<std::string>& folders);

enum class Recovery : std::uint8_t { done, refused, nothing_found, failed };
// Recover (button): registers the one chosen map again from the .reg file in its folder.
Recovery recover_map(const Workspace& workspace, Prompts& prompts, const CleanupServices& services,
                     const std::vector<std::string>& folders);

}  // namespace ferrowen
