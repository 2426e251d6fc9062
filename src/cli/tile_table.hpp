// The tiles of the last split as `ferrowen tiles` and `ferrowen split` show them.
#pragma once

#include "cli/session.hpp"

namespace ferrowen {

// Shows the tile list of the workspace, its state and the date of the split.
void show_tiles(Session& session);

}  // namespace ferrowen
