#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/map_area.hpp"
#include "cli/run_options.hpp"
#include "elevation/contour_clip.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/contour_script.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr int message_label = 241;

Status take_numbers(const ContoursArguments& arguments, ContourRequest& request) {
  if (arguments.interval) {
    const std::optional<long> interval = exact_whole_number(*arguments.interval);
    if (!interval) return {"--interval: '" + *arguments.interval + "' is not a number of metres."};
    request.interval = *interval;
  }
  if (arguments.tolerance) {
    const std::optional<double> tolerance = exact_number(*arguments.tolerance);
    if (!tolerance || *tolerance < 0)
      return {"--tolerance: '" + *arguments.tolerance + "' is not a number from 0."};
    request.tolerance = *tolerance;
  }
  return {};
}

// The height file of a cell as it is listed: where it is, or where it should be.
std::string listed_file(const Settings& settings, const std::string& name) {
  const CellFiles files = find_cell_files({name}, searched_hgt_folders(settings), CellFile::hgt);
  return files.found.empty() ? platform::join(current_hgt_folder(settings), name) : files.found.front();
}

Status take_cells(const Workspace& workspace, const std::vector<std::string>& cells,
                  ContourRequest& request) {
  for (const std::string& cell : cells) {
    const std::string name = cell_of_file(ends_with_ignoring_case(cell, ".hgt") ? cell : cell + ".hgt");
    if (name.empty()) return {cell + workspace.message(message_label)};
    request.height_files.push_back(listed_file(workspace.settings, name));
  }
  return {};
}

// Nothing left to do is not an error.
bool take_needed_cells(Session& session, ContourRequest& request) {
  Workspace& workspace = session.workspace;
  if (!request.overwrite && contour_cells(workspace, session.prompts).all_made)
    return !chkcontours(workspace, session.prompts);
  std::vector<std::string> names = needed_cells(workspace, session.prompts);
  if (!request.overwrite)
    names = find_contour_files(names, searched_contour_folders(workspace.settings)).missing;
  for (const std::string& name : names)
    request.height_files.push_back(listed_file(workspace.settings, name));
  return true;
}

ExitStatus make(Session& session, const ContoursArguments& arguments) {
  Workspace& workspace = session.workspace;
  ContourRequest request;
  request.interval = contour_interval(workspace.settings);
  request.tolerance = workspace.settings.contour_tolerance;
  request.overwrite = arguments.overwrite;
  if (const Status numbers = take_numbers(arguments, request); !numbers.ok())
    return session.fail(numbers.error);
  if (const Status cells = take_cells(workspace, arguments.cells, request); !cells.ok())
    return session.fail(cells.error);
  if (arguments.cells.empty()) {
    if (workspace.tiles.empty())
      return session.fail("Please SPLIT file to obtain hgt files needed.", ExitStatus::stopped);
    if (!take_needed_cells(session, request)) return ExitStatus::done;
  }
  const ContourOutcome report = make_contours(workspace, session.prompts, session.progress, request);
  session.json["files"] = report.files;
  session.json["failed"] = report.failed;
  session.json["missing"] = report.missing;
  session.json["seconds"] = report.seconds;
  for (const std::string& file : report.files)
    session.show(file + "\n");
  const StageResult result = failed_in_part(report.result, !report.missing.empty());
  session.result = result_word(result);
  return exit_status_of(result);
}

ExitStatus clip_tiles(Session& session) {
  TileList& tiles = session.workspace.tiles;
  // As in a build: no selection means the whole map.
  const bool all = selected_count(tiles) == 0;
  for (Tile& tile : tiles)
    tile.selected = tile.selected || all;
  const ClipReport report = clip(session.workspace, session.prompts, session.progress);
  session.json["files"] = report.files;
  for (const std::string& file : report.files)
    session.show(file + "\n");
  session.result = result_word(report.result);
  return exit_status_of(report.result);
}

}  // namespace

ExitStatus run_command(Session& session, const ContoursArguments& arguments) {
  platform::catch_interrupts();
  const ExitStatus opened = session.open(Session::Access::write, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  RunSettings run(session.workspace);
  if (const ExitStatus area = open_area(session, run, arguments.area); area != ExitStatus::done) return area;
  return arguments.action == ContoursArguments::Action::make ? make(session, arguments) : clip_tiles(session);
}

}  // namespace ferrowen
