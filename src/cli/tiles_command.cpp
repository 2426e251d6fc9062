#include "cli/commands.hpp"
#include "cli/tile_table.hpp"
#include "pipeline/tiles/tile_list.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const TilesArguments& /*arguments*/) {
  const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  set_splitterfiles(session.workspace, session.prompts);
  if (session.workspace.tiles.empty())
    session.prompts.tell("There are no tiles of this input. 'ferrowen split INPUT' makes them.");
  show_tiles(session);
  return ExitStatus::done;
}

}  // namespace ferrowen
