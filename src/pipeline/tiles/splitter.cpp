#include "pipeline/tiles/splitter.hpp"

#include <algorithm>

#include "app/script_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/split_files.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_cannot_find = 35, message_split_map = 41, message_please_add = 59;
constexpr int message_locate_splitter = 90, message_no_files = 95, message_continue = 171;
constexpr int message_close_window = 205, message_map_id_digits = 222, message_no_mp = 235,
              message_no_java = 109;
constexpr double least_max_nodes = 100000;
constexpr std::size_t map_id_digits = 8;
constexpr std::string_view out_of_memory = "OutOfMemoryError";

// The progress bar, in the units that its rules are written in.
constexpr double bar_width = 9000, bar_reserve = 300, bar_start = 15;

bool refuse(Prompts& prompts, const std::string& text) {
  prompts.tell(text, Icon::warning);
  return false;
}

std::string settings_page() { return std::string(page_name(Page::splitter)); }

bool input_can_be_split(const Workspace& workspace, Prompts& prompts) {
  const std::string& input = workspace.settings.input;
  if (is_mp(input)) return refuse(prompts, workspace.message(message_no_mp));
  if (trim(input).empty()) return refuse(prompts, workspace.message(message_please_add));
  if (!file_exists(input)) return refuse(prompts, workspace.message(message_cannot_find) + input);
  return true;
}

bool wants_new_split(const Workspace& workspace, Prompts& prompts) {
  if (!is_already_split(workspace)) return true;
  const std::string question = "File '" + platform::name_of(workspace.settings.input) +
                               "' already split.\r\nThis might not be the latest version.\r\nSplit again?";
  return prompts.ask(question) == Answer::yes;
}

// Size of the same data as a PBF file, which the memory table is made for.
std::uint64_t pbf_size(const std::string& input) {
  const std::uint64_t size = file_size(input);
  const InputKind kind = input_kind(input);
  constexpr std::uint64_t times_as_large_in_xml = 10;
  return kind == InputKind::osm ? size / times_as_large_in_xml : size;
}

bool java_is_there(const Settings& settings) {
  return settings.java.empty() ? !platform::find_program("java").empty() : file_exists(settings.java);
}

// An input that bears the name of a tile and lies where the tiles are written would be overwritten.
bool is_in_the_way(const Workspace& workspace) {
  const std::string input = platform::absolute(workspace.settings.input);
  return is_tile_name(platform::name_of(input)) &&
         same_file(platform::folder_of(input), split_folder(workspace));
}

bool may_run(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (const Status input = check_input(settings.input, workspace.messages); !input.ok())
    return refuse(prompts, input.error);
  if (is_in_the_way(workspace))
    return refuse(prompts, "'" + settings.input +
                               "' would be overwritten: it has the name of a tile and lies in the folder for "
                               "the tiles. Please move or rename it.");
  if (settings.splitter_jar.empty() || !file_exists(settings.splitter_jar))
    return refuse(prompts, workspace.message(message_locate_splitter));
  if (const Status memory = check_memory(memory_of_java_options(settings.java_options)); !memory.ok())
    return refuse(prompts, memory.error);
  const std::string_view map_id = trim(settings.first_map_id);
  if (map_id.size() != map_id_digits || !is_digits(map_id))
    return refuse(prompts, workspace.message(message_map_id_digits));
  if (!java_is_there(settings)) return refuse(prompts, workspace.message(message_no_java));
  return true;
}

void correct(std::string& setting, LimitCorrection correction, const Workspace& workspace, Prompts& prompts) {
  setting = std::move(correction.value);
  if (correction.message != 0) prompts.tell(workspace.message(correction.message), Icon::warning);
}

void correct_limits(Workspace& workspace, Prompts& prompts) {
  Settings& settings = workspace.settings;
  correct(settings.max_nodes, corrected_max_nodes(settings.max_nodes), workspace, prompts);
  correct(settings.max_areas, corrected_max_areas(settings.max_areas), workspace, prompts);
}

// The command as a line of the console script; the notes are told. "" after an error.
std::string command_line(const Workspace& workspace, Prompts& prompts) {
  Settings settings = workspace.settings;  // the script runs in another folder: whole paths only
  settings.input = platform::absolute(settings.input);
  settings.splitter_jar = platform::absolute(settings.splitter_jar);
  settings.split_folder = split_folder(workspace);
  const SplitterCommand command = splitter_command(settings);
  for (const std::string& one : command.notes)
    prompts.tell(one, Icon::information);
  const Result<std::string> line = render_command(command.command, native_dialect);
  if (!line.ok()) prompts.tell(line.error, Icon::critical);
  return line.value;
}

// splittertim: follows the tiles that appear in the split output folder.
void splittertim(Workspace& workspace, Progress& progress) {
  const TileCount count = count_tiles(split_folder(workspace));
  workspace.expected_tiles = count.expected;
  progress.fraction(split_fraction(count.expected, count.finished));
}

bool split_is_good(const Workspace& workspace, const VisibleRunEnd& end) {
  const std::string folder = split_folder(workspace);
  const bool ended_well = !end.given_up && end.exit_status == 0 && !contains(end.error_text, out_of_memory) &&
                          !contains(end.output, out_of_memory);
  return ended_well && count_tiles(folder).complete() && !has_temporary_files(folder);
}

std::string failure_text(const Workspace& workspace, const VisibleRunEnd& end) {
  std::string text = workspace.message(message_no_files);
  const std::string told = end.problem.empty() ? explanation(end.error_text, end.output) : end.problem;
  if (!told.empty()) text += "\r\n" + told;
  if (contains(end.error_text + end.output, out_of_memory))
    text += "\r\nPlease give Java more memory: Settings, " + settings_page() + ".";
  return text;
}

void tell_error(Prompts& prompts, const Status& status) {
  if (!status.ok()) prompts.tell(status.error, Icon::critical);
}

StageResult give_up(Workspace& workspace, Prompts& prompts, SplitFiles& files, StageResult result) {
  workspace.expected_tiles = 0;
  tell_error(prompts, files.bring_back());
  return result;
}

StageResult finish(Workspace& workspace, Prompts& prompts, Progress& progress, SplitFiles& files) {
  tell_error(prompts, files.accept());
  workspace.settings.last_split_input = platform::absolute(workspace.settings.input);
  const std::size_t count = count_tiles(split_folder(workspace)).finished;
  set_splitterfiles(workspace, prompts);
  if (count == 1)
    prompts.tell("only 1 file created. Mapsource may crash when map is uploaded.", Icon::warning);
  else
    progress.status(std::to_string(count) + " mapfiles");
  return StageResult::done;
}

// From the command to the judged result. Afterwards the split output folder holds one whole split.
StageResult run_split(Workspace& workspace, Prompts& prompts, Progress& progress, std::string script) {
  SplitFiles files(split_folder(workspace));
  if (const Status moved = files.move_old_aside(); !moved.ok()) {
    prompts.tell(moved.error, Icon::critical);
    return StageResult::stopped;
  }
  workspace.expected_tiles = 0;
  const VisibleRunEnd end =
      run_script(workspace, prompts, progress, script, [&] { splittertim(workspace, progress); });
  if (script == cancelled_text) return give_up(workspace, prompts, files, StageResult::stopped);
  if (end.cancelled) return give_up(workspace, prompts, files, StageResult::cancelled);
  if (!split_is_good(workspace, end)) {
    const StageResult result = give_up(workspace, prompts, files, StageResult::failed);
    prompts.tell(failure_text(workspace, end), Icon::critical);
    return result;
  }
  return finish(workspace, prompts, progress, files);
}

}  // namespace

bool memory_is_accepted(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (const Status memory = check_memory(memory_of_java_options(settings.java_options)); !memory.ok())
    return refuse(prompts, memory.error);
  const int least = least_memory_for_split(pbf_size(settings.input));
  const int given = java_memory(memory_of_java_options(settings.java_options));
  if (given == 0 || given >= least) return true;
  return prompts.ask("Current min settings:" + std::to_string(least) + "mb --> " + settings_page() + "\r\n" +
                         workspace.message(message_continue),
                     Buttons::yes_no, Icon::warning) == Answer::yes;
}

StageResult start_split(Workspace& workspace, Prompts& prompts, Progress& progress) {
  if (!input_can_be_split(workspace, prompts) || !wants_new_split(workspace, prompts) ||
      !memory_is_accepted(workspace, prompts))
    return StageResult::stopped;
  if (lenient_number(workspace.settings.max_nodes) < least_max_nodes)
    prompts.tell("Set Maxnodes >100,000", Icon::warning);
  progress.command("");
  const bool ask = !workspace.settings.confirmations_off;
  if (!close_dos(ask, workspace.message(message_close_window), prompts, progress))
    return StageResult::stopped;
  return do_splitter(workspace, prompts, progress);
}

StageResult do_splitter(Workspace& workspace, Prompts& prompts, Progress& progress) {
  if (!may_run(workspace, prompts)) return StageResult::stopped;
  correct_limits(workspace, prompts);
  const std::string script = command_line(workspace, prompts);
  if (script.empty()) return StageResult::stopped;
  progress.command(one_option_per_line(script));
  progress.status(workspace.message(message_split_map));
  workspace.splitting = true;
  const StageResult result = run_split(workspace, prompts, progress, script);
  workspace.splitting = false;
  progress.fraction(split_fraction(0, 0));
  return result;
}

double split_fraction(std::size_t expected_tiles, std::size_t finished_tiles) {
  if (expected_tiles == 0) return bar_start / bar_width;
  if (2 * finished_tiles < expected_tiles) return 1.0 / 3;
  const double share =
      static_cast<double>(std::min(finished_tiles, expected_tiles)) / static_cast<double>(expected_tiles);
  return share * (bar_width - bar_reserve) / bar_width;
}

}  // namespace ferrowen
