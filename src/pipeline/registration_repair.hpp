// A map that is built and filed, and yet not registered: its registration text is taken in once more.
#pragma once

#include <string>

#include "app/registry.hpp"
#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

// The registration text in a map's folder; "" for none. "0.reg" only names the map used last.
std::string registration_in(const std::string& folder);

// Takes a registration text in and reads every one of its values back. Refused for a text that is damaged or
// holds other keys than those of Garmin maps; the error then says so, or names what could not be read back.
Status import_registration(Registry& registry, Progress& progress, const std::string& file);

// Why this text does not register the map in whose folder it lies, or would take a registered one away: its
// families lie in other folders, or are registered with another one.
Status recovery_problem(Registry& registry, const std::string& file);

// "Fix Registry Problem": takes in the text of the map that the settings name, or of one that the person
// chooses.
StageResult fix_registry_problem(Workspace& workspace, Prompts& prompts, Progress& progress,
                                 Registry& registry);

}  // namespace ferrowen
