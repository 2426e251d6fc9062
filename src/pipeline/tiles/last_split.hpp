// "Check Last Splitter Files": back to the input that was split last, with its tiles.
#pragma once

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// Makes the input of the last split the current one and lists its tiles. True when they can be built. Nothing
// changes when its files are gone (message 106). A tile selection that this ends is told (message 130); then
// message 8, or message 34 when the input has changed since the split.
bool check_last_split(Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
