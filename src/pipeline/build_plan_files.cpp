// The routines of build_plan.hpp that read and write files.
#include "app/script_run.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/clipped_contours.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/hgt_coverage.hpp"
#include "pipeline/argument_files.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/tile_templates.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_no_argument_files = 4;
constexpr int message_no_file_chosen = 56;
constexpr int message_select_tile = 60;
constexpr int message_no_template = 144;
constexpr int message_corrupt_template = 145;

std::string split_file(const Workspace& workspace, std::string_view name) {
  return platform::join(split_folder(workspace), name);
}

std::string read_tool_text(const std::string& path) { return decode_tool_text(read_whole_file(path)); }

Status write_planned_file(const PlannedFile& file) {
  if (Status made = make_folder(platform::folder_of(file.path)); !made.ok()) return made;
  const Result<std::string> bytes = encode_for(Consumer::java_arguments, file.text, file.path);
  return bytes.ok() ? safe_write(file.path, bytes.value) : Status{bytes.error};
}

Status write_planned_files(const std::vector<PlannedFile>& files) {
  for (const PlannedFile& file : files) {
    const Status written = write_planned_file(file);
    if (written.ok()) continue;
    const bool is_dem = platform::name_of(file.path) == argument_name::dem;
    return {(is_dem ? "Problem with dem.args" + std::string(crlf) : "") + written.error};
  }
  return {};
}

// A saved selection counts as long as it names exactly the tiles that are selected.
bool names_the_selection(const ArgumentFile& saved, const TileList& tiles) {
  const std::vector<std::string> numbers = partial_selection(tiles);
  return !numbers.empty() && saved.blocks.size() == numbers.size() &&
         small_template(saved, numbers).blocks.size() == numbers.size();
}

void gather_saved_selection(const Workspace& workspace, PlanFacts& facts) {
  if (!workspace.saved_selection) return;
  const std::string path = split_file(workspace, argument_name::saved_selection);
  std::string text = read_tool_text(path);
  if (!names_the_selection(parse_argument_file(text), workspace.tiles)) return;
  facts.argument_file = path;
  facts.argument_file_text = std::move(text);
}

std::vector<std::string> contour_files(const Workspace& workspace) {
  const Settings& settings = workspace.settings;
  const std::string land = read_whole_file(workspace.path(file_name::land_cells));
  const std::vector<std::string> cells = coverage_of_selection(workspace.tiles, land);
  std::vector<std::string> folders = searched_contour_folders(settings);
  for (std::string& folder : folders)
    folder = platform::absolute(folder);
  const std::string clips = current_clip_folder(settings);
  if (settings.clip_contours)
    return find_clipped_contours(cells, clips.empty() ? "" : platform::absolute(clips), folders).files;
  return find_contour_files(cells, folders).found;
}

Result<ArgumentFile> whole_template(const Workspace& workspace) {
  ArgumentFile whole = parse_argument_file(read_tool_text(split_file(workspace, template_name)));
  if (whole.blocks.empty()) return failed<ArgumentFile>(workspace.message(message_no_argument_files));
  return {std::move(whole), ""};
}

Status write_selection(const Workspace& workspace, std::string_view name) {
  if (selected_count(workspace.tiles) == 0) return {workspace.message(message_select_tile)};
  const Result<ArgumentFile> whole = whole_template(workspace);
  if (!whole.ok()) return {whole.error};
  const ArgumentFile chosen = selected_template(whole.value, workspace.tiles);
  return write_planned_file({split_file(workspace, name), argument_file_text(chosen)});
}

}  // namespace

PlanFacts gather_plan_facts(const Workspace& workspace) {
  PlanFacts facts;
  facts.template_text = read_tool_text(split_file(workspace, template_name));
  gather_saved_selection(workspace, facts);
  facts.areas_poly_exists = file_has_content(split_file(workspace, areas_poly_name));
  facts.typ_is_in_place = same_file(typ_in_output_folder(workspace.settings),
                                    platform::absolute(std::string(trim(workspace.settings.typ))));
  if (workspace.settings.contours && builds_from_tiles(workspace))
    facts.contour_files = contour_files(workspace);
  for (const std::string& folder : searched_hgt_folders(workspace.settings)) {
    if (holds_heights(folder)) facts.hgt_folders.push_back(platform::absolute(folder));
  }
  return facts;
}

std::string createselectedarg(const Workspace& workspace, Prompts& prompts, BuildPlan& plan) {
  Result<BuildPlan> planned = plan_build(workspace, gather_plan_facts(workspace));
  Result<std::string> line{"", planned.error};
  if (line.ok()) line = render_command(planned.value.command, native_dialect);
  if (line.ok()) {
    plan = std::move(planned.value);
    for (const std::string& note : plan.notes)
      prompts.tell(note, Icon::warning);
    line.error = write_planned_files(plan.files).error;
  }
  if (line.ok()) return line.value;
  prompts.tell(line.error, Icon::critical);
  return cancelled_text;
}

Status create_smalltemparg(const Workspace& workspace) {
  return write_selection(workspace, argument_name::selected);
}

Status save_newtemplate(const Workspace& workspace) {
  const Result<ArgumentFile> whole = whole_template(workspace);
  if (!whole.ok()) return {whole.error};
  const Result<ArgumentFile> renumbered =
      renumbered_template(selected_template(whole.value, workspace.tiles),
                          whole.value.blocks.front().map_name, trim(workspace.settings.map_id));
  if (!renumbered.ok()) return {renumbered.error};
  return write_planned_file(
      {split_file(workspace, argument_name::renumbered), argument_file_text(renumbered.value)});
}

Status save_selection(const Workspace& workspace) {
  return write_selection(workspace, argument_name::saved_selection);
}

Status loadarg(Workspace& workspace, const std::string& path) {
  if (trim(path).empty()) return {workspace.message(message_no_file_chosen)};
  const Result<std::string> bytes = read_file(path);
  if (!bytes.ok()) return {workspace.message(message_no_template) + bytes.error};
  const ArgumentFile file = parse_argument_file(decode_tool_text(bytes.value));
  if (file.blocks.empty()) return {workspace.message(message_corrupt_template) + std::string(crlf) + path};
  std::vector<std::string> numbers;
  for (const ArgumentBlock& block : file.blocks)
    numbers.push_back(block.map_name);
  return select_tiles(workspace.tiles, numbers);
}

Status save_current_arguments(const Workspace& workspace, const Command& command) {
  const std::string path =
      platform::join(platform::absolute(workspace.settings.argument_folder), argument_name::current);
  const Result<std::string> text = current_arguments_text(command);
  const Status saved = text.ok() ? write_planned_file({path, text.value}) : Status{text.error};
  if (saved.ok()) return {};
  return {"Error saving " + path + std::string(crlf) + saved.error};
}

}  // namespace ferrowen
