// What both converters to Polish MP have in common on the command line: their choices and their result.
#pragma once

#include <optional>
#include <string>

#include "cli/command_line.hpp"
#include "cli/exit_status.hpp"
#include "cli/session.hpp"
#include "mp/conversion.hpp"

namespace ferrowen {

// Sets a choice when its option was given.
void choose(std::string& choice, const std::optional<std::string>& value);
// The start-up, and full paths of the files.
ExitStatus open_converter(Session& session, ConvertArguments& arguments);
// Prints what was written, and the status of the program.
ExitStatus show_conversion(Session& session, const ConvertArguments& arguments, const Conversion& conversion);

}  // namespace ferrowen
