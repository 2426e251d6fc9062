#include "automation/auto_run.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>

#include "app/run_settings.hpp"
#include "automation/auto_editor.hpp"
#include "automation/auto_log.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_clip.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/contour_script.hpp"
#include "pipeline/identifiers.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::uint64_t largest_script = 16ULL << 20;

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The tags of a script as settings of one run.
class Applied {
 public:
  Applied(Workspace& workspace, RunSettings& run, const AutoScript& script)
      : m_workspace(workspace), m_run(run), m_script(script) {}

  Status apply() {
    for (const auto& [tag, field] : same_as_field) {
      if (const auto value = filled(tag); value && m_problem.empty()) set(field, *value);
    }
    for (const std::string_view tag : {"country", "description"}) {
      if (const auto value = m_script.value(tag)) set(tag, *value);
    }
    for (const auto& [tag, field] : switches) {
      if (const auto value = filled(tag)) set(field, is_word(*value, "yes") ? "1" : "0");
    }
    apply_image_name();
    apply_memory();
    apply_fid();
    apply_typ();
    apply_contours();
    apply_hgt();
    apply_options();
    return {m_problem};
  }

 private:
  using Pair = std::pair<std::string_view, std::string_view>;
  static constexpr std::array<Pair, 5> same_as_field = {{{"file", "input"},
                                                         {"mapname", "map-name"},
                                                         {"maxnodes", "max-nodes"},
                                                         {"mapid", "map-id"},
                                                         {"style", "style"}}};
  static constexpr std::array<Pair, 3> switches = {
      {{"basecamp", "register"}, {"gmapsupp", "gmapsupp"}, {"dem", "dem"}}};

  void set(std::string_view field, const std::string& text) {
    const Status done = m_run.set(field, text);
    if (!done.ok() && m_problem.empty()) m_problem = done.error;
  }

  // A blank value leaves the setting as it is.
  [[nodiscard]] std::optional<std::string> filled(std::string_view tag) const {
    std::optional<std::string> value = m_script.value(tag);
    return value && !value->empty() ? value : std::nullopt;
  }

  void apply_image_name() {
    const auto name = m_script.value("gmapsupp_name");
    if (!name) return;
    // A blank one is how a script says that the image has the name of the map.
    if (!name->empty()) set("image-name", *name);
    set("image-named-after-map", name->empty() ? "1" : "0");
  }

  void apply_memory() {
    const auto memory = filled("memory");
    // The rest of the options of Java stays where the memory is what it was.
    if (!memory || *memory == memory_of_java_options(m_workspace.settings.java_options)) return;
    set("java-options", with_heap(m_workspace.settings.java_options, *memory));
  }

  // The build draws a number for a blank one; a locked one is not touched.
  void apply_fid() {
    const auto fid = filled("fid");
    if (!fid) return;
    if (!is_word(*fid, "auto")) return set("fid", *fid);
    if (!m_workspace.settings.fid_locked) set("fid", "");
  }

  void apply_typ() {
    const auto typ = m_script.value("typ");
    if (!typ || is_word(*typ, "current")) return;
    set("use-typ", typ->empty() ? "0" : "1");
    if (!typ->empty()) set("typ", *typ);
  }

  void apply_contours() {
    const auto contours = filled("contours");
    if (!contours) return;
    set("contours", is_word(*contours, "no") ? "0" : "1");
    set("clip-contours", is_word(*contours, "clip") ? "1" : "0");
  }

  void apply_hgt() {
    const auto hgt = filled("hgt");
    if (!hgt) return;
    const bool searched = is_word(*hgt, "auto");
    set("hgt-auto-search", searched ? "1" : "0");
    if (searched) return;
    const int slot = std::clamp(m_workspace.settings.hgt_slot, 0, hgt_folder_slots - 1);
    set("hgt-slot", std::to_string(slot));
    set("hgt-folder-" + std::to_string(slot + 1), *hgt);
  }

  // A script that names options, if only a blank one, names all of them.
  void apply_options() {
    std::vector<std::string> options = m_script.values("option");
    if (options.empty()) return;
    std::erase(options, "");
    set("options-text", join_texts(options, crlf));
    set("use-options-text", options.empty() ? "0" : "1");
  }

  Workspace& m_workspace;
  RunSettings& m_run;
  const AutoScript& m_script;
  std::string m_problem;
};

// One run of one script, its quiet flag set while it lives.
class Run {
 public:
  Run(Workspace& workspace, Prompts& prompts, Progress& progress, AutoReport& report)
      : m_workspace(workspace),
        m_prompts(prompts),
        m_progress(progress),
        m_report(report),
        m_services(build_services(prompts, progress)),
        m_clip_folders(workspace.settings) {
    m_workspace.script_running = true;
    m_workspace.flags = {};
  }
  ~Run() { m_workspace.script_running = false; }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void stages() {
    const bool with_contours = m_workspace.settings.contours && !is_mp(m_workspace.settings.input);
    BuildRequest request;
    // Contours are made and clipped for tiles: a map that is small enough without any gets some too.
    request.split_again = with_contours && !is_already_split(m_workspace);
    m_report.build = prepare_tiles(m_workspace, m_prompts, m_progress, m_services, request);
    m_report.stages = m_report.build.stages;
    m_report.result = m_report.build.result;
    if (with_contours) {
      stage("contours", [&] { return with_all_tiles([&] { return contours(); }); });
      if (m_workspace.settings.clip_contours)
        stage("clip", [&] {
          return with_all_tiles([&] { return clip(m_workspace, m_prompts, m_progress).result; });
        });
    }
    if (m_report.result == StageResult::done && m_progress.stop_requested())
      m_report.result = StageResult::cancelled;
    if (m_report.result == StageResult::done) build();
  }

 private:
  void stage(const char* name, const std::function<StageResult()>& work) {
    if (m_report.result != StageResult::done) return;
    if (m_progress.stop_requested()) {
      m_report.result = StageResult::cancelled;
      return;
    }
    const double start = now();
    m_report.result = work();
    m_report.stages.push_back({name, now() - start});
  }

  void select(bool selected) {
    for (Tile& tile : m_workspace.tiles)
      tile.selected = selected;
  }

  // The whole map is meant, whatever was selected before.
  StageResult with_all_tiles(const std::function<StageResult()>& work) {
    select(true);
    const StageResult result = work();
    select(false);
    return result;
  }

  StageResult contours() {
    const ContourCells cells = contour_cells(m_workspace, m_prompts);
    if (cells.all_made) return StageResult::done;
    if (cells.to_make.empty()) {
      chkcontours(m_workspace, m_prompts);  // tells what is missing
      return StageResult::failed;
    }
    if (!cells.missing_heights.empty())
      m_prompts.tell("No heights for " + join_texts(cells.missing_heights, ", "), Icon::warning);
    ContourRequest request;
    request.height_files = cells.to_make;
    request.interval = contour_interval(m_workspace.settings);
    request.tolerance = m_workspace.settings.contour_tolerance;
    return make_contours(m_workspace, m_prompts, m_progress, request).result;
  }

  [[nodiscard]] bool was_split() const {
    return std::any_of(m_report.stages.begin(), m_report.stages.end(),
                       [](const StageTime& stage) { return stage.stage == "split"; });
  }

  void build() {
    const CheckScope scope = was_split() ? CheckScope::after_split : CheckScope::all;
    select(false);
    m_report.build = create_map(m_workspace, m_prompts, m_progress, m_services, scope);
    m_report.result = m_report.build.result;
    m_report.stages.insert(m_report.stages.end(), m_report.build.stages.begin(), m_report.build.stages.end());
  }

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  AutoReport& m_report;
  BuildServices m_services;
  KeptClipFolders m_clip_folders;
};

std::vector<std::string> problems_of(const Workspace& workspace, const std::string& path,
                                     AutoScript& script) {
  if (file_exists(path) && !is_plain_file(path)) return {path + ": is no file"};
  const Result<std::string> bytes = read_file(path, largest_script);
  if (!bytes.ok()) return {bytes.error};
  script = parse_auto_script(bytes.value);
  return problem_lines(check_auto_script(script, auto_facts(workspace)));
}

}  // namespace

AutoReport run_auto_script(Workspace& workspace, Progress& progress, const std::string& path) {
  AutoReport report;
  report.script = platform::absolute(path);
  const double start = now();
  AutoLog log(workspace, report.script);
  QuietPrompts prompts([&](const QuietMessage& message) { log.line(message_line(message)); });
  AutoScript script;
  report.problems = problems_of(workspace, path, script);
  if (report.problems.empty()) {
    RunSettings run(workspace);
    if (const Status applied = Applied(workspace, run, script).apply(); !applied.ok()) {
      report.problems.push_back(applied.error);
    } else {
      LoggedProgress logged(progress, log);
      Run(workspace, prompts, logged, report).stages();
    }
    run.put_back();
  }
  report.messages = prompts.messages();
  report.seconds = now() - start;
  report.log = log.path();
  if (const Status written = log.finish(report_text(report)); !written.ok()) {
    report.messages.push_back({written.error, Icon::critical, std::nullopt});
    report.log.clear();
  }
  return report;
}

bool script_is_wanted(Workspace& workspace, Prompts& prompts, const std::string& path) {
  if (workspace.script_running) {
    prompts.tell("Auto Script already running");
    return false;
  }
  if (prompts.ask(path + "\r\n\r\nAuto Create?") != Answer::yes) return false;
  // The person may have started one while the question stood there.
  if (workspace.script_running) {
    prompts.tell("Autoscript is already running");
    return false;
  }
  workspace.settings.last_script = path;
  return true;
}

}  // namespace ferrowen
