#include "pipeline/garmin_programs.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_launch = 23, message_closing = 87, message_locate = 105, message_close = 204;
// Parts of the titles of windows that are closed, in lower case; spelled as they always were.
const std::vector<std::string> garmin_titles = {"basecamp", "mapsourse", "mapinstall", "garmin"};
constexpr std::array<std::string_view, 4> garmin_programs = {"Basecamp", "Mapsource", "QLandkarteGT",
                                                             "HomePort"};
constexpr std::array<std::string_view, 4> viewers = {"qmapshack", "gpxsee", "viking", "marble"};
constexpr auto pause_between_looks = std::chrono::milliseconds(100);

bool any_is_held(const std::vector<std::string>& files, const HeldFiles& held) {
  return std::any_of(files.begin(), files.end(),
                     [&](const std::string& file) { return file_exists(file) && held.is_held(file); });
}

void close_programs(const Workspace& workspace, Progress& progress, const std::vector<std::string>& files,
                    const HeldFiles& held) {
  progress.status(workspace.message(message_closing));
  held.close_windows(garmin_titles);
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(held.milliseconds);
  while (any_is_held(files, held) && std::chrono::steady_clock::now() < end) {
    progress.process_events();
    if (progress.stop_requested()) return;
    std::this_thread::sleep_for(pause_between_looks);
  }
}

}  // namespace

bool release_files(Workspace& workspace, Prompts& prompts, Progress& progress,
                   const std::vector<std::string>& files, const HeldFiles& held) {
  if (!any_is_held(files, held)) return true;
  prompts.tell("Type in use by another program, ie Mapsource/Basecamp/Mapinstall.", Icon::warning);
  prompts.tell("Will try & close this down. This may take 10 secs.", Icon::warning);
  if (prompts.ask(workspace.message(message_close)) == Answer::yes)
    close_programs(workspace, progress, files, held);
  while (any_is_held(files, held)) {
    if (prompts.ask(". Please close Basecamp/Mapinstall/Mapsource.\r\nTry again?") != Answer::yes)
      return false;
  }
  return true;
}

std::vector<std::string> launchable_programs() {
  std::vector<std::string> names(garmin_programs.begin(), garmin_programs.end());
  for (const std::string_view viewer : viewers) {
    if (!platform::find_program(std::string(viewer)).empty()) names.emplace_back(viewer);
  }
  return names;
}

std::string chosen_program(const Settings& settings) {
  const std::string name(trim(settings.launch_program));
  return name.empty() ? std::string(garmin_programs.front()) : name;
}

std::string launch_path(const Settings& settings, const std::string& name) {
  const auto existing = [](const std::string& path) { return file_exists(path) ? path : std::string(); };
  if (equal_ignoring_case(name, "Basecamp")) return existing(settings.basecamp);
  if (equal_ignoring_case(name, "Mapsource")) return existing(settings.mapsource);
  if (equal_ignoring_case(name, "HomePort")) return existing(settings.home_port);
  return platform::find_program(lower_ascii(name));
}

std::string launch_label(const Settings& settings) { return "Launch " + chosen_program(settings); }

bool launch(const Workspace& workspace, Prompts& prompts, Registry& registry, const std::string& name) {
  const std::string path = launch_path(workspace.settings, name);
  if (path.empty()) {
    prompts.tell(workspace.message(message_locate) + name, Icon::warning);
    return false;
  }
  std::vector<std::string> words = {path};
  std::vector<std::pair<std::string, std::string>> environment;
  if (platform::separator == '/' && ends_with_ignoring_case(path, ".exe")) {
    const std::string wine = platform::find_program("wine");
    if (wine.empty()) {
      prompts.tell("wine is not installed", Icon::warning);
      return false;
    }
    words.insert(words.begin(), wine);
    if (!registry.wine_prefix().empty()) environment = {{"WINEPREFIX", registry.wine_prefix()}};
  }
  const std::string error = platform::start_detached(words, platform::folder_of(path), environment);
  if (error.empty()) return true;
  prompts.tell(path + ": " + error, Icon::critical);
  return false;
}

bool go_mapsource(const Workspace& workspace, Prompts& prompts, Registry& registry) {
  return launch(workspace, prompts, registry, chosen_program(workspace.settings));
}

bool mapsource(const Workspace& workspace, Prompts& prompts, Registry& registry) {
  return prompts.ask(workspace.message(message_launch)) == Answer::yes &&
         go_mapsource(workspace, prompts, registry);
}

}  // namespace ferrowen
