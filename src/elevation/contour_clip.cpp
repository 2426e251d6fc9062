#include "elevation/contour_clip.hpp"

#include <algorithm>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"
#include "elevation/tool_script.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view polygon_name = "clip2.poly";
constexpr std::string_view contour_ending = ".osm";
constexpr const char* protected_folder = " Folder Is Protected.Cannot save clipped contours";
constexpr const char* missing_in_log = "Clipping cancelled:Can't find";

void widen(SelectionBox& box, const Corner& corner) {
  const auto x = static_cast<float>(corner.longitude);
  const auto y = static_cast<float>(corner.latitude);
  box.xmin = std::min(box.xmin, x);
  box.xmax = std::max(box.xmax, x);
  box.ymin = std::min(box.ymin, y);
  box.ymax = std::max(box.ymax, y);
}

std::string point_line(float x, float y) {
  return " " + number_text(x) + " " + number_text(y) + std::string(crlf);
}

// A read-only folder ends the script behind its first file, with a message that stays on the screen.
step::IfExists write_test(const std::string& clipped) {
  ConsoleScript good;
  good.add(step::Echo{"@echo ", "... Folder OK"});
  ConsoleScript bad;
  bad.add(step::Echo{" @echo ", clipped + protected_folder}).add(step::Pause{}).add(step::Exit{0, false});
  return {clipped, true, std::make_shared<const ConsoleScript>(std::move(good)),
          std::make_shared<const ConsoleScript>(std::move(bad)), true};
}

std::string selected_numbers(const TileList& tiles) {
  std::vector<std::string> numbers;
  for (const Tile& tile : tiles) {
    if (tile.selected) numbers.push_back(tile.number);
  }
  return join_texts(numbers, ",");
}

class Clipper {
 public:
  Clipper(Workspace& workspace, Prompts& prompts, Progress& progress)
      : m_workspace(workspace), m_prompts(prompts), m_progress(progress) {}

  ClipReport clip() {
    const auto steps = {&Clipper::check_tiles,   &Clipper::check_folder,  &Clipper::check_tool,
                        &Clipper::write_polygon, &Clipper::find_contours, &Clipper::run};
    for (const auto step : steps) {
      if (!(this->*step)()) break;
    }
    return std::move(m_report);
  }

 private:
  bool check_tiles() {
    if (selected_count(m_workspace.tiles) > 0) return true;
    m_prompts.tell(
        m_workspace.tiles.empty() ? "Please SPLIT file to obtain hgt files needed." : "Please select Tile.",
        Icon::warning);
    return false;
  }

  bool check_folder() {
    const std::string folder = current_clip_folder(m_workspace.settings);
    if (folder.empty() || !folder_exists(folder)) {
      m_prompts.tell("\r\n\r\nClip path : " + folder + " ?\r\n\r\n --> Contours,Clip Settings",
                     Icon::warning);
      return false;
    }
    m_folder = platform::absolute(folder);
    return m_prompts.ask("Path : " + folder + "\r\nClip file(s)?") == Answer::yes;
  }

  bool check_tool() {
    m_tool = trim(m_workspace.settings.osmconvert);
    if (!m_tool.empty() && file_exists(m_tool) && !folder_exists(m_tool)) return true;
    m_prompts.tell("Clipping contours:\r\n\r\nPlease locate osmconvert.exe in Contour/Contour Clip Settings.",
                   Icon::warning);
    m_report.step = ClipStep::locate_osmconvert;
    return false;
  }

  bool write_polygon() {
    const Result<std::string> box = create_poly(m_workspace);
    if (!box.ok()) m_prompts.tell(box.error, Icon::critical);
    return box.ok();
  }

  bool find_contours() {
    const std::vector<std::string> names = needed_cells(m_workspace, m_prompts);
    const std::vector<std::string> folders = searched_contour_folders(m_workspace.settings);
    const CellFiles files = find_contour_files(names, folders);
    for (const std::string& path : files.found) {
      const std::string contours = platform::absolute(path);
      const std::string name = clipped_file_name(platform::name_of(contours));
      m_script.jobs.push_back({contours, platform::join(m_folder, name)});
    }
    m_script.files = names.size();
    if (names.empty()) m_prompts.tell("No contours found. Untick contours.", Icon::warning);
    if (!files.missing.empty()) tell_missing(files.missing);
    return !names.empty() && files.missing.empty();
  }

  void tell_missing(const std::vector<std::string>& names) {
    std::vector<std::string> files;
    files.reserve(names.size());
    for (const std::string& name : names)
      files.push_back(platform::join(current_hgt_folder(m_workspace.settings),
                                     replace_all(name, ".hgt", contour_ending)));
    const std::string list = join_texts(files, crlf);
    m_prompts.tell(selected_numbers(m_workspace.tiles) + "\r\nClipping cancelled :Can't find\r\n\r\n" + list,
                   Icon::warning);
    m_progress.output(missing_in_log + std::string(crlf) + list + std::string(crlf));
  }

  bool run() {
    m_script.osmconvert = platform::short_path(m_tool);
    m_script.polygon =
        platform::join(platform::short_path(platform::absolute(m_workspace.folder.path())), polygon_name);
    std::vector<std::string> expected, names;
    ClipScript script = m_script;
    for (ClipJob& job : script.jobs) {
      expected.push_back(job.clipped);
      names.push_back(job.contours);
      job.contours = platform::short_path(job.contours);
    }
    m_progress.output("Clipping:\r\n" + join_texts(names, crlf) + std::string(crlf));
    m_progress.status("Clipping");
    m_workspace.land_list.clear();
    run_and_judge(expected, clip_script(script));
    return true;
  }

  void run_and_judge(const std::vector<std::string>& expected, ConsoleScript console) {
    ExpectedFiles results(expected);
    const Status ready = results.clear_the_way();
    const std::string folder = m_workspace.folder.path();
    const ToolScript script{std::move(console), platform::join(folder, script_name("clip")), folder, false,
                            [&] {
                              const auto count = static_cast<double>(results.count());
                              m_progress.fraction(static_cast<double>(results.found()) / count);
                              m_progress.status("Please Wait...");
                            }};
    Result<VisibleRunEnd> end{{}, ready.error};
    if (ready.ok()) end = run_tool_script(m_workspace, m_prompts, m_progress, script);
    const bool whole = end.ok() && !end.value.cancelled;
    // What a stopped run was just writing cannot be told from what it had finished.
    const Result<std::vector<std::string>> bad = results.settle(
        [&](const std::string& path) { return whole && pbf_state(path) != PbfState::damaged; });
    for (const std::string& error : {end.error, bad.error}) {
      if (!error.empty()) m_prompts.tell(error, Icon::critical);
    }
    if (end.ok()) conclude(expected, bad.value, end.value);
  }

  // The script takes every failure with the first file for a protected folder.
  [[nodiscard]] std::string what_the_tool_said(const std::string& output) const {
    if (!platform::folder_is_writable(m_folder)) return std::string(trim(output));
    std::string said = "osmconvert has failed.";
    for (const std::string& line : split_lines(output)) {
      if (!contains(line, protected_folder)) said.append(crlf).append(line);
    }
    return std::string(trim(said));
  }

  void conclude(const std::vector<std::string>& expected, const std::vector<std::string>& bad,
                const VisibleRunEnd& end) {
    for (const std::string& path : expected) {
      if (std::find(bad.begin(), bad.end(), path) != bad.end()) continue;
      m_report.files.push_back(path);
      if (const Status opened = make_readable(path); !opened.ok())
        m_prompts.tell(opened.error, Icon::warning);
    }
    m_report.result = bad.empty() ? StageResult::done : StageResult::failed;
    if (end.cancelled) m_report.result = StageResult::cancelled;
    if (m_report.result == StageResult::done) m_progress.fraction(1);
    if (m_report.result != StageResult::failed) return;
    const std::string said = what_the_tool_said(end.output);
    m_prompts.tell(
        "Clipped contours missing:\r\n" + join_texts(bad, crlf) + (said.empty() ? "" : "\r\n\r\n" + said),
        Icon::critical);
  }

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  ClipReport m_report;
  ClipScript m_script;
  std::string m_folder, m_tool;
};

}  // namespace

SelectionBox selection_box(const TileList& tiles) {
  SelectionBox box;
  for (const Tile& tile : tiles) {
    if (!tile.selected) continue;
    widen(box, tile.lower_left);
    widen(box, tile.upper_right);
    ++box.tiles;
  }
  return box;
}

std::string polygon_text(const SelectionBox& box) {
  return "area\r\n1\r\n" + point_line(box.xmin, box.ymin) + point_line(box.xmin, box.ymax) +
         point_line(box.xmax, box.ymax) + point_line(box.xmax, box.ymin) + point_line(box.xmin, box.ymin) +
         "END\r\nEND\r\n";
}

std::string box_text(const SelectionBox& box) {
  return number_text(box.xmin) + "," + number_text(box.ymin) + "," + number_text(box.xmax) + "," +
         number_text(box.ymax);
}

Result<std::string> create_poly(const Workspace& workspace) {
  const SelectionBox box = selection_box(workspace.tiles);
  const Status written = safe_write(workspace.path(polygon_name), polygon_text(box));
  return {box_text(box), written.error};
}

std::string clipped_file_name(std::string_view contour_file) {
  std::string_view cell = contour_file;
  if (ends_with_ignoring_case(cell, contour_ending)) cell.remove_suffix(contour_ending.size());
  return std::string(cell) + "clp.pbf";
}

ConsoleScript clip_script(const ClipScript& script, Dialect dialect) {
  ConsoleScript console;
  console.add(step::Header{"@Echo Off"})
      .add(step::Echo{"@echo. ", "-- Clipping " + std::to_string(script.files) + " Contours --"})
      .add(step::Echo{"@echo[ ", ""});
  for (std::size_t k = 0; k < script.jobs.size(); ++k) {
    const ClipJob& job = script.jobs[k];
    const std::string number = std::to_string(k + 1);
    console.add(step::Echo{"@echo. ", number + ") " + platform::name_of(job.contours), true})
        .add(step::Run{
            {script.osmconvert,
             {word(job.contours), option("-B", script.polygon), quoted_option("-o", job.clipped)}}});
    add_discarding(job.clipped, Discard::contents, dialect, console);  // the write test looks for a file
    if (k == 0) console.add(write_test(job.clipped));
  }
  return console;
}

ClipReport clip(Workspace& workspace, Prompts& prompts, Progress& progress) {
  return Clipper(workspace, prompts, progress).clip();
}

ClipReport clip1tile(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& number) {
  const TileList tiles = workspace.tiles;
  for (Tile& tile : workspace.tiles)
    tile.selected = tile.number == number;
  ClipReport report = clip(workspace, prompts, progress);
  workspace.tiles = tiles;
  return report;
}

}  // namespace ferrowen
