// mkgmap's own opinion of a TYP text: compiled without a map, its message with line and section.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

struct TypCheck {
  bool accepted = false;
  std::size_t line = 0;     // of the text; 0: the message names none
  std::string section;      // "[_line]" and its type, when the line stands in one
  std::string message;      // of mkgmap, or why it could not be asked
  std::string not_checked;  // set when the text was not judged at all: there is no java or no mkgmap.jar
  std::vector<std::string> warnings;
};

// Compiles the text that lies at `path` with TypCompiler of the mkgmap.jar of the settings, to a scratch file
// that is deleted again.
TypCheck check_typ_text(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& path);
// A new name with this ending in the system's folder for scratch files, where nothing of the user can be.
Result<std::string> scratch_path(const std::string& ending);
// What TypCompiler said about this text.
TypCheck read_typ_compiler_output(std::string_view output, std::string_view text, bool compiled);
// "Line 120, [_polygon] Type=0x04: No XPM tag in section".
std::string check_text(const TypCheck& check);

}  // namespace ferrowen
