#include "elevation/merge.hpp"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/tool_script.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view pbf_ending = ".pbf";
constexpr std::string_view work_folder_name = "temp/merge";
constexpr std::string_view part_ending = ".o5m", left_out_ending = ".left";
constexpr std::uint64_t full_disk = 16ULL * 1024;  // bytes; less than the tool writes at once
constexpr std::size_t longest_list = 8000;         // bytes of part names on one line of a batch file

std::string part_path(const MergeScript& script, std::size_t number) {
  return platform::join(script.work_folder, "p" + std::to_string(number) + std::string(part_ending));
}

std::shared_ptr<const ConsoleScript> only(Step step) {
  ConsoleScript script;
  script.add(std::move(step));
  return std::make_shared<const ConsoleScript>(std::move(script));
}

// What the tool left of a damaged input is often most of a file.
void delete_when_failed(const std::string& path, Dialect dialect, ConsoleScript& console) {
  add_discarding(path, Discard::file, dialect, console);
  const Result<std::string> rendered = render_path(path, dialect);
  if (!rendered.ok()) return;  // the steps beside this one tell it
  const std::string& name = rendered.value;
  // A part that the tool could not write to its end lacks the end mark; its status does not tell.
  if (dialect == Dialect::shell && path.ends_with(".o5m"))
    console.add(step::Lines{"[ \"$(tail -c 1 -- " + name +
                            " 2>/dev/null | od -An -tx1 | tr -d ' ')\" = fe ] || rm -f -- " + name});
}

// What stands in a console window is read by nobody but the person: the file that stays behind tells the
// rest.
void mark_when_missing(const std::string& part, Dialect dialect, ConsoleScript& console) {
  const Result<std::string> name = render_path(part, dialect);
  const Result<std::string> mark = render_path(part + std::string(left_out_ending), dialect);
  if (!name.ok() || !mark.ok()) return;  // the steps beside this one tell it
  console.add(step::Lines{dialect == Dialect::batch
                              ? "if not exist " + name.value + " type nul >" + mark.value
                              : "[ -e " + name.value + " ] || : >" + mark.value});
}

void add_conversions(const MergeScript& script, Dialect dialect, ConsoleScript& console) {
  for (std::size_t i = 1; i <= script.files.size(); ++i) {
    const std::string& file = script.files[i - 1];
    const std::string& given = script.given_files.empty() ? file : script.given_files.at(i - 1);
    const std::string part = part_path(script, i);
    console.add(step::Echo{"@echo ", "converting " + file})
        .add(step::Run{{script.osmconvert, {word(given), option("-o", part)}}});
    delete_when_failed(part, dialect, console);
    console.add(step::DeleteEmpty{part})
        .add(step::IfExists{part, false, only(step::Echo{"echo ", file + " not included"}), nullptr});
    mark_when_missing(part, dialect, console);
  }
}

void add_joining(const MergeScript& script, Dialect dialect, ConsoleScript& console) {
  const std::string all = platform::join(script.work_folder, "all.o5m");
  console.add(step::CollectNothing{});
  for (std::size_t i = 1; i <= script.files.size(); ++i)
    console.add(step::Collect{part_path(script, i)});
  console.add(step::RunWithCollected{{script.osmconvert, {option("-o", all)}}});
  delete_when_failed(all, dialect, console);
  console.add(step::Echo{"@echo ", "."})
      .add(step::Echo{"@echo ", "Creating:" + script.target})
      .add(step::Echo{"@echo ", "."})
      .add(step::Run{{script.osmconvert, {word(all), option("-o", script.target)}}});
  delete_when_failed(script.target, dialect, console);
  for (std::size_t i = 1; i <= script.files.size(); ++i)
    console.add(
        step::IfExists{part_path(script, i), true, only(step::Delete{part_path(script, i)}), nullptr});
  console.add(step::IfExists{all, true, only(step::Delete{all}), nullptr});
}

class Merger {
 public:
  Merger(Workspace& workspace, Prompts& prompts, Progress& progress, std::vector<std::string> files,
         std::string target)
      : m_workspace(workspace),
        m_prompts(prompts),
        m_progress(progress),
        m_files(std::move(files)),
        m_target(std::move(target)) {}

  MergeReport merge() {
    const auto steps = {&Merger::check_tool, &Merger::check_files, &Merger::check_target,
                        &Merger::warn_of_equal_ids, &Merger::run};
    for (const auto step : steps) {
      if (!(this->*step)()) break;
    }
    return std::move(m_report);
  }

 private:
  bool stop(const std::string& text, Icon icon = Icon::warning) {
    m_prompts.tell(text, icon);
    return false;
  }

  bool check_tool() {
    m_tool = trim(m_workspace.settings.osmconvert);
    return (!m_tool.empty() && file_exists(m_tool) && !folder_exists(m_tool)) ||
           stop("Please locate osmvonvert 32 bit");
  }

  bool check_files() {
    for (std::string& file : m_files) {
      if (!ends_with_ignoring_case(file, pbf_ending)) return stop(file + " not a valid pbf");
      file = platform::absolute(file);
    }
    if (m_files.size() < 2) return stop("Must contain at least 2 files");
    for (const std::string& file : m_files) {
      if (folder_exists(file)) return stop(file + " is a folder.");
      if (!file_has_content(file))
        return stop(file + " " + (file_exists(file) ? "has zero length" : m_workspace.message(44)));
    }
    return true;
  }

  bool check_target() {
    const Result<std::string> name = merge_target(m_target);
    if (!name.ok()) return stop(name.error);
    m_target = platform::absolute(name.value);
    for (const std::string& file : m_files) {
      if (file == m_target || same_file(file, m_target)) return stop(file + " cannot be the result too.");
    }
    if (folder_exists(m_target)) return stop(m_target + " is a folder.");
    const std::string folder = platform::folder_of(m_target);
    if (!folder_exists(folder)) return stop(m_workspace.message(51) + folder);
    if (!platform::folder_is_writable(folder))
      return stop(folder + ": the folder cannot be written to", Icon::critical);
    return !file_exists(m_target) ||
           m_prompts.ask("Target PBF File exists.\r\n\r\nReplace " + m_target + "?") == Answer::yes;
  }

  // Contours of other tools may number the lines of every cell from the same start; objects with equal
  // numbers are taken for one.
  bool warn_of_equal_ids() {
    std::size_t contour_files = 0;
    for (const std::string& file : m_files) {
      if (!cell_of_file(platform::name_of(file)).empty()) ++contour_files;
    }
    const std::string tool = platform::name_of(m_workspace.settings.contour_tool);
    const bool own = lower_ascii(tool).starts_with("ferrowen-contours");
    if (contour_files < 2 || own) return true;
    m_prompts.tell("Contour files of " + (tool.empty() ? "another tool" : tool) +
                   " may share their numbers: lines with equal numbers are merged into one.");
    return true;
  }

  bool run() {
    const std::string work_folder = platform::absolute(m_workspace.path(work_folder_name));
    Status ready = make_folder(work_folder);  // only what is there has a short name
    MergeScript script{platform::short_path(m_tool), {}, m_target, platform::short_path(work_folder)};
    for (const std::string& file : m_files) {
      script.given_files.push_back(platform::short_path(file));
      script.files.push_back(can_be_shown(file) ? file : script.given_files.back());
    }
    if (m_files.size() * (part_path(script, m_files.size()).size() + 3) > longest_list)
      return stop("Too many files for one merge. Merge them in two steps.");
    ExpectedFiles result({m_target});
    if (ready.ok()) ready = remove_parts(script);
    if (ready.ok()) ready = result.clear_the_way();
    Result<VisibleRunEnd> end{{}, ready.error};
    if (ready.ok()) {
      const std::string folder = m_workspace.folder.path();
      const ToolScript tool_script{merge_script(script), platform::join(folder, script_name("conv")), folder,
                                   false, [&] { show_progress(script); }};
      end = run_tool_script(m_workspace, m_prompts, m_progress, tool_script);
    }
    conclude(script, result, end);
    return end.ok();
  }

  // What an interrupted merge left would be taken for parts of this one.
  static Status remove_parts(const MergeScript& script) {
    for (const std::string& name :
         list_files(script.work_folder, {std::string(part_ending), std::string(left_out_ending)})) {
      if (Status removed = remove_file(platform::join(script.work_folder, name)); !removed.ok())
        return removed;
    }
    return {};
  }

  void show_progress(const MergeScript& script) {
    const auto done = static_cast<double>(list_files(script.work_folder, {std::string(part_ending)}).size());
    m_progress.fraction(std::min(1.0, done / static_cast<double>(script.files.size() + 1)));
    // Parts stay until the end of the run, so a disk that they fill is seen to be full.
    const std::optional<std::uint64_t> space = platform::free_space(script.work_folder);
    m_disk_was_full = m_disk_was_full || (space && *space < full_disk);
  }

  void conclude(const MergeScript& script, ExpectedFiles& result, const Result<VisibleRunEnd>& end) {
    const bool whole = end.ok() && !end.value.cancelled && !m_disk_was_full;
    const Result<std::vector<std::string>> bad =
        result.settle([&](const std::string& path) { return whole && pbf_state(path) != PbfState::damaged; });
    if (whole) m_report.left_out = left_out(script);
    Status parts = remove_parts(script);
    std::error_code ignored;  // an empty folder that stays harms nobody
    if (folder_exists(script.work_folder))
      std::filesystem::remove(platform::file_system_path(script.work_folder), ignored);
    for (const std::string& error : {end.error, bad.error, parts.error}) {
      if (!error.empty()) m_prompts.tell(error, Icon::critical);
    }
    if (!end.ok()) return;
    if (m_disk_was_full) m_prompts.tell("No space left: " + script.work_folder, Icon::critical);
    m_report.result = bad.value.empty() ? StageResult::done : StageResult::failed;
    if (end.value.cancelled) m_report.result = StageResult::cancelled;
    if (m_report.result != StageResult::cancelled) tell_result();
  }

  // Names beyond the code page of the console are shown by their short form.
  static bool can_be_shown(const std::string& name) {
    return native_dialect == Dialect::shell || encode_for(Consumer::batch_script, name, name).ok();
  }

  [[nodiscard]] std::vector<std::string> left_out(const MergeScript& script) const {
    std::vector<std::string> files;
    for (std::size_t i = 1; i <= m_files.size(); ++i)
      if (file_exists(part_path(script, i) + std::string(left_out_ending))) files.push_back(m_files[i - 1]);
    return files;
  }

  void tell_result() {
    for (const std::string& file : m_report.left_out)
      m_prompts.tell(file + " not included", Icon::warning);
    if (m_report.result == StageResult::failed) {
      m_prompts.tell("Not successful " + m_target, Icon::critical);
      return;
    }
    m_progress.fraction(1);
    if (const Status opened = make_readable(m_target); !opened.ok())
      m_prompts.tell(opened.error, Icon::warning);
    m_prompts.tell(m_target + " created.");
  }

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  std::vector<std::string> m_files;
  std::string m_target, m_tool;
  MergeReport m_report;
  bool m_disk_was_full = false;
};

}  // namespace

std::vector<std::string> parse_merge_list(std::string_view text, Dialect dialect) {
  std::vector<std::string> files;
  for (const std::string& line : split_lines(text)) {
    std::string file(trim(line));
    if (file.size() > 1 && file.starts_with('"') && file.ends_with('"'))
      file = file.substr(1, file.size() - 2);
    if (dialect == Dialect::batch) file = replace_all(replace_all(file, "/", "\\"), "\\\\", "\\");
    if (!file.empty()) files.push_back(std::move(file));
  }
  return files;
}

std::string merge_list_text(const std::vector<std::string>& files) {
  return files.empty() ? "" : join_texts(files, crlf) + std::string(crlf);
}

Result<std::vector<std::string>> load_merge_list(const std::string& path) {
  const Result<std::string> text = read_file(path);
  std::vector<std::string> files = parse_merge_list(decode_tool_text(text.value));
  const std::string folder = platform::folder_of(platform::absolute(path));
  for (std::string& file : files) {
    if (!platform::is_absolute(file)) file = platform::join(folder, file);
  }
  return {std::move(files), text.error};
}

Status save_merge_list(const std::string& path, const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    if (file.find_first_of("\r\n") != std::string::npos)
      return {"A list file cannot hold this name: " + file};
  }
  return safe_write(path, merge_list_text(files));
}

ConsoleScript merge_script(const MergeScript& script, Dialect dialect) {
  ConsoleScript console;
  console.add(step::Header{"@ECHO OFF"})
      .add(step::Echo{"@echo ", "Merging " + std::to_string(script.files.size()) + " files."});
  for (int i = 0; i < 3; ++i)
    console.add(step::Echo{"@echo ", "."});
  console.add(step::Echo{"@echo ", "Please Wait..."}).add(step::Echo{"@echo ", "."});
  add_conversions(script, dialect, console);
  add_joining(script, dialect, console);
  console
      .add(step::IfExists{script.target, true, only(step::Echo{"echo ", script.target + " created."}),
                          nullptr})
      .add(step::IfExists{script.target, false, only(step::Echo{"echo ", "Not successful " + script.target}),
                          nullptr});
  for (int i = 0; i < 2; ++i)
    console.add(step::Echo{"@echo ", "."});
  console.add(step::Pause{});
  return console;
}

MergeReport merg(Workspace& workspace, Prompts& prompts, Progress& progress,
                 const std::vector<std::string>& files, const std::string& target) {
  return Merger(workspace, prompts, progress, files, target).merge();
}

Result<std::string> merge_target(const std::string& target) {
  std::string name(trim(target));
  if (name.empty()) return failed<std::string>("Please select");
  if (!ends_with_ignoring_case(name, pbf_ending)) return failed<std::string>(name + " not a valid pbf");
  name.replace(name.size() - pbf_ending.size(), pbf_ending.size(), pbf_ending);
  return {std::move(name), ""};
}

}  // namespace ferrowen
