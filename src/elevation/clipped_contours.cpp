#include "elevation/clipped_contours.hpp"

#include <optional>

#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_clip.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/contour_script.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

bool is_outdated(const std::string& clip, const std::string& cell,
                 const std::vector<std::string>& contour_folders) {
  const CellFiles contours = find_contour_files({cell}, contour_folders);
  if (contours.found.empty()) return false;
  const std::optional<double> made = platform::change_time(clip);
  const std::optional<double> source = platform::change_time(contours.found.front());
  return made && source && *made < *source;
}

void add_clip(const std::string& path, const std::string& cell,
              const std::vector<std::string>& contour_folders, ClippedContours& clips) {
  const std::string name = platform::name_of(path);
  switch (pbf_state(path)) {
    case PbfState::damaged:
      clips.damaged.push_back(name);
      return;
    case PbfState::without_data:
      clips.without_data.push_back(name);
      break;
    case PbfState::with_data:
      clips.files.push_back(path);
      break;
  }
  if (is_outdated(path, cell, contour_folders)) clips.outdated.push_back(name);
}

}  // namespace

ClippedContours find_clipped_contours(const std::vector<std::string>& cells, const std::string& clip_folder,
                                      const std::vector<std::string>& contour_folders) {
  ClippedContours clips;
  for (const std::string& cell : cells) {
    const std::string name = clipped_file_name(contour_file_name(cell));
    const std::string path = clip_folder.empty() ? "" : platform::join(clip_folder, name);
    if (!path.empty() && file_exists(path) && !folder_exists(path))
      add_clip(path, cell, contour_folders, clips);
    else
      clips.missing.push_back(name);
  }
  return clips;
}

std::vector<std::string> lines_of_missing(const ClippedContours& clips) {
  std::vector<std::string> lines = clips.missing;
  for (const std::string& name : clips.damaged)
    lines.push_back(name + " is damaged. Please clip again.");
  return lines;
}

std::string notes_on(const ClippedContours& clips) {
  std::string text;
  const auto add = [&](const std::string& sentence, const std::vector<std::string>& names) {
    if (names.empty()) return;
    text.append(text.empty() ? "" : crlf).append(sentence).append(crlf).append(join_texts(names, crlf));
  };
  add("Clipped contours without a line:", clips.without_data);
  add("Clipped contours older than their contours. Please clip again:", clips.outdated);
  return text;
}

}  // namespace ferrowen
