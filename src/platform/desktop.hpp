// Handing a file or web address to the desktop.
#pragma once

#include <string>

namespace ferrowen::platform {

// Opens with the associated program (ShellExecuteA, or xdg-open when a display is there).
// "" on success, else the reason.
std::string open_with_desktop(const std::string& path_or_address);

// Lets the program that runs already put its window in front of the others; where the system asks for it.
void let_others_come_forward();

}  // namespace ferrowen::platform
