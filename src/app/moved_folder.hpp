// A program folder that was moved or renamed takes along the paths of its settings: whatever lay in it at the
// old place is looked for at the new one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/settings_record.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

// How a system compares paths; the other system's rules can be tried out on this one.
struct PathRules {
  char separator = platform::separator;
  bool ignore_case = platform::names_ignore_case;
};

// `path` with its part `from` replaced by `to`; nothing when it does not lie in `from`, whole names compared.
std::optional<std::string> moved_path(std::string_view path, std::string_view from, std::string_view to,
                                      const PathRules& rules = {});
// The same for a line of a list of paths or options: the path alone, or behind "=", after commas, in quotes.
std::string moved_line(std::string_view line, std::string_view from, std::string_view to,
                       const PathRules& rules = {});

// Every path of the settings that lies in the program folder where they were saved now lies in `home`.
// Nothing is done while both are the same folder, or when the settings do not tell where they were saved.
void follow_program_folder(Settings& settings, std::string_view home);

}  // namespace ferrowen
