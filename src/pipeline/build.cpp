#include "pipeline/build.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <map>
#include <utility>

#include "app/script_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/argument_files.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/build_run.hpp"
#include "pipeline/delivery.hpp"
#include "pipeline/identifiers.hpp"
#include "pipeline/installer.hpp"
#include "pipeline/mkgmap_command.hpp"
#include "pipeline/options_text.hpp"
#include "pipeline/previous_map.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"
#include "runner/script_text.hpp"

namespace ferrowen {

namespace {

constexpr double clock_tolerance = 2.0;               // seconds; some file systems keep coarse times
constexpr const char* default_map_name = "63240001";  // what mkgmap itself takes without --mapname
constexpr std::string_view error_mark = "parabola";

bool is_map_file(const std::string& name) {
  constexpr std::array<std::string_view, 4> endings = {".img", ".mdx", ".tdb", ".typ"};
  return std::any_of(endings.begin(), endings.end(),
                     [&](std::string_view ending) { return ends_with_ignoring_case(name, ending); });
}

// The results of one build: what must appear, what else may, and the older files put out of their way.
class Results {
 public:
  Results(std::vector<std::string> expected, const std::vector<std::string>& further)
      : m_expected(std::move(expected)), m_all(m_expected) {
    m_all.insert(m_all.end(), further.begin(), further.end());
  }
  Status clear_the_way();
  [[nodiscard]] std::vector<ResultFile> expected() const { return looked_at(m_expected); }
  [[nodiscard]] std::vector<MadeFile> made() const;
  [[nodiscard]] std::size_t images_found() const;
  [[nodiscard]] std::size_t images_expected() const { return m_expected.size(); }
  [[nodiscard]] const std::vector<std::string>& all() const { return m_all; }
  // What lies in the folder now, so that everything else that a script of the user makes there is known.
  void remember(const std::string& folder);
  // Map files of the remembered folder that are new or were changed since, beyond those of the plan.
  [[nodiscard]] std::vector<MadeFile> further_made() const;
  [[nodiscard]] bool replace_older() const { return m_old.count() > 0; }
  Status keep() { return m_old.drop(); }
  Status undo();

 private:
  [[nodiscard]] std::vector<ResultFile> looked_at(const std::vector<std::string>& paths) const;
  std::vector<std::string> m_expected, m_all;
  std::size_t m_cleared = 0;
  double m_start = 0;
  MovedAside m_old;
  std::string m_folder;
  std::map<std::string, std::pair<std::uint64_t, std::optional<double>>> m_before;  // size, time of change
};

Status Results::clear_the_way() {
  m_start = static_cast<double>(std::time(nullptr));
  for (const std::string& path : m_all) {
    if (Status moved = m_old.take(path); !moved.ok()) return moved;
    ++m_cleared;
  }
  return {};
}

std::vector<ResultFile> Results::looked_at(const std::vector<std::string>& paths) const {
  std::vector<ResultFile> files;
  for (const std::string& path : paths) {
    const double changed = platform::change_time(path).value_or(0);
    files.push_back({path, file_size(path), changed + clock_tolerance >= m_start});
  }
  return files;
}

std::vector<MadeFile> Results::made() const {
  std::vector<MadeFile> files;
  for (const ResultFile& file : looked_at(m_all)) {
    if (file.size > 0 && file.newer_than_start) files.push_back({file.path, file.size});
  }
  return files;
}

void Results::remember(const std::string& folder) {
  m_folder = folder;
  for (const std::string& name : list_files(folder, {""})) {
    const std::string path = platform::join(folder, name);
    if (is_map_file(name)) m_before[path] = {file_size(path), platform::change_time(path)};
  }
}

std::vector<MadeFile> Results::further_made() const {
  std::vector<MadeFile> files;
  for (const std::string& name : list_files(m_folder, {""})) {
    const std::string path = platform::join(m_folder, name);
    if (!is_map_file(name) || std::find(m_all.begin(), m_all.end(), path) != m_all.end()) continue;
    const auto before = m_before.find(path);
    const std::pair now{file_size(path), platform::change_time(path)};
    if (now.first > 0 && (before == m_before.end() || before->second != now))
      files.push_back({path, now.first});
  }
  return files;
}

std::size_t Results::images_found() const {
  const auto found = [](const std::string& path) { return file_has_content(path); };
  return static_cast<std::size_t>(std::count_if(m_expected.begin(), m_expected.end(), found));
}

// Removes what the failed run left and brings the older files back.
Status Results::undo() {
  Status first;
  // Only where an older file was moved away (or none was) does what lies there now belong to this run.
  for (std::size_t i = 0; i < m_cleared; ++i) {
    const Status removed = remove_file(m_all[i]);
    if (!removed.ok() && first.ok()) first = removed;
  }
  m_cleared = 0;
  const Status restored = m_old.restore();
  return first.ok() ? restored : first;
}

void tell_problem(Prompts& prompts, const Status& status) {
  if (!status.ok()) prompts.tell(status.error, Icon::critical);
}

// Own scripts say themselves what they make, whatever the settings ask for; one that makes a device image
// alone is judged by that.
void plan_for_own_script(const Workspace& workspace, BuildPlan& plan, Settings& settings) {
  const std::string script = read_whole_file(workspace.path(file_name::own_script));
  const std::optional<std::string> name = map_name_option(script, native_dialect);
  settings.device_image = has_option(script, "--gmapsupp", native_dialect);
  plan.map_names.clear();
  if (name || !settings.device_image) plan.map_names = {name.value_or(default_map_name)};
}

Status put_typ_in_place(const BuildPlan& plan) {
  if (plan.typ_source.empty() || plan.typ_source == plan.typ_copy) return {};
  return copy_file(plan.typ_source, plan.typ_copy);
}

// Files of registered maps are links to those in the output folder: a tool that writes into one of them in
// place would change the registered map.
Status give_own_bytes(const std::string& output_folder) {
  for (const std::string& name : list_files(output_folder, {""})) {
    if (!is_map_file(name)) continue;
    if (Status broken = break_hard_link(platform::join(output_folder, name)); !broken.ok()) return broken;
  }
  return {};
}

Status prepare_output(const BuildPlan& plan, const std::string& output_folder, Results& results) {
  if (Status made = make_folder(output_folder); !made.ok()) return made;
  if (!platform::folder_is_writable(output_folder))
    return {output_folder + ": the folder cannot be written to"};
  if (Status cleared = results.clear_the_way(); !cleared.ok()) return cleared;
  if (Status own = give_own_bytes(output_folder); !own.ok()) return own;
  results.remember(output_folder);
  return put_typ_in_place(plan);
}

// A script that carries the error mark may have been halted on purpose.
bool halt_is_accepted(Workspace& workspace, Prompts& prompts, const std::string& script) {
  if (workspace.settings.own_script || workspace.flags.cancel || !contains(script, error_mark)) return true;
  if (prompts.ask(workspace.message(85), Buttons::yes_no_cancel) != Answer::yes) return false;
  workspace.flags.cancel = false;
  return true;
}

void tell_failure(const Workspace& workspace, Prompts& prompts, const Judgement& judgement,
                  const VisibleRunEnd& run) {
  Judgement told = judgement;
  for (const std::string& line : complaints(run.error_text + "\n" + run.output)) {
    if (std::find(told.reasons.begin(), told.reasons.end(), line) == told.reasons.end())
      told.reasons.push_back(line);
  }
  std::string text = failure_explanation(told, workspace.settings);
  if (judgement.verdict == Verdict::nothing) text = workspace.message(15) + "\r\n" + text;
  prompts.tell(text, Icon::critical);
  const std::string errors = workspace.path(file_name::error_stream);
  if (workspace.settings.keep_error_stream && file_has_content(errors)) prompts.show_file(errors);
}

std::string java_log(const Workspace& workspace) {
  return workspace.settings.keep_log ? read_whole_file(workspace.path(file_name::mkgmap_log)) : "";
}

// Judges the run and either keeps or undoes what it left.
StageResult conclude(Workspace& workspace, Prompts& prompts, Progress& progress, Results& results,
                     const VisibleRunEnd& run, BuildReport& report) {
  if (run.cancelled) {
    tell_problem(prompts, results.undo());
    return StageResult::cancelled;
  }
  const Judgement judgement = judge_build(results.expected(), run, java_log(workspace));
  if (judgement.verdict != Verdict::good) tell_failure(workspace, prompts, judgement, run);
  // A map that is all there but was complained of stays for a look at it, unless an older one would be lost.
  const bool stays = judgement.verdict == Verdict::good ||
                     (judgement.verdict == Verdict::doubtful && !results.replace_older());
  if (stays) report.files = results.made();
  if (stays && workspace.settings.own_script) {
    const std::vector<MadeFile> further = results.further_made();
    report.files.insert(report.files.end(), further.begin(), further.end());
  }
  tell_problem(prompts, stays ? results.keep() : results.undo());
  if (judgement.verdict != Verdict::good) return StageResult::failed;
  progress.status(timetaken(run.seconds));
  for (const MadeFile& file : report.files)
    workspace.built_files.push_back(file.path);
  return StageResult::done;
}

// The person wants no further stage after this run; what it made or destroyed is looked at all the same.
void settle_halted(const Workspace& workspace, Prompts& prompts, Results& results, const VisibleRunEnd& run,
                   BuildReport& report) {
  const Judgement judgement = judge_build(results.expected(), run, java_log(workspace));
  const bool good = judgement.verdict == Verdict::good;
  if (good) report.files = results.made();
  if (!good) tell_failure(workspace, prompts, judgement, run);
  tell_problem(prompts, good ? results.keep() : results.undo());
}

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

StageResult run_build(Workspace& workspace, Prompts& prompts, Progress& progress,
                      const BuildServices& services, std::string script, BuildPlan& plan,
                      BuildReport& report) {
  const std::string output_folder = build_output_folder(workspace.settings);
  workspace.built_files.clear();
  Settings wanted = workspace.settings;
  if (wanted.own_script) plan_for_own_script(workspace, plan, wanted);
  Results results(expected_files(wanted, plan, output_folder), further_files(wanted, plan, output_folder));
  if (services.release_files && !services.release_files(workspace, results.all()))
    return StageResult::stopped;
  if (const Status prepared = prepare_output(plan, output_folder, results); !prepared.ok()) {
    tell_problem(prompts, prepared);
    tell_problem(prompts, results.undo());
    return StageResult::failed;
  }
  progress.command(one_option_per_line(script));
  progress.status(workspace.message(39));
  const VisibleRunEnd run = run_script(workspace, prompts, progress, script, [&] {
    progress.fraction(build_fraction(results.images_expected(), results.images_found()));
  });
  if (script == cancelled_text) {
    tell_problem(prompts, results.undo());
    return StageResult::stopped;
  }
  report.command = script;
  report.fid = workspace.settings.fid;
  if (!run.cancelled && !halt_is_accepted(workspace, prompts, script)) {
    settle_halted(workspace, prompts, results, run, report);
    return StageResult::stopped;
  }
  return conclude(workspace, prompts, progress, results, run, report);
}

bool split_is_wanted(const Workspace& workspace, const BuildRequest& request) {
  const Settings& settings = workspace.settings;
  if (is_mp(settings.input) || settings.unsplit_input) return false;
  if (request.split_again) return true;
  if (is_already_split(workspace)) return false;
  // An input that was split before and has changed since is split again, whatever its size.
  return !request.tiles.empty() || request.use_saved_selection ||
         settings.input == settings.last_split_input || input_state(workspace) == SplitState::needs_splitting;
}

// The tiles in the split output folder count only when they were made from this input.
void load_own_tiles(Workspace& workspace, Prompts& prompts) {
  workspace.tiles.clear();
  workspace.saved_selection = false;
  if (is_already_split(workspace)) set_splitterfiles(workspace, prompts);
}

Status apply_selection(Workspace& workspace, const BuildRequest& request) {
  if (!request.use_saved_selection) return select_tiles(workspace.tiles, request.tiles);
  const std::string path = platform::join(split_folder(workspace), argument_name::saved_selection);
  if (Status loaded = loadarg(workspace, path); !loaded.ok()) return loaded;
  workspace.saved_selection = true;
  return {};
}

// What the run entry would refuse in the command, told before the time of a split is spent on it.
Status check_command(const Workspace& workspace) {
  Settings settings = workspace.settings;
  const OptionsText options =
      parse_options_text(settings.use_options_text ? settings.options_text : "", file_name::mkgmap_options);
  const Result<std::string> command = render_command(mkgmap_command(settings, options, {}), native_dialect);
  if (!command.ok()) return {command.error};
  return {prepared_script(command.value, {}, workspace.messages).error};
}

// What can be told before the time of a build is spent on a map that could not be delivered. An own script
// says itself what it makes.
bool delivery_is_possible(Workspace& workspace, Prompts& prompts, const BuildServices& services) {
  const Settings& settings = workspace.settings;
  if (settings.register_map && services.registration_obstacle) {
    const std::string obstacle = services.registration_obstacle(workspace);
    if (!obstacle.empty()) prompts.tell(obstacle, Icon::warning);
    if (!obstacle.empty()) return false;
  }
  if (settings.own_script) return true;
  if (settings.device_image && !check_image_folder(workspace, prompts)) return false;
  return !settings.installer || check_installer(workspace, prompts);
}

StageResult split_first(Workspace& workspace, Prompts& prompts, Progress& progress,
                        const BuildServices& services, BuildReport& report) {
  workspace.tiles.clear();
  if (check_build(workspace, prompts, progress, services, CheckScope::before_split) == CheckResult::stop ||
      !delivery_is_possible(workspace, prompts, services))
    return StageResult::stopped;
  if (const Status sound = check_command(workspace); !sound.ok()) {
    prompts.tell(sound.error, Icon::critical);
    return StageResult::stopped;
  }
  if (!memory_is_accepted(workspace, prompts)) return StageResult::stopped;
  const double start = now();
  const StageResult result = do_splitter(workspace, prompts, progress);
  report.stages.push_back({"split", now() - start});
  return result;
}

// Tiles as a split that has yet to come may make them: enough to plan with.
void plan_tiles_to_come(Workspace& workspace, const BuildRequest& request, PlanFacts& facts) {
  const std::string unchosen = "00000000";
  std::vector<std::string> numbers = request.tiles;
  if (std::find(numbers.begin(), numbers.end(), workspace.settings.first_map_id) == numbers.end())
    numbers.insert(numbers.begin(), workspace.settings.first_map_id);
  if (!request.tiles.empty()) numbers.push_back(unchosen);
  workspace.tiles.clear();
  facts.template_text.clear();
  for (const std::string& number : numbers) {
    workspace.tiles.push_back({number, "", {}, {}, false});
    facts.template_text += argument_block_text({number, "", number + ".o5m"});
  }
}

}  // namespace

namespace {

// A map that cannot be registered is still delivered in every other way; the build then counts as failed.
StageResult register_when_wanted(Workspace& workspace, const BuildServices& services, BuildReport& report) {
  const bool wanted = workspace.settings.register_map && report.result == StageResult::done;
  if (!wanted || !services.register_built) return StageResult::done;
  const double start = now();
  const StageResult result = services.register_built(workspace, report);
  report.stages.push_back({"register", now() - start});
  return result;
}

}  // namespace

BuildReport create_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                       const BuildServices& services, CheckScope scope) {
  const KeptClipFolders clip_folders(workspace.settings);
  BuildReport report;
  if (check_build(workspace, prompts, progress, services, scope) == CheckResult::stop ||
      !delivery_is_possible(workspace, prompts, services))
    return report;
  const ImageDates images_before = image_dates(workspace.settings);
  BuildPlan plan;
  const std::string script = createselectedarg(workspace, prompts, plan);
  if (script == cancelled_text) return report;
  for (const std::string& line : plan.log_lines)
    progress.output(line + "\r\n");
  const double start = now();
  report.result = run_build(workspace, prompts, progress, services, script, plan, report);
  report.built = report.result == StageResult::done;
  report.stages.push_back({"build", now() - start});
  report.tiles = plan.map_names.size();
  const StageResult registered = register_when_wanted(workspace, services, report);
  // A person who sees that a map could not be registered has its image all the same; a script ends there.
  if (registered == StageResult::done || !workspace.script_running)
    deliver(workspace, prompts, progress, images_before, report);
  // After what later stages moved; a list that cannot be written costs "Remove Previous Map" alone.
  if (!workspace.built_files.empty()) {
    if (const Status kept = remember_built_files(workspace); !kept.ok())
      prompts.tell(kept.error, Icon::warning);
  }
  if (report.result == StageResult::done) report.result = registered;
  return report;
}

BuildReport prepare_tiles(Workspace& workspace, Prompts& prompts, Progress& progress,
                          const BuildServices& services, const BuildRequest& request) {
  BuildReport report;
  report.result = StageResult::done;
  if (split_is_wanted(workspace, request)) {
    report.result = split_first(workspace, prompts, progress, services, report);
    if (report.result != StageResult::done) return report;
    workspace.saved_selection = false;
  } else {
    load_own_tiles(workspace, prompts);
  }
  if (const Status selected = apply_selection(workspace, request); !selected.ok()) {
    prompts.tell(selected.error, Icon::warning);
    report.result = StageResult::stopped;
  }
  return report;
}

BuildReport make_map(Workspace& workspace, Prompts& prompts, Progress& progress,
                     const BuildServices& services, const BuildRequest& request) {
  const KeptClipFolders clip_folders(workspace.settings);
  BuildReport tiles = prepare_tiles(workspace, prompts, progress, services, request);
  if (tiles.result != StageResult::done) return tiles;
  const CheckScope scope = tiles.stages.empty() ? CheckScope::all : CheckScope::after_split;
  BuildReport built = create_map(workspace, prompts, progress, services, scope);
  built.stages.insert(built.stages.begin(), tiles.stages.begin(), tiles.stages.end());
  return built;
}

Result<std::string> save_arguments(Workspace& workspace, Prompts& prompts, const BuildRequest& request) {
  load_own_tiles(workspace, prompts);
  if (const Status selected = apply_selection(workspace, request); !selected.ok())
    return failed<std::string>(selected.error);
  if (!check_fid(workspace, prompts)) return failed<std::string>(workspace.message(148));
  BuildPlan plan;
  if (createselectedarg(workspace, prompts, plan) == cancelled_text)
    return failed<std::string>(workspace.message(148));
  if (const Status made = make_folder(build_output_folder(workspace.settings)); !made.ok())
    return failed<std::string>(made.error);
  if (const Status copied = put_typ_in_place(plan); !copied.ok()) return failed<std::string>(copied.error);
  if (const Status saved = save_current_arguments(workspace, plan.command); !saved.ok())
    return failed<std::string>(saved.error);
  return {platform::join(workspace.settings.argument_folder, argument_name::current), ""};
}

Result<std::vector<std::string>> planned_commands(Workspace& workspace, Prompts& prompts,
                                                  const BuildRequest& request) {
  using Commands = std::vector<std::string>;
  Settings& settings = workspace.settings;
  std::vector<Command> commands;
  std::vector<std::string> notes;
  PlanFacts facts;
  if (split_is_wanted(workspace, request)) {
    settings.max_nodes = corrected_max_nodes(settings.max_nodes).value;
    settings.max_areas = corrected_max_areas(settings.max_areas).value;
    Settings with_folder = settings;
    with_folder.split_folder = split_folder(workspace);
    SplitterCommand split = splitter_command(with_folder);
    commands.push_back(std::move(split.command));
    notes = std::move(split.notes);
    facts = gather_plan_facts(workspace);
    plan_tiles_to_come(workspace, request, facts);
  } else {
    load_own_tiles(workspace, prompts);
    facts = gather_plan_facts(workspace);
  }
  if (const Status selected = apply_selection(workspace, request); !selected.ok())
    return failed<Commands>(selected.error);
  if (lenient_number(settings.fid) == 0) new_id(workspace, prompts);
  settings.fid = fid_number(trim(settings.fid));
  if (!is_fid(settings.fid)) return failed<Commands>(workspace.message(70));
  if (const std::string problem = map_id_problem(settings.map_id); !problem.empty())
    return failed<Commands>(problem);
  Result<BuildPlan> plan = plan_build(workspace, facts);
  if (!plan.ok()) return failed<Commands>(plan.error);
  commands.push_back(std::move(plan.value.command));
  notes.insert(notes.end(), plan.value.notes.begin(), plan.value.notes.end());
  for (const std::string& note : notes)
    prompts.tell(note, Icon::warning);
  Result<Commands> lines;
  for (const Command& command : commands) {
    const Result<std::string> line = render_command(command, native_dialect);
    if (!line.ok()) return failed<Commands>(line.error);
    lines.value.push_back(line.value);
  }
  return lines;
}

}  // namespace ferrowen
