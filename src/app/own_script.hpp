// The user's own script, myscript.txt, for editing.
#pragma once

#include <string>
#include <string_view>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// Path of myscript.txt. When it is missing it is made from the last build's script; "" when there is neither
// (message 82) or it cannot be written, which has then been told.
std::string own_script_for_editing(const Workspace& workspace, Prompts& prompts);
// A script as run, without what the run entry adds to every script anyway.
std::string script_to_edit(std::string_view last_run);

}  // namespace ferrowen
