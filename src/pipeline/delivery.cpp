#include "pipeline/delivery.hpp"

#include <algorithm>
#include <chrono>
#include <functional>

#include "base/files.hpp"
#include "pipeline/installer.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void run_stage(BuildReport& report, const std::string& name, const std::function<StageResult()>& stage) {
  if (report.result != StageResult::done) return;
  const double start = now();
  report.result = stage();
  report.stages.push_back({name, now() - start});
}

// An own script makes an image or none, whatever the settings say.
bool has_image(const Settings& settings, const BuildReport& report) {
  const auto is_image = [](const MadeFile& file) {
    return platform::name_of(file.path) == device_image_name;
  };
  const bool made = std::any_of(report.files.begin(), report.files.end(), is_image);
  return made || (settings.device_image && !settings.own_script);
}

// A moved image is a file of the build in its new place; a copy beside it is not.
void follow_image(Workspace& workspace, BuildReport& report) {
  for (MadeFile& file : report.files) {
    if (platform::name_of(file.path) == device_image_name && !file_exists(file.path))
      file.path = report.image;
  }
  workspace.built_files.clear();
  for (const MadeFile& file : report.files)
    workspace.built_files.push_back(file.path);
}

StageResult bring_image(Workspace& workspace, Prompts& prompts, Progress& progress, const ImageDates& before,
                        BuildReport& report) {
  const ImageCopy copy = gmapsupp(workspace, prompts, progress, before);
  report.image = copy.path;
  if (copy.result == StageResult::done) follow_image(workspace, report);
  return copy.result;
}

StageResult make_installer(Workspace& workspace, Prompts& prompts, Progress& progress, BuildReport& report) {
  const InstallerResult made = creatensis(workspace, prompts, progress);
  if (made.result != StageResult::done) return made.result;
  report.files.push_back({made.path, file_size(made.path)});
  workspace.built_files.push_back(made.path);
  return made.result;
}

}  // namespace

void deliver(Workspace& workspace, Prompts& prompts, Progress& progress, const ImageDates& before,
             BuildReport& report) {
  if (has_image(workspace.settings, report))
    run_stage(report, "device image",
              [&] { return bring_image(workspace, prompts, progress, before, report); });
  if (workspace.settings.installer)
    run_stage(report, "installer", [&] { return make_installer(workspace, prompts, progress, report); });
}

}  // namespace ferrowen
