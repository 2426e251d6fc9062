// What a build made, as a person and as a script sees it.
#pragma once

#include <string>

#include "cli/session.hpp"
#include "pipeline/build.hpp"

namespace ferrowen {

// Seconds per stage, then the files with their sizes; many tile images are summed up in one line.
std::string report_text(const BuildReport& report);
void show_report(Session& session, const BuildReport& report);

}  // namespace ferrowen
