#include "app/style_backup.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <system_error>

#include "app/start_up.hpp"
#include "base/date_text.hpp"
#include "base/file_set.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace fs = std::filesystem;
using platform::file_system_path;
using platform::path_text;

namespace {

constexpr int message_reminder = 111, message_no_style_files = 112, message_no_styles = 131,
              message_backup_folder = 132, message_cannot_back_up = 133, message_backed_up_style = 134,
              message_backed_up = 135, message_cancelled = 148, message_no_files = 206,
              message_cannot_create = 207;
constexpr std::time_t seven_days = 7L * 24 * 60 * 60;
constexpr int deepest_folder = 16;  // styles have one level of folders below them
constexpr std::array<std::string_view, 5> style_files = {"lines", "points", "polygons", "relations", "info"};

struct StyleFiles {
  std::vector<FileToCopy> files;
  std::vector<std::string> left_out;  // links, and what is neither file nor folder
  std::string problem;                // a folder that cannot be read
};

std::string style_folder(const Workspace& workspace, const std::string& style) {
  return platform::join(workspace.settings.styles_folder, style);
}

bool is_link(const std::string& path) {
  std::error_code error;
  return fs::is_symlink(file_system_path(path), error);
}

bool holds_style(const std::string& folder) {
  return std::any_of(style_files.begin(), style_files.end(),
                     [&](std::string_view name) { return file_size(platform::join(folder, name)) > 0; });
}

void collect(const std::string& folder, const std::string& prefix, int depth, StyleFiles& found) {
  std::error_code error;
  for (fs::directory_iterator entry(file_system_path(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = path_text(entry->path().filename());
    const std::string path = platform::join(folder, name);
    const fs::file_status status = entry->symlink_status(error);
    if (fs::is_regular_file(status))
      found.files.push_back({path, prefix + name});
    else if (fs::is_directory(status) && depth < deepest_folder)
      collect(path, prefix + name + "/", depth + 1, found);
    else
      found.left_out.push_back(path);
  }
  if (error && found.problem.empty()) found.problem = folder + ": " + error.message();
}

StyleFiles files_of(const Workspace& workspace, const std::string& style) {
  StyleFiles found;
  const std::string folder = style_folder(workspace, style);
  if (is_link(folder))
    found.left_out.push_back(folder);
  else
    collect(folder, style + "/", 0, found);
  return found;
}

// Times are compared as stamps, whose order is that of the times. "" when the style was never backed up.
std::string newest_backup(const Workspace& workspace, const std::string& style) {
  const std::string backups = workspace.path("backup");
  std::string newest;
  for (const std::string& stamp : list_folders(backups)) {
    if (is_time_stamp(stamp) && folder_exists(platform::join(platform::join(backups, stamp), style)))
      newest = std::max(newest, stamp);
  }
  return newest;
}

std::string newest_change(const StyleFiles& style) {
  double newest = 0;
  for (const FileToCopy& file : style.files)
    newest = std::max(newest, platform::change_time(file.from).value_or(0));
  return time_stamp(static_cast<std::time_t>(newest));
}

bool is_due(const Workspace& workspace, const std::string& style, std::time_t now) {
  const StyleFiles found = files_of(workspace, style);
  if (found.files.empty()) return false;
  const std::string backup = newest_backup(workspace, style);
  return backup.empty() || (backup < time_stamp(now - seven_days) && backup < newest_change(found));
}

struct Collected {
  std::vector<FileToCopy> files;
  std::vector<std::string> styles;
};

// What can be backed up of the styles asked for; what cannot is told, and `complete` is false then.
Collected collect_styles(const Workspace& workspace, Prompts& prompts, const std::vector<std::string>& styles,
                         bool& complete) {
  Collected all;
  for (const std::string& style : styles) {
    const StyleFiles found = files_of(workspace, style);
    if (!found.left_out.empty() || !found.problem.empty()) {
      complete = false;
      const std::string links = found.left_out.empty() ? ""
                                                       : "Not backed up because they are links:\r\n" +
                                                             join_texts(found.left_out, crlf);
      prompts.tell(found.problem.empty() ? links : found.problem, Icon::warning);
    }
    if (found.files.empty() || !found.problem.empty()) continue;
    all.files.insert(all.files.end(), found.files.begin(), found.files.end());
    all.styles.push_back(style);
  }
  return all;
}

// A name that leads out of the styles folder, or to nothing, is no style.
bool is_style_name(const Workspace& workspace, const std::string& style) {
  const std::vector<std::string> names = style_names(workspace.settings);
  return std::find(names.begin(), names.end(), style) != names.end() &&
         holds_style(style_folder(workspace, style));
}

// The styles to copy; empty after a message.
std::vector<std::string> chosen_styles(const Workspace& workspace, Prompts& prompts,
                                       const std::vector<std::string>& styles) {
  const auto refuse = [&](const std::string& text) {
    prompts.tell(text, Icon::warning);
    return std::vector<std::string>{};
  };
  if (style_names(workspace.settings).empty()) return refuse(workspace.message(message_no_styles));
  if (styles.empty()) {
    const std::vector<std::string> all = styles_to_back_up(workspace);
    return all.empty() ? refuse(workspace.message(message_no_style_files)) : all;
  }
  for (const std::string& style : styles) {
    if (!is_style_name(workspace, style))
      return refuse(workspace.message(message_no_style_files) + std::string(crlf) +
                    style_folder(workspace, style));
  }
  return styles;
}

}  // namespace

std::vector<std::string> styles_to_back_up(const Workspace& workspace) {
  std::vector<std::string> styles = style_names(workspace.settings);
  std::erase_if(styles,
                [&](const std::string& style) { return !holds_style(style_folder(workspace, style)); });
  return styles;
}

bool back_up_styles(const Workspace& workspace, Prompts& prompts, Progress& progress,
                    const std::vector<std::string>& styles, std::time_t now) {
  const std::vector<std::string> chosen = chosen_styles(workspace, prompts, styles);
  if (chosen.empty()) return false;
  bool complete = true;
  const Collected all = collect_styles(workspace, prompts, chosen, complete);
  if (all.files.empty()) {
    prompts.tell(workspace.message(message_no_files), Icon::warning);
    return false;
  }
  const std::string backups = workspace.path("backup");
  if (const Status made = make_folder(backups); !made.ok()) {
    prompts.tell(workspace.message(message_cannot_create) + std::string(crlf) + made.error, Icon::critical);
    return false;
  }
  const std::string folder = platform::join(backups, time_stamp(now));
  const auto show = [&](double done) {
    progress.fraction(done);
    progress.process_events();
    return !progress.stop_requested();
  };
  const Status copied = copy_file_set(all.files, folder, show, workspace.message(message_cancelled));
  if (!copied.ok()) {
    prompts.tell(workspace.message(message_cannot_back_up) + std::string(crlf) + copied.error,
                 Icon::critical);
    return false;
  }
  const std::string what = all.styles.size() == 1
                               ? workspace.message(message_backed_up_style) + all.styles.front()
                               : workspace.message(message_backed_up) + join_texts(all.styles, ", ");
  prompts.tell(what + std::string(crlf) + workspace.message(message_backup_folder) + folder);
  return complete;
}

std::string style_backup_reminder(const Workspace& workspace, std::time_t now) {
  const std::vector<std::string> styles = styles_to_back_up(workspace);
  const bool due = std::any_of(styles.begin(), styles.end(),
                               [&](const std::string& style) { return is_due(workspace, style, now); });
  return due ? workspace.message(message_reminder) : "";
}

}  // namespace ferrowen
