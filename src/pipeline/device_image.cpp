#include "pipeline/device_image.hpp"

#include <algorithm>

#include "base/date_text.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "base/verified_copy.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_not_created = 15, message_no_folder = 51, message_overwrite = 57,
              message_found_new = 58, message_cancelled = 148;
constexpr std::size_t shortest_folder = 4;
constexpr std::size_t letters = 26;
constexpr std::uint64_t megabyte = 1024ULL * 1024;
constexpr const char* image_ending = ".img";
constexpr const char* device_folder = "Garmin";

std::string megabytes(std::uint64_t bytes) { return std::to_string(bytes / megabyte) + " MB"; }

std::string image_in_output(const Settings& settings) {
  return platform::join(platform::absolute(build_output_folder(settings)), device_image_name);
}

std::string image_in_folder(const Settings& settings) {
  return platform::join(platform::absolute(settings.gmapsupp_folder), device_image_name);
}

bool is_new(const std::string& path, const std::optional<double>& before) {
  return file_has_content(path) && platform::change_time(path) != before;
}

std::string drives_text(const std::vector<platform::Drive>& drives) {
  std::string text;
  for (const platform::Drive& drive : drives)
    text += std::string(crlf) + drive.name + ": " + image_folder_on(drive);
  return text;
}

// A folder of the settings that is not there is most often a device that is not plugged in: making it would
// put the image on another disk. The drives that are there are named, and the person may choose one.
std::string existing_folder(const Workspace& workspace, Prompts& prompts) {
  const bool is_chosen = folder_exists(workspace.chosen_image_folder);
  const std::string folder = is_chosen ? workspace.chosen_image_folder : image_folder(workspace.settings);
  const std::string missing = workspace.message(message_no_folder) + std::string(crlf) + folder;
  if (folder.size() < shortest_folder) {
    prompts.tell(missing, Icon::warning);
    return "";
  }
  if (folder == platform::absolute(workspace.settings.gmapsupp_folder)) {
    const Status made = make_folder(folder);
    if (!made.ok()) prompts.tell(made.error, Icon::critical);
    return made.ok() ? folder : "";
  }
  if (folder_exists(folder)) return folder;
  const std::vector<platform::Drive> drives = platform::removable_drives();
  prompts.tell(missing + drives_text(drives), Icon::warning);
  if (drives.empty()) return "";
  const std::optional<std::string> chosen =
      prompts.choose_folder(device_image_name, image_folder_on(drives.front()));
  return chosen && chosen->size() >= shortest_folder && folder_exists(*chosen) ? *chosen : "";
}

class ImageStage {
 public:
  ImageStage(const Workspace& workspace, Prompts& prompts, Progress& progress)
      : m_workspace(workspace), m_settings(workspace.settings), m_prompts(prompts), m_progress(progress) {}

  ImageCopy run(const ImageDates& before) {
    const std::string found = start_findgmapsup(m_settings, before);
    if (found.empty()) return refuse(m_workspace.message(message_not_created), StageResult::failed);
    // One that was built straight into the gmapsupp folder is where it belongs.
    if (found != image_in_output(m_settings)) return arrived(found);
    const std::string folder = existing_folder(m_workspace, m_prompts);
    if (folder.empty()) return {StageResult::stopped, ""};
    return bring(found, folder);
  }

 private:
  ImageCopy bring(const std::string& image, const std::string& folder) {
    const ImageTarget target = image_target(m_settings, folder, m_workspace.script_running, file_exists);
    if (same_file(image, target.path)) return arrived(target.path);
    if (target.ask && m_prompts.ask(m_workspace.message(message_overwrite)) != Answer::yes)
      return {StageResult::stopped, ""};
    // On one volume the image itself takes the new place, whole in one step.
    const bool moved = !m_settings.keep_image_in_output && !folder_exists(target.path) &&
                       rename_file(image, target.path).ok();
    if (moved) return arrived(target.path);
    const ImageCopy copied = copy(image, target.path);
    if (copied.result != StageResult::done) return copied;
    if (!m_settings.keep_image_in_output) {
      const Status removed = remove_file(image);
      if (!removed.ok()) m_prompts.tell(removed.error, Icon::warning);
    }
    return arrived(target.path);
  }

  ImageCopy copy(const std::string& image, const std::string& target) {
    const std::string folder = platform::folder_of(target);
    const CopyFacts facts{file_size(image), file_size(target), platform::free_space(folder),
                          platform::largest_file(folder)};
    if (const std::string obstacle = copy_obstacle(facts, folder); !obstacle.empty())
      return refuse(obstacle, StageResult::failed);
    // Both do not fit: the old one, whose end was agreed to, goes first. The new one still is where it was.
    const bool both_fit = !facts.free || *facts.free > facts.size;
    if (Status cleared = both_fit ? Status{} : remove_file(target); !cleared.ok())
      return refuse(cleared.error, StageResult::failed);
    bool stopped = false;
    const auto show = [&](double done) {
      m_progress.fraction(done);
      m_progress.process_events();
      stopped = m_progress.stop_requested();
      return !stopped;
    };
    const Status copied = copy_verified(image, target, show, m_workspace.message(message_cancelled));
    if (copied.ok()) return {StageResult::done, target};
    return refuse(copied.error, stopped ? StageResult::cancelled : StageResult::failed);
  }

  ImageCopy arrived(const std::string& path) {
    m_progress.process_events();
    m_progress.process_events();
    m_prompts.tell(m_workspace.message(message_found_new) + "\r\n\r\nCopied as '" + path + "'");
    return {StageResult::done, path};
  }

  ImageCopy refuse(const std::string& text, StageResult result) {
    m_prompts.tell(text, result == StageResult::failed ? Icon::critical : Icon::warning);
    return {result, ""};
  }

  const Workspace& m_workspace;
  const Settings& m_settings;
  Prompts& m_prompts;
  Progress& m_progress;
};

}  // namespace

ImageDates image_dates(const Settings& settings) {
  return {platform::change_time(image_in_output(settings)), platform::change_time(image_in_folder(settings))};
}

std::string start_findgmapsup(const Settings& settings, const ImageDates& before) {
  const std::string output = image_in_output(settings);
  if (is_new(output, before.output)) return output;
  const std::string folder = image_in_folder(settings);
  return is_new(folder, before.folder) ? folder : "";
}

std::string image_base_name(const Settings& settings) {
  std::string name = settings.image_name;
  if (settings.image_named_after_map) name = replace_all(settings.map_name, " ", "");
  name = replace_all(name, "\"", "");
  return trim(name).empty() ? "gmapsupp" : as_file_name(name);
}

std::string image_suffix(std::size_t number) {
  if (number == 0) return "";
  return std::string((number - 1) / letters, 'A') + static_cast<char>('A' + (number - 1) % letters);
}

ImageTarget image_target(const Settings& settings, const std::string& folder, bool script_running,
                         const std::function<bool(const std::string&)>& exists) {
  if (settings.map_id_locked) {
    const std::string path =
        platform::join(folder, as_file_name("gmap" + std::string(trim(settings.map_id))) + image_ending);
    return {path, !script_running && exists(path)};
  }
  const std::string name = image_base_name(settings);
  const auto path_for = [&](std::size_t number) {
    return platform::join(folder, name + image_suffix(number) + image_ending);
  };
  const std::string first = path_for(0);
  if (settings.confirm_image_overwrite) return {first, !script_running && exists(first)};
  if (script_running) return {first, false};
  std::size_t number = 0;
  while (exists(path_for(number)))
    ++number;
  return {path_for(number), false};
}

std::string image_folder(const Settings& settings) {
  const std::string chosen(trim(settings.image_folder));
  return platform::absolute(chosen.empty() ? settings.gmapsupp_folder : chosen);
}

std::string image_folder_on(const platform::Drive& drive) {
  const std::vector<std::string> folders = list_folders(drive.path);
  const auto found = std::find_if(folders.begin(), folders.end(), [](const std::string& name) {
    return equal_ignoring_case(name, device_folder);
  });
  return found == folders.end() ? drive.path : platform::join(drive.path, *found);
}

std::string copy_obstacle(const CopyFacts& facts, const std::string& folder) {
  if (facts.largest_file && facts.size > *facts.largest_file)
    return folder + ": the image has " + megabytes(facts.size) +
           ", and a drive with the file system FAT32 holds no file of 4 GB or more. Build fewer tiles, or "
           "use "
           "a drive with another file system that your device can read.";
  if (!facts.free || *facts.free > facts.size || *facts.free + facts.old_size > facts.size) return "";
  return folder + ": not enough space, " + megabytes(facts.size + megabyte) + " are needed and " +
         megabytes(*facts.free + facts.old_size) + " are free";
}

bool check_image_folder(Workspace& workspace, Prompts& prompts) {
  workspace.chosen_image_folder.clear();
  const std::string folder = existing_folder(workspace, prompts);
  if (folder != image_folder(workspace.settings)) workspace.chosen_image_folder = folder;
  return !folder.empty();
}

ImageCopy gmapsupp(const Workspace& workspace, Prompts& prompts, Progress& progress,
                   const ImageDates& before) {
  return ImageStage(workspace, prompts, progress).run(before);
}

}  // namespace ferrowen
