// What both converters to Polish MP have in common on the command line: how they are run and their result.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/command_line.hpp"
#include "cli/exit_status.hpp"
#include "cli/session.hpp"
#include "mp/conversion.hpp"

namespace ferrowen {

// Sets a choice when its option was given.
void choose(std::string& choice, const std::optional<std::string>& value);
// Start-up, conversion, and what was written. `convert` gets the full paths of the files. The result is the
// status of the program.
ExitStatus run_conversion(Session& session, const ConvertArguments& arguments,
                          const std::function<Conversion(const std::vector<std::string>& files)>& convert);

}  // namespace ferrowen
