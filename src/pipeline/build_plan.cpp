#include "pipeline/build_plan.hpp"

#include "base/text.hpp"
#include "elevation/dem_arguments.hpp"
#include "pipeline/argument_files.hpp"
#include "pipeline/mkgmap_command.hpp"
#include "pipeline/tile_templates.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t map_id_digits = 8;
constexpr int message_no_argument_files = 4;
constexpr int message_no_input = 59;
constexpr int message_no_target_folder = 65;
constexpr int message_map_id = 84;

// Tools run in folders of their own: no path of a command or an argument file may depend on the current one.
Settings with_absolute_paths(const Workspace& workspace) {
  const Settings& settings = workspace.settings;
  Settings absolute = settings;
  absolute.output_folder = platform::absolute(build_output_folder(settings));
  for (std::string* path : {&absolute.input, &absolute.mkgmap_jar, &absolute.styles_folder, &absolute.typ})
    *path = platform::absolute(std::string(trim(*path)));
  absolute.split_folder = split_folder(workspace);
  absolute.map_id = trim(settings.map_id);
  return absolute;
}

bool same_path(std::string_view left, std::string_view right) {
  return platform::names_ignore_case ? equal_ignoring_case(left, right) : left == right;
}

std::vector<std::string> map_names_of(const ArgumentFile& file) {
  std::vector<std::string> names;
  names.reserve(file.blocks.size());
  for (const ArgumentBlock& block : file.blocks)
    names.push_back(block.map_name);
  return names;
}

class Planner {
 public:
  Planner(const Workspace& workspace, const PlanFacts& facts)
      : m_workspace(workspace), m_facts(facts), m_settings(with_absolute_paths(workspace)) {
    if (!m_settings.use_options_text) return;
    const std::string_view set = trim(m_settings.option_set);
    m_options = parse_options_text(m_settings.options_text, set.empty() ? file_name::mkgmap_options : set);
    m_plan.notes = m_options.warnings;
  }

  Result<BuildPlan> plan() {
    const auto steps = {&Planner::check_settings, &Planner::plan_input, &Planner::plan_contours,
                        &Planner::plan_dem, &Planner::plan_typ};
    for (const auto step : steps) {
      if (Status done = (this->*step)(); !done.ok()) return failed<BuildPlan>(done.error);
    }
    m_plan.command = mkgmap_command(m_settings, m_options, m_files);
    return {std::move(m_plan), ""};
  }

 private:
  const Workspace& m_workspace;
  const PlanFacts& m_facts;
  Settings m_settings;
  OptionsText m_options;
  CommandFiles m_files;
  BuildPlan m_plan;
  std::vector<std::string> m_split_names;  // map names of the whole split as this build counts them

  [[nodiscard]] std::string in_split_folder(std::string_view name) const {
    return platform::join(m_settings.split_folder, name);
  }

  [[nodiscard]] Status stop_with(int message) const { return {m_workspace.message(message)}; }

  // Plans an argument file and returns its path for the command.
  std::string add_file(std::string path, std::string text) {
    m_plan.files.push_back({path, std::move(text)});
    return path;
  }

  Status check_settings() {
    if (m_settings.output_folder.empty()) return stop_with(message_no_target_folder);
    if (m_settings.map_id.size() != map_id_digits || !is_digits(m_settings.map_id))
      return stop_with(message_map_id);
    return {};
  }

  Status plan_input() {
    Status planned = builds_from_tiles(m_workspace) ? plan_tiles() : plan_unsplit();
    m_plan.log_lines.push_back("arg:" + m_files.tiles);
    return planned;
  }

  Status plan_unsplit() {
    if (m_settings.input.empty()) return stop_with(message_no_input);
    const std::string description(trim(m_settings.description));
    for (const std::string& value : {description, m_settings.input}) {
      if (Status checked = check_argument_value(value); !checked.ok()) return checked;
    }
    m_plan.map_names = {m_settings.map_id};
    const ArgumentFile file = unsplit_template(m_settings.map_id, description, m_settings.input);
    const std::string path = platform::absolute(m_workspace.path(argument_name::unsplit));
    m_files.tiles = add_file(path, argument_file_text(file));
    return {};
  }

  Status plan_tiles() {
    const ArgumentFile whole = parse_argument_file(m_facts.template_text);
    ArgumentFile used = selected_template(whole, m_workspace.tiles);
    if (used.blocks.empty()) return stop_with(message_no_argument_files);
    note_tiles_without_block(whole);
    m_files.tiles = in_split_folder(template_name);
    if (!m_facts.argument_file.empty()) {
      used = parse_argument_file(m_facts.argument_file_text);
      m_files.tiles = m_facts.argument_file;
    } else if (!partial_selection(m_workspace.tiles).empty()) {
      m_files.tiles = add_file(in_split_folder(argument_name::selected), argument_file_text(used));
    }
    return number_tiles(whole, std::move(used));
  }

  Status number_tiles(ArgumentFile whole, ArgumentFile used) {
    if (needs_renumbering(whole, m_settings.map_id)) {
      const std::string first = whole.blocks.front().map_name;
      Result<ArgumentFile> all = renumbered_template(whole, first, m_settings.map_id);
      if (!all.ok()) return {all.error};
      Result<ArgumentFile> some = renumbered_template(used, first, m_settings.map_id);
      if (!some.ok()) return {some.error};
      whole = std::move(all.value);
      used = std::move(some.value);
      m_files.tiles = add_file(in_split_folder(argument_name::renumbered), argument_file_text(used));
    }
    m_split_names = map_names_of(whole);
    m_plan.map_names = map_names_of(used);
    return {};
  }

  void note_tiles_without_block(const ArgumentFile& whole) {
    const std::vector<std::string> missing = tiles_without_block(whole, m_workspace.tiles);
    if (missing.empty()) return;
    m_plan.notes.push_back("Not in " + in_split_folder(template_name) + ": " + join_texts(missing, ", "));
  }

  Status plan_contours() {
    if (!m_settings.contours) return {};
    if (m_facts.contour_files.empty() || m_split_names.empty()) {
      m_plan.notes.emplace_back("Contours not added.");
      return {};
    }
    Result<std::vector<std::string>> names = free_map_names(m_split_names, m_facts.contour_files.size());
    if (!names.ok()) return {names.error};
    for (const std::string& file : m_facts.contour_files) {
      if (Status checked = check_argument_value(file); !checked.ok()) return checked;
    }
    m_plan.map_names.insert(m_plan.map_names.end(), names.value.begin(), names.value.end());
    const ContourArguments contours{m_facts.contour_files, names.value, map_is_transparent(),
                                    map_draw_priority()};
    m_files.contours = add_file(in_split_folder(argument_name::contours), contour_arguments_text(contours));
    m_plan.log_lines.push_back("arg:" + m_files.contours);
    return {};
  }

  // What holds for the tiles behind the contours: the free options have the last word.
  [[nodiscard]] bool map_is_transparent() const {
    bool transparent = m_settings.transparent;
    for (const Argument& free_option : m_options.options) {
      if (option_name(free_option) == "--transparent") transparent = true;
      if (option_name(free_option) == "--no-transparent") transparent = false;
    }
    return transparent;
  }

  [[nodiscard]] int map_draw_priority() const {
    int priority = m_settings.draw_priority;
    for (const Argument& free_option : m_options.options) {
      if (option_name(free_option) == "--draw-priority")
        priority = static_cast<int>(lenient_whole_number(free_option.value));
    }
    return priority;
  }

  Status plan_dem() {
    if (!m_settings.dem) return {};
    if (m_facts.hgt_folders.empty()) return {"No hgt files found . Please untick DEM"};
    for (const std::string& folder : m_facts.hgt_folders) {
      if (Status checked = check_argument_value(folder); !checked.ok()) return checked;
      if (contains(folder, ","))
        return {
            "The map compiler takes a comma for the end of a folder name. Please rename the HGT folder: " +
            folder};
    }
    const bool use_outline = builds_from_tiles(m_workspace) && m_facts.areas_poly_exists;
    const std::string outline = use_outline ? in_split_folder(areas_poly_name) : "";
    if (Status checked = check_argument_value(outline); !checked.ok()) return checked;
    const std::string text = dem_arguments_text(m_settings.dem_options, m_options.dem_options,
                                                join_texts(m_facts.hgt_folders, ","), outline);
    m_files.dem = add_file(in_split_folder(argument_name::dem), text);
    m_plan.log_lines.push_back("arg:" + m_files.dem);
    return {};
  }

  // mkgmap writes its patched copy beside the TYP that it is given, so it gets one in the output folder.
  Status plan_typ() {
    if (!m_settings.use_typ || m_settings.typ.empty()) return {};
    m_plan.typ_copy = typ_in_output_folder(m_settings);
    if (same_path(m_plan.typ_copy, m_settings.typ)) m_plan.typ_copy = m_settings.typ;
    m_plan.typ_source = m_facts.typ_is_in_place ? m_plan.typ_copy : m_settings.typ;
    m_files.typ = m_plan.typ_copy;
    return {};
  }
};

}  // namespace

std::string typ_in_output_folder(const Settings& settings) {
  const std::string folder = platform::absolute(build_output_folder(settings));
  return platform::join(folder, platform::name_of(trim(settings.typ)));
}

bool builds_from_tiles(const Workspace& workspace) {
  return !workspace.tiles.empty() && !is_mp(workspace.settings.input) && !workspace.settings.unsplit_input;
}

Result<BuildPlan> plan_build(const Workspace& workspace, const PlanFacts& facts) {
  return Planner(workspace, facts).plan();
}

}  // namespace ferrowen
