// What follows a good build: the map goes where it is used.
#pragma once

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/build.hpp"
#include "pipeline/device_image.hpp"

namespace ferrowen {

// The stages behind a good build, in their order: device image, installer. Each runs only when it is wanted
// and the one before it was good; its result and time are entered in the report.
void deliver(Workspace& workspace, Prompts& prompts, Progress& progress, const ImageDates& before,
             BuildReport& report);

}  // namespace ferrowen
