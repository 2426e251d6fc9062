// The name of a file that a person chose to write to.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/message_table.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

// Asks for a name to write to and appends `ending` when it lacks it. The dialog asks before an existing file
// is overwritten; when the ending was appended, this asks (message 57). Nothing when the person gave up.
std::optional<std::string> name_to_write(const MessageTable& messages, Prompts& prompts,
                                         const FileQuestion& question, std::string_view ending);

}  // namespace ferrowen
