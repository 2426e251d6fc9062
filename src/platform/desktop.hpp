// Handing a file or web address to the desktop.
#pragma once

#include <string>

namespace ferrowen::platform {

// Opens with the associated program (ShellExecuteA, or xdg-open when a display is there).
// "" on success, else the reason.
std::string open_with_desktop(const std::string& path_or_address);

}  // namespace ferrowen::platform
