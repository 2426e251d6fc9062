#include "cli/commands.hpp"
#include "cli/map_area.hpp"
#include "cli/table.hpp"
#include "cli/terminal.hpp"
#include "elevation/download_help.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"

namespace ferrowen {

namespace {

std::string_view condition_word(CellCondition condition) {
  switch (condition) {
    case CellCondition::found:
      return "found";
    case CellCondition::missing:
      return "missing";
    case CellCondition::damaged:
      return "damaged";
    case CellCondition::wrong_case:
      break;
  }
  return "wrong case";
}

void show_cells(Session& session, const std::vector<HeightCell>& cells) {
  Table table({{"Cell"}, {"State"}, {"File"}});
  session.json["cells"] = Json::array();
  for (const HeightCell& cell : cells) {
    const std::string_view state = condition_word(cell.condition);
    const std::string file = cell.problem.empty() ? cell.path : cell.path + " " + cell.problem;
    table.add({cell.name, std::string(state), terminal_text(file)});
    session.json["cells"].push_back(
        {{"name", cell.name}, {"state", state}, {"path", cell.path}, {"problem", cell.problem}});
  }
  if (!cells.empty()) session.show(table.text() + "\n");
}

}  // namespace

ExitStatus run_command(Session& session, const HgtArguments& arguments) {
  const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  RunSettings run(session.workspace);
  if (const ExitStatus area = open_area(session, run, arguments.area); area != ExitStatus::done) return area;
  Workspace& workspace = session.workspace;
  if (workspace.tiles.empty())
    return session.fail("Please SPLIT file to obtain hgt files needed.", ExitStatus::stopped);
  const DownloadState state = download_state(workspace, session.prompts);
  show_cells(session, state.cells);
  session.json["needed"] = state.needed.size();
  session.json["found"] = state.needed.size() - state.missing.size();
  session.json["missing"] = cells_in(state.cells, CellCondition::missing);
  session.json["folders"] = searched_hgt_folders(workspace.settings);
  session.show(state.summary + "\n");
  if (state.cells.empty()) session.prompts.tell("Can't find hgt file(s) for this region.");
  return ExitStatus::done;
}

}  // namespace ferrowen
