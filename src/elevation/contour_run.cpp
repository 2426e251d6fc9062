#include "elevation/contour_run.hpp"

#include <algorithm>
#include <fstream>
#include <thread>

#include "app/script_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_script.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/tool_script.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_select = 20;
constexpr int message_label = 241;
constexpr std::string_view end_of_osm = "</osm>";
constexpr std::streamoff end_of_osm_room = 64;

void warn(Prompts& prompts, const std::string& text) { prompts.tell(text, Icon::warning); }

// The listed file, or its zipped forms; "" when none is there.
std::string existing_height_file(const std::string& listed) {
  const std::string cell = cell_of_file(platform::name_of(listed));
  if (cell.empty()) return "";
  if (file_has_content(listed)) return listed;
  const CellFiles files = find_cell_files({cell}, platform::folder_of(listed), CellFile::hgt);
  return files.found.empty() ? "" : files.found.front();
}

std::string contour_path(const std::string& height_file) {
  return platform::join(platform::folder_of(height_file), contour_file_name(platform::name_of(height_file)));
}

class Maker {
 public:
  Maker(Workspace& workspace, Prompts& prompts, Progress& progress, const ContourRequest& request)
      : m_workspace(workspace), m_prompts(prompts), m_progress(progress), m_request(request) {}

  ContourOutcome make() {
    if (check_tool() && check_numbers() && collect() && find_files() && check_files()) run();
    return std::move(m_report);
  }

 private:
  bool check_tool() {
    const std::string& tool = m_workspace.settings.contour_tool;
    if (!tool.empty() && file_exists(tool) && !folder_exists(tool)) return true;
    warn(m_prompts, "Please locate below\r\n\r\n HGT2OSM.exe");
    return false;
  }

  bool check_numbers() {
    m_workspace.settings.contour_tolerance = m_request.tolerance;
    if (m_request.interval < least_interval || m_request.interval > highest_interval) {
      warn(m_prompts, "Intervals  5 - 1000");
      return false;
    }
    store_contour_choices(m_workspace.settings, m_request.interval, m_request.tolerance);
    return true;
  }

  bool collect() {
    for (const std::string& file : m_request.height_files) {
      std::string path = platform::absolute(replace_all(file, "?", ""));
      if (cell_of_file(platform::name_of(path)).empty()) {
        warn(m_prompts, platform::name_of(path) + m_workspace.message(message_label));
        return false;
      }
      if (std::find(m_listed.begin(), m_listed.end(), path) == m_listed.end())
        m_listed.push_back(std::move(path));
    }
    if (m_listed.empty()) warn(m_prompts, m_workspace.message(message_select));
    return !m_listed.empty();
  }

  // Every selected file counts; missing ones are subtracted.
  bool find_files() {
    offer_right_names();
    std::vector<std::string> missing;
    for (const std::string& listed : m_listed) {
      std::string file = existing_height_file(listed);
      if (file.empty())
        missing.push_back(platform::name_of(listed));
      else
        m_found.push_back(std::move(file));
    }
    m_report.missing = missing;
    if (!missing.empty()) warn(m_prompts, join_texts(missing, crlf) + "\r\nPlease download or unzip:");
    return !m_found.empty();
  }

  // Heights that are there under a name in lower case, which the map compiler would not find either.
  void offer_right_names() {
    std::vector<HeightCell> cells;
    for (const std::string& listed : m_listed) {
      if (!existing_height_file(listed).empty()) continue;
      const std::string cell = cell_of_file(platform::name_of(listed));
      for (HeightCell& found : find_height_cells({cell}, {platform::folder_of(listed)}))
        cells.push_back(std::move(found));
    }
    if (const Status renamed = offer_renaming(m_prompts, cells); !renamed.ok())
      warn(m_prompts, renamed.error);
  }

  // A damaged cell is told and left out; it does not hinder the others.
  bool drop_damaged() {
    std::string damaged;
    std::vector<std::string> whole;
    for (const std::string& file : m_found) {
      const std::string problem = height_file_problem(file, cell_of_file(platform::name_of(file)));
      if (problem.empty()) {
        // A cell may lie there plain and zipped; both have the same contours.
        const bool is_new = std::none_of(whole.begin(), whole.end(), [&](const std::string& other) {
          return contour_path(other) == contour_path(file);
        });
        if (is_new) whole.push_back(file);
        continue;
      }
      damaged.append(file).append(" ").append(problem).append(crlf);
      m_report.missing.push_back(platform::name_of(file));
    }
    if (!damaged.empty()) warn(m_prompts, damaged);
    m_found = std::move(whole);
    return !m_found.empty();
  }

  bool check_files() { return drop_damaged() && copy_when_wanted() && check_folders() && check_existing(); }

  bool copy_when_wanted() {
    if (!m_request.copy_to_work_folder) return true;
    const std::string folder = platform::absolute(m_workspace.settings.contour_work_folder);
    Status copied = make_folder(folder);
    for (std::string& file : m_found) {
      const std::string copy = platform::join(folder, platform::name_of(file));
      if (copied.ok() && !same_file(file, copy)) copied = copy_file(file, copy);
      file = copy;
    }
    if (!copied.ok()) m_prompts.tell(copied.error, Icon::critical);
    return copied.ok();
  }

  bool check_folders() {
    for (const std::string& file : m_found) {
      const std::string folder = platform::folder_of(file);
      if (platform::folder_is_writable(folder)) continue;
      m_prompts.tell(folder + ": the folder cannot be written to", Icon::critical);
      return false;
    }
    return true;
  }

  // What a killed tool left is no contour file that anybody would miss.
  bool check_existing() {
    std::vector<std::string> existing;
    for (const std::string& file : m_found) {
      std::string contours = contour_path(file);
      bring_back(contours);
      if (is_complete_contour_file(contours)) existing.push_back(std::move(contours));
    }
    if (existing.empty() || m_request.overwrite) return true;
    warn(m_prompts, join_texts(existing, crlf) + "\r\nFile(s) exist. Tick 'overwrite' ");
    return false;
  }

  // Our own tool alone is known to share a folder with another run of it.
  [[nodiscard]] std::size_t cells_at_once() const {
    const std::string tool = lower_ascii(platform::name_of(m_workspace.settings.contour_tool));
    return tool.starts_with("ferrowen-contours") ? std::max(1U, std::thread::hardware_concurrency()) : 1U;
  }

  // A run that was killed together with this program left the older contours aside.
  void bring_back(const std::string& contours) {
    const std::string aside = contours + ".before";
    if (file_exists(contours) || !is_complete_contour_file(aside)) return;
    if (const Status back = rename_file(aside, contours); !back.ok()) warn(m_prompts, back.error);
  }

  void run() {
    ContourScript script;
    script.tool = platform::short_path(m_workspace.settings.contour_tool);
    script.option_text = contour_option_text(m_request.interval, m_request.tolerance);
    script.overwrite = m_request.overwrite;
    script.pause = m_request.pause;
    script.at_once = cells_at_once();
    std::vector<std::string> expected;
    for (const std::string& file : m_found) {
      script.jobs.push_back({file});
      expected.push_back(contour_path(file));
    }
    Result<ConsoleScript> console = contour_script(script, native_dialect);
    if (!console.ok()) return m_prompts.tell(console.error, Icon::critical);
    m_prompts.tell(contour_summary(script.option_text, m_request.tolerance, script.jobs.size()));
    run_script_for(expected, std::move(console.value));
  }

  void run_script_for(const std::vector<std::string>& expected, ConsoleScript console) {
    ExpectedFiles results(expected);
    Status ready = results.clear_the_way();
    const std::string folder = m_request.copy_to_work_folder
                                   ? platform::absolute(m_workspace.settings.contour_work_folder)
                                   : m_workspace.folder.path();
    const ToolScript script{std::move(console), platform::join(folder, script_name("contours")), folder,
                            !m_request.show_console, [&] { follow(results); }};
    Result<VisibleRunEnd> end{{}, ready.error};
    if (ready.ok()) end = run_tool_script(m_workspace, m_prompts, m_progress, script);
    const Result<std::vector<std::string>> bad = results.settle(is_complete_contour_file);
    remove_beginnings(bad.value);
    for (const std::string& error : {end.error, bad.error}) {
      if (!error.empty()) m_prompts.tell(error, Icon::critical);
    }
    if (end.ok()) conclude(expected, bad.value, end.value);
  }

  // The tool writes to a neighbour file first; one that was killed leaves it behind.
  void remove_beginnings(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
      if (const Status removed = remove_file(path + ".new"); !removed.ok())
        m_prompts.tell(removed.error, Icon::warning);
    }
  }

  // The time is shown by the run itself.
  void follow(const ExpectedFiles& results) {
    const ContourProgress now = contour_progress(results.found(), results.count(), 0);
    m_progress.fraction(now.fraction);
    m_progress.status(now.text);
  }

  void conclude(const std::vector<std::string>& expected, const std::vector<std::string>& bad,
                const VisibleRunEnd& end) {
    m_report.failed = bad;
    m_report.seconds = end.seconds;
    for (const std::string& file : expected) {
      if (std::find(bad.begin(), bad.end(), file) == bad.end()) m_report.files.push_back(file);
    }
    m_report.result = bad.empty() ? StageResult::done : StageResult::failed;
    if (end.cancelled) m_report.result = StageResult::cancelled;
    m_progress.status(contour_progress(m_report.files.size(), expected.size(), end.seconds).text);
    if (m_request.copy_to_work_folder && !m_report.files.empty())
      m_prompts.tell("Contours created in:\r\n" + platform::folder_of(m_report.files.front()));
    if (m_report.result == StageResult::done) tell_cells_of_voids(end.output);
    if (m_report.result != StageResult::failed) return;
    const std::string said(trim(end.output));
    m_prompts.tell(
        "Contours not created:\r\n" + join_texts(bad, crlf) + (said.empty() ? "" : "\r\n\r\n" + said),
        Icon::critical);
  }

  // Our own tool tells a cell that has nothing to draw.
  void tell_cells_of_voids(const std::string& output) {
    std::vector<std::string> lines = split_lines(output);
    std::erase_if(lines, [](const std::string& line) { return !contains(line, "holds no height at all"); });
    if (!lines.empty()) warn(m_prompts, join_texts(lines, crlf));
  }

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  const ContourRequest& m_request;
  ContourOutcome m_report;
  std::vector<std::string> m_listed, m_found;
};

}  // namespace

ContourOutcome make_contours(Workspace& workspace, Prompts& prompts, Progress& progress,
                             const ContourRequest& request) {
  return Maker(workspace, prompts, progress, request).make();
}

ContourProgress contour_progress(std::size_t made, std::size_t expected, double seconds) {
  ContourProgress now;
  if (expected > 0)
    now.fraction = static_cast<double>(std::min(made, expected)) / static_cast<double>(expected);
  now.text = "Contours: " + std::to_string(made) + "/" + std::to_string(expected);
  if (seconds > 0) now.text += "  " + timetaken(seconds);
  return now;
}

bool is_complete_contour_file(const std::string& path) {
  std::ifstream file(platform::file_system_path(path), std::ios::binary | std::ios::ate);
  const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : 0;
  if (size <= 0) return false;
  std::string tail(static_cast<std::size_t>(std::min(size, end_of_osm_room)), '\0');
  file.seekg(size - static_cast<std::streamoff>(tail.size()));
  file.read(tail.data(), static_cast<std::streamsize>(tail.size()));
  return file && trim(tail).ends_with(end_of_osm);
}

CellFiles find_contour_files(const std::vector<std::string>& names, const std::vector<std::string>& folders) {
  CellFiles files;
  for (const std::string& name : names) {
    const auto complete = [&](const std::string& folder) {
      const CellFiles here = find_cell_files({name}, folder, CellFile::contours);
      if (here.found.empty() || !is_complete_contour_file(here.found.front())) return false;
      files.found.push_back(here.found.front());
      return true;
    };
    if (!std::any_of(folders.begin(), folders.end(), complete)) files.missing.push_back(name);
  }
  return files;
}

std::vector<std::string> contour_file_names(const std::vector<std::string>& cells) {
  std::vector<std::string> names;
  names.reserve(cells.size());
  for (const std::string& cell : cells)
    names.push_back(contour_file_name(cell));
  return names;
}

ContourCells contour_cells(Workspace& workspace, Prompts& prompts) {
  return contour_cells(workspace, prompts, workspace.settings);
}

ContourCells contour_cells(Workspace& workspace, Prompts& prompts, const Settings& settings) {
  ContourCells cells;
  const std::vector<std::string> names = needed_cells(workspace, prompts);
  const CellFiles contours = find_contour_files(names, searched_contour_folders(settings));
  const CellFiles heights = find_cell_files(contours.missing, searched_hgt_folders(settings), CellFile::hgt);
  cells.to_make = heights.found;
  cells.missing_heights = heights.missing;
  cells.missing_contours = contours.missing;
  cells.all_made = !names.empty() && contours.missing.empty();
  return cells;
}

bool chkcontours(Workspace& workspace, Prompts& prompts) {
  const ContourCells cells = contour_cells(workspace, prompts);
  if (cells.all_made) {
    prompts.tell("All required contours have been created.");
    return true;
  }
  if (cells.to_make.empty()) {
    warn(prompts, "Can't find HGT files");
  } else {
    warn(prompts, "Missing:\r\n" + join_texts(contour_file_names(cells.missing_contours), crlf) + "\r\n" +
                      std::to_string(cells.missing_contours.size()) + " contour(s)");
  }
  return false;
}

}  // namespace ferrowen
