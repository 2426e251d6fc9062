#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/tile_table.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/tiles/tile_list.hpp"

namespace ferrowen {

namespace {

ExitStatus keep_selection(Session& session, const std::string& numbers) {
  Workspace& workspace = session.workspace;
  if (const Status selected = select_tiles(workspace.tiles, split(numbers, ",")); !selected.ok())
    return session.fail(selected.error);
  const Status saved = save_selection(workspace);
  return saved.ok() ? ExitStatus::done : session.fail(saved.error, ExitStatus::run_failed);
}

}  // namespace

ExitStatus run_command(Session& session, const TilesArguments& arguments) {
  const auto access = arguments.save ? Session::Access::write : Session::Access::read;
  const ExitStatus opened = session.open(access, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  set_splitterfiles(session.workspace, session.prompts);
  if (session.workspace.tiles.empty())
    session.prompts.tell("There are no tiles of this input. 'ferrowen split INPUT' makes them.");
  const ExitStatus kept = arguments.save ? keep_selection(session, *arguments.save) : ExitStatus::done;
  if (kept == ExitStatus::done) show_tiles(session);
  return kept;
}

}  // namespace ferrowen
