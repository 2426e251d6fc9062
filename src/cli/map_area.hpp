// The tiles and heights that a command about elevation works for.
#pragma once

#include "cli/command_line.hpp"
#include "cli/run_settings.hpp"
#include "cli/session.hpp"

namespace ferrowen {

// Loads the tiles of the last split, selects those of --tiles and takes the folder of --hgt for this run.
// Anything but `done` has been told.
ExitStatus open_area(Session& session, RunSettings& run, const AreaArguments& area);

}  // namespace ferrowen
