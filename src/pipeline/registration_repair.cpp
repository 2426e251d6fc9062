#include "pipeline/registration_repair.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/registry_text.hpp"
#include "base/text.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/registration_text.hpp"
#include "pipeline/registry_turn.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_installed = 194;
constexpr std::string_view last_used_name = "0.reg";

bool is_garmin_key(const std::string& key) {
  return contains_ignoring_case(key + "\\", R"(\Software\Garmin\)") ||
         contains_ignoring_case(key + "\\", R"(\Software\Wow6432Node\Garmin\)");
}

// Why this text is not taken in; "" when it is.
std::string text_problem(const RegistryText& text) {
  if (!text.problems.empty()) return text.problems.front();
  if (text.changes.empty()) return "the text changes nothing";
  for (const RegistryChange& change : text.changes) {
    if (change.remove || !is_garmin_key(change.key)) return change.key + ": no key of a Garmin map";
  }
  return "";
}

bool is_taken_over(Registry& registry, const RegistryChange& change) {
  const Registry::Key key = registry.key(change.key);
  const auto is_there = [&](const platform::RegistryValue& wanted) {
    const platform::RegistryValue* value = find_value(key, wanted.name);
    return value != nullptr && value->type == wanted.type && value->data == wanted.data;
  };
  return key.exists && std::all_of(change.values.begin(), change.values.end(), is_there);
}

}  // namespace

std::string registration_in(const std::string& folder) {
  const std::vector<std::string> names = list_files(folder, {""});
  const auto found = std::find_if(names.begin(), names.end(), [](const std::string& name) {
    return contains_ignoring_case(name, ".reg") && !equal_ignoring_case(name, last_used_name);
  });
  return found == names.end() ? "" : platform::join(folder, *found);
}

Status recovery_problem(Registry& registry, const std::string& file) {
  const Result<std::string> bytes = read_file(file);
  if (!bytes.ok()) return {bytes.error};
  const RegistryText text = parse_registry_file(bytes.value);
  if (const std::string problem = text_problem(text); !problem.empty()) return {file + ": " + problem};
  const std::string folder = platform::folder_of(platform::absolute(file));
  for (const RegistryChange& change : text.changes) {
    const Registry::Key wanted{true, {}, change.values, {}};
    const std::string location = registry.system_path(text_value(wanted, "LOC"));
    if (find_value(wanted, "LOC") != nullptr && !same_file(location, folder))
      return {file + ": this text registers a map in another folder, " + location};
    const Registry::Key known = registry.key(change.key);
    const std::string now = registry.system_path(text_value(known, "LOC"));
    if (find_value(known, "LOC") != nullptr && !same_file(now, folder))
      return {change.key + ": a map of this name is registered already, in " + now};
  }
  return {};
}

Status import_registration(Registry& registry, Progress& progress, const std::string& file) {
  const Result<std::string> bytes = read_file(file);
  if (!bytes.ok()) return {bytes.error};
  const RegistryText text = parse_registry_file(bytes.value);
  if (const std::string problem = text_problem(text); !problem.empty()) return {file + ": " + problem};
  Status imported = registry.import_file(file, [&] { progress.process_events(); });
  if (!imported.ok()) return imported;
  registry.refresh();
  for (const RegistryChange& change : text.changes) {
    if (!is_taken_over(registry, change)) return {change.key + " cannot be read back"};
  }
  return {};
}

StageResult fix_registry_problem(Workspace& workspace, Prompts& prompts, Progress& progress,
                                 Registry& registry) {
  std::string file;
  if (!trim(workspace.settings.map_name).empty())
    file = registration_in(registered_map_folder(workspace.settings));
  if (file.empty()) {
    const std::optional<std::string> chosen = prompts.choose_file(
        {"", {{"Registration files (*.reg)", "*.reg"}}, build_output_folder(workspace.settings), false});
    if (!chosen) return StageResult::stopped;
    file = *chosen;
  }
  RegistryTurn turn;
  Status imported = turn.take(progress);
  if (imported.ok()) registry.refresh();
  if (imported.ok()) imported = recovery_problem(registry, file);
  if (imported.ok()) imported = import_registration(registry, progress, file);
  querymapsource(workspace, registry, prompts, progress);
  if (!imported.ok()) {
    tell_not_registered(workspace, prompts, imported.error);
    return StageResult::failed;
  }
  prompts.tell("'" + platform::name_of(file) + "' " + workspace.message(message_installed));
  return StageResult::done;
}

}  // namespace ferrowen
