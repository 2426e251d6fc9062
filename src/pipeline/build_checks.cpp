#include "pipeline/build_checks.hpp"

#include <algorithm>

#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_style.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/identifiers.hpp"
#include "pipeline/mkgmap_command.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr std::uint64_t bytes_of_a_megabyte = 1000ULL * 1000;
constexpr std::uint64_t large_input = 100 * bytes_of_a_megabyte;
constexpr long reset_fid = 100;
constexpr std::size_t typ_mark_offset = 2;
constexpr std::string_view typ_mark = "GARMIN TYP";

CheckResult stop(Prompts& prompts, const std::string& text) {
  prompts.tell(text, Icon::warning);
  return CheckResult::stop;
}

bool wants_elevation(const Settings& settings) { return settings.dem || settings.contours; }

// Megabytes that Java may use: the setting, or the quarter of the machine that Java takes by itself.
long memory_in_effect(const Settings& settings) {
  const std::string memory = memory_of_java_options(settings.java_options);
  return trim(memory).empty() ? static_cast<long>(platform::memory_megabytes() / 4)
                              : lenient_whole_number(memory);
}

bool memory_is_small_for(const Settings& settings, std::uint64_t input_bytes) {
  if (!check_memory(memory_of_java_options(settings.java_options)).ok())
    return false;  // told by another check
  const long memory = memory_in_effect(settings);
  return memory > 0 && memory < least_memory_for_split(input_bytes);
}

bool is_typ_file(const std::string& path) {
  if (ends_with_ignoring_case(path, ".txt")) return file_has_content(path);
  const std::string bytes = read_whole_file(path);
  return bytes.size() > typ_mark_offset &&
         std::string_view(bytes).substr(typ_mark_offset).starts_with(typ_mark);
}

CheckResult check_style_folder(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (settings.style == "default") return CheckResult::go_on;
  if (!folder_exists(settings.styles_folder))
    return stop(prompts, workspace.message(63) + settings.styles_folder);
  const std::string style = platform::join(settings.styles_folder, settings.style);
  if (!folder_exists(style)) return stop(prompts, workspace.message(62) + "\r\n" + style);
  const std::string version = platform::join(style, "version");
  if (trim(read_whole_file(version)).empty()) return stop(prompts, workspace.message(64) + version);
  return CheckResult::go_on;
}

// An input that is built as it is goes through mkgmap in one piece.
CheckResult ask_about_size(const Workspace& workspace, Prompts& prompts) {
  const std::uint64_t size = file_size(workspace.settings.input);
  if (builds_from_tiles(workspace) || !memory_is_small_for(workspace.settings, size))
    return CheckResult::go_on;
  const std::string question = std::to_string(size / bytes_of_a_megabyte) + "mb --> " +
                               std::string(page_name(Page::splitter)) + ", 'split if ' memory is small.\r\n" +
                               workspace.message(171);
  return prompts.ask(question) == Answer::yes ? CheckResult::go_on : CheckResult::stop;
}

}  // namespace

CheckResult check_outputs_chosen(const Workspace& workspace, Prompts& prompts) {
  if (workspace.settings.device_image || workspace.settings.register_map) return CheckResult::go_on;
  return stop(prompts, workspace.message(72) + workspace.message(42));
}

CheckResult check_clip_folder(Workspace& workspace, Prompts& prompts) {
  Settings& settings = workspace.settings;
  if (!settings.contours || !settings.clip_contours) return CheckResult::go_on;
  const std::string folder = current_clip_folder(settings);
  if (!folder_exists(folder)) return stop(prompts, "Clip folder (" + folder + ") does not exist.");
  if (!list_files(folder, {".pbf"}).empty()) return CheckResult::go_on;
  if (prompts.ask("Clip folder" + folder + " contains no files.\r\nUse default folder?") != Answer::yes)
    return CheckResult::go_on;
  if (!use_clip_folder(settings, workspace.path(default_clip_folder)))
    return stop(prompts, "Check the 5 clip folders you have specified");
  return CheckResult::go_on;
}

CheckResult check_names(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (wants_elevation(settings)) {
    for (const std::string& name : list_files(current_hgt_folder(settings), {".hgt"}))
      if (!is_hgt_name(upper_ascii(name.substr(0, name.size() - 4)) + ".hgt"))
        return stop(prompts, name + workspace.message(241));
  }
  if (trim(settings.map_name).empty()) return stop(prompts, workspace.message(172));
  const std::string problem = overview_name_problem(settings.overview_name, workspace.message(33));
  return problem.empty() ? CheckResult::go_on : stop(prompts, problem);
}

CheckResult check_mp_elevation(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (!is_mp(settings.input) || !wants_elevation(settings)) return CheckResult::go_on;
  return stop(prompts, workspace.message(folder_exists(current_hgt_folder(settings)) ? 236 : 237));
}

CheckResult check_tiles(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (is_mp(settings.input) || settings.unsplit_input) return CheckResult::go_on;
  if (workspace.tiles.empty()) {
    const bool needed = workspace.split_state == SplitState::needs_splitting ||
                        input_state(workspace) == SplitState::needs_splitting;
    if (!needed) return CheckResult::go_on;
    return stop(prompts, workspace.message(61) + settings.input);
  }
  if (workspace.saved_selection && selected_count(workspace.tiles) == 0)
    return stop(prompts, "Please select tile(s)");
  if (!file_has_content(platform::join(split_folder(workspace), template_name)))
    return stop(prompts, workspace.message(4));
  return CheckResult::go_on;
}

CheckResult check_style(Workspace& workspace, Prompts& prompts, Progress& progress,
                        const BuildServices& services, CheckScope scope) {
  if (trim(workspace.settings.style).empty()) return stop(prompts, workspace.message(62));
  progress.status(workspace.message(178));
  services.collect_registered(workspace);
  if (scope == CheckScope::all && ask_about_size(workspace, prompts) == CheckResult::stop)
    return CheckResult::stop;
  return check_style_folder(workspace, prompts);
}

CheckResult check_typ_and_tools(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (settings.use_typ && trim(settings.typ).empty() && prompts.ask(workspace.message(69)) != Answer::yes)
    return CheckResult::stop;
  if (settings.use_typ && !trim(settings.typ).empty() && !is_typ_file(settings.typ))
    return stop(prompts, workspace.message(66) + "\r\n" + settings.typ);
  if (trim(settings.mkgmap_jar).empty()) return stop(prompts, workspace.message(46));
  if (!file_exists(settings.mkgmap_jar))
    return stop(prompts, "Please locate:'\r\n" + settings.mkgmap_jar + "'");
  if (workspace.java_version == java_not_installed) return stop(prompts, workspace.message(109));
  const Status memory = check_memory(memory_of_java_options(settings.java_options));
  return memory.ok() ? CheckResult::go_on : stop(prompts, memory.error);
}

CheckResult check_input_map(const Workspace& workspace, Prompts& prompts) {
  const std::string& input = workspace.settings.input;
  if (input.empty()) return stop(prompts, workspace.message(59));
  if (!file_exists(input)) return stop(prompts, workspace.message(68) + "\r\n" + input);
  if (builds_from_tiles(workspace)) return CheckResult::go_on;
  const Status sound = check_input(input, workspace.messages);
  return sound.ok() ? CheckResult::go_on : stop(prompts, sound.error);
}

CheckResult check_identity(Workspace& workspace, Prompts& prompts, Progress& progress,
                           const BuildServices& services) {
  Settings& settings = workspace.settings;
  const std::string fid(trim(settings.fid));
  const double number = lenient_number(fid);
  if (!settings.fid_locked && (number < 0 || number > highest_fid)) {
    prompts.tell(workspace.message(140), Icon::warning);
    settings.fid = std::to_string(reset_fid);
  }
  if (!check_fid(workspace, prompts, services.collect_registered)) return CheckResult::stop;
  if (!check_map_id(workspace, prompts)) return CheckResult::stop;
  if (settings.use_typ && !settings.typ.empty()) progress.status(workspace.message(71) + settings.typ);
  return CheckResult::go_on;
}

CheckResult check_elevation(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (settings.contours && workspace.tiles.empty()) return stop(prompts, workspace.message(239));
  if (settings.dem && workspace.tiles.empty() && !is_mp(settings.input))
    return stop(prompts, workspace.message(238));
  if (settings.contours) {
    check_contour_files(workspace, prompts);
    if (!draws_contours(settings))
      prompts.tell("The style '" + settings.style + "' has no rules for contour lines: none will be drawn.",
                   Icon::warning);
  }
  return !settings.dem || check_dem_cells(workspace, prompts) ? CheckResult::go_on : CheckResult::stop;
}

CheckResult check_transparency(const Workspace& workspace, Prompts& prompts) {
  if (workspace.settings.transparent && workspace.settings.routing)
    prompts.tell(workspace.message(240), Icon::warning);
  return CheckResult::go_on;
}

CheckResult check_input_size(const Workspace& workspace, Prompts& prompts) {
  const std::uint64_t size = file_size(workspace.settings.input);
  if (size >= large_input && memory_is_small_for(workspace.settings, size))
    prompts.tell("Consider increasing memory.", Icon::warning);
  return CheckResult::go_on;
}

CheckResult check_build(Workspace& workspace, Prompts& prompts, Progress& progress,
                        const BuildServices& services, CheckScope scope) {
  struct Check {
    bool needs_tiles;
    std::function<CheckResult()> make;
  };
  const std::vector<Check> checks = {
      {false, [&] { return check_outputs_chosen(workspace, prompts); }},
      {false, [&] { return check_clip_folder(workspace, prompts); }},
      {false, [&] { return check_names(workspace, prompts); }},
      {false, [&] { return check_mp_elevation(workspace, prompts); }},
      {true, [&] { return check_tiles(workspace, prompts); }},
      {false, [&] { return check_style(workspace, prompts, progress, services, scope); }},
      {false, [&] { return check_typ_and_tools(workspace, prompts); }},
      {false, [&] { return check_input_map(workspace, prompts); }},
      {false, [&] { return check_identity(workspace, prompts, progress, services); }},
      {true, [&] { return check_elevation(workspace, prompts); }},
      {false, [&] { return check_transparency(workspace, prompts); }},
      {false, [&] { return check_input_size(workspace, prompts); }},
  };
  const bool all_passed = std::all_of(checks.begin(), checks.end(), [&](const Check& check) {
    const bool left_out = (scope == CheckScope::before_split && check.needs_tiles) ||
                          (scope == CheckScope::after_split && !check.needs_tiles);
    return left_out || check.make() == CheckResult::go_on;
  });
  return all_passed ? CheckResult::go_on : CheckResult::stop;
}

}  // namespace ferrowen
