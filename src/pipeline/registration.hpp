// A built map becomes known to the Garmin programs: copied into a folder of its own, described by a registry
// text, imported, and read back.
#pragma once

#include <string>
#include <vector>

#include "app/registry.hpp"
#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "pipeline/build.hpp"
#include "pipeline/build_checks.hpp"
#include "pipeline/cleanup.hpp"
#include "pipeline/garmin_programs.hpp"
#include "pipeline/map_folder.hpp"
#include "pipeline/registration_text.hpp"

namespace ferrowen {

struct Registration {
  std::string folder;       // the map folder on this system
  std::string file;         // the registration text in it
  RegistrationFacts facts;  // as they were written
};

// Copies the built files (hard links where possible), the TYP, <product>.reg and the list of all of these
// into the map folder, together or not at all.
Result<Registration> create_mapsourcefiles(const Workspace& workspace, Progress& progress, Registry& registry,
                                           const std::vector<std::string>& built_files);
// Writes 0.reg, imports both texts and reads the family back: the names of the values that are not there as
// they were written are the error.
Status regi(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
            const Registration& registration, const std::string& detail = "");

// The advice for a map that is not registered, with the reason.
void tell_not_registered(const Workspace& workspace, Prompts& prompts, const std::string& reason);

// The whole stage behind a good build. Refused (and told) for a product or an FID that is registered.
StageResult register_built_map(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                               BuildReport& report, const HeldFiles& held = {});

// The map to remove: by its key, or by its product and, where several have the same one, by its FID.
struct MapChoice {
  std::string product, fid = {}, key = {};
};
// Deletes the keys of a map and the files in its folder, after a question. Told when no map or several are
// meant.
StageResult remove_registered_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                                  Registry& registry, const MapChoice& choice, const HeldFiles& held = {});

// What a build needs of this stage, for the command line and the window alike. The references must outlive
// it.
BuildServices build_services(Prompts& prompts, Progress& progress, const HeldFiles& held = {});
// The same for the cleanup of unused maps.
CleanupServices cleanup_services(Workspace& workspace, Prompts& prompts, Progress& progress);

}  // namespace ferrowen
