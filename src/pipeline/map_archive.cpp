#include "pipeline/map_archive.hpp"

#include <algorithm>
#include <array>

#include "base/date_text.hpp"
#include "base/file_set.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/argument_files.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/build_run.hpp"
#include "pipeline/device_image.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_already = 117, message_no_files = 119, message_no_registration = 120,
              message_exists = 121, message_copied = 122, message_cancelled = 148, message_continue = 171;
constexpr std::array<std::string_view, 4> map_endings = {".img", ".tdb", ".typ", ".mdx"};

bool is_map_file(std::string_view path) {
  return std::any_of(map_endings.begin(), map_endings.end(),
                     [&](std::string_view ending) { return ends_with_ignoring_case(path, ending); });
}

void keep_existing(std::vector<std::string>& paths) {
  std::erase_if(paths, [](const std::string& path) { return !file_has_content(path); });
}

// What a build of these settings leaves in the output folder.
std::vector<std::string> files_of_plan(const Workspace& workspace) {
  const Result<BuildPlan> plan = plan_build(workspace, gather_plan_facts(workspace));
  if (!plan.ok()) return {};
  const std::string folder = build_output_folder(workspace.settings);
  std::vector<std::string> files = expected_files(workspace.settings, plan.value, folder);
  const std::vector<std::string> further = further_files(workspace.settings, plan.value, folder);
  files.insert(files.end(), further.begin(), further.end());
  // The build has moved its image on.
  const auto never_asked = [](const std::string&) { return false; };
  if (workspace.settings.device_image)
    files.push_back(
        image_target(workspace.settings, image_folder(workspace.settings), true, never_asked).path);
  std::erase_if(files, [](const std::string& path) { return !is_map_file(path); });
  return files;
}

std::vector<std::string> argument_files(const Workspace& workspace) {
  std::vector<std::string> paths = {workspace.path(argument_name::unsplit)};
  if (builds_from_tiles(workspace)) {
    paths.clear();
    for (const std::string_view name :
         {std::string_view(template_name), argument_name::selected, argument_name::saved_selection,
          argument_name::renumbered, argument_name::contours, argument_name::dem})
      paths.push_back(platform::join(split_folder(workspace), name));
  }
  paths.push_back(platform::join(workspace.settings.argument_folder, argument_name::current));
  keep_existing(paths);
  return paths;
}

std::string with_underscores(std::string_view name) { return replace_all(trim(name), " ", "_"); }

// The .reg file that a registration writes into the map's folder; "" when there is none.
std::string registration_file(const Workspace& workspace) {
  const std::string name(trim(workspace.settings.map_name));
  const std::string output = build_output_folder(workspace.settings);
  for (const std::string& folder : {output, platform::join(output, with_underscores(name))}) {
    for (const std::string& file : {name, with_underscores(name)}) {
      std::string path = platform::join(folder, file + ".reg");
      if (file_has_content(path)) return path;
    }
  }
  return "";
}

// Only a map that the Garmin programs know under this name needs its .reg file: without it the archive could
// not be registered again. A map that was never registered is whole without one.
bool needs_registration_file(const Workspace& workspace) {
  return is_registered_product(workspace, workspace.settings.map_name);
}

void add(std::vector<FileToCopy>& files, const std::string& path, const std::string& prefix) {
  const std::string name = prefix + platform::name_of(path);
  const bool taken = std::any_of(files.begin(), files.end(), [&](const FileToCopy& file) {
    return equal_ignoring_case(file.name, name);
  });
  if (!taken) files.push_back({path, name});
}

bool is_archived(const FileToCopy& file, const std::string& folder) {
  const std::string copy = platform::join(folder, file.name);
  return file_exists(copy) && file_size(copy) == file_size(file.from) &&
         platform::change_time(copy).value_or(0) >= platform::change_time(file.from).value_or(0);
}

// False when the same map is there already, or an older one that is to stay.
bool may_write(const Workspace& workspace, Prompts& prompts, const std::vector<FileToCopy>& files,
               const std::string& folder) {
  if (!file_exists(folder)) return true;
  const bool all_there = std::all_of(files.begin(), files.end(),
                                     [&](const FileToCopy& file) { return is_archived(file, folder); });
  if (all_there) {
    prompts.tell(workspace.message(message_already) + std::string(crlf) + folder);
    return false;
  }
  return prompts.ask(workspace.message(message_exists) + std::string(crlf) + folder + std::string(crlf) +
                         workspace.message(message_continue),
                     Buttons::yes_no, Icon::warning) == Answer::yes;
}

std::string archive_folder(const Workspace& workspace) {
  const std::string& folder = workspace.settings.archive_folder;
  return trim(folder).empty() ? workspace.path("archives") : platform::absolute(folder);
}

// Everything of the archive, or nothing after a message.
std::vector<FileToCopy> files_to_archive(const Workspace& workspace, Prompts& prompts) {
  std::vector<FileToCopy> files;
  for (const std::string& path : map_files(workspace))
    add(files, path, "");
  if (files.empty()) {
    prompts.tell(workspace.message(message_no_files), Icon::warning);
    return {};
  }
  const std::string registration = registration_file(workspace);
  if (registration.empty() && needs_registration_file(workspace)) {
    prompts.tell(workspace.message(message_no_registration), Icon::warning);
    return {};
  }
  if (!registration.empty()) add(files, registration, "");
  for (const std::string& path : argument_files(workspace))
    add(files, path, "args/");
  return files;
}

}  // namespace

std::string archive_name(const Settings& settings, std::time_t now) {
  const std::string& format = settings.archive_date_format;
  const std::string date =
      date_text(platform::local_time(now), trim(format).empty() ? "mm/yyyy" : trim(format));
  return as_file_name(std::string(trim(settings.map_name)) + " " + date);
}

std::vector<std::string> map_files(const Workspace& workspace) {
  std::vector<std::string> files = workspace.built_files;
  keep_existing(files);
  if (files.empty()) files = files_of_plan(workspace);
  keep_existing(files);
  return files;
}

std::string archive_map(const Workspace& workspace, Prompts& prompts, Progress& progress, std::time_t now) {
  const std::vector<FileToCopy> files = files_to_archive(workspace, prompts);
  if (files.empty()) return "";
  const std::string parent = archive_folder(workspace);
  std::string folder = platform::join(parent, archive_name(workspace.settings, now));
  if (!may_write(workspace, prompts, files, folder)) return "";
  const auto show = [&](double done) {
    progress.fraction(done);
    progress.process_events();
    return !progress.stop_requested();
  };
  Status done = make_folder(parent);
  if (done.ok()) done = copy_file_set(files, folder, show, workspace.message(message_cancelled));
  if (!done.ok()) {
    prompts.tell(done.error, Icon::critical);
    return "";
  }
  prompts.tell(workspace.message(message_copied) + folder);
  return folder;
}

}  // namespace ferrowen
