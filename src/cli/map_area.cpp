#include "cli/map_area.hpp"

#include "base/text.hpp"
#include "cli/run_options.hpp"
#include "pipeline/argument_files.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view saved_selection = "saved";

Status select(Workspace& workspace, const std::string& tiles) {
  if (tiles == saved_selection)
    return loadarg(workspace, platform::join(split_folder(workspace), argument_name::saved_selection));
  return select_tiles(workspace.tiles, split(tiles, ","));
}

}  // namespace

ExitStatus open_area(Session& session, RunSettings& run, const AreaArguments& area) {
  if (const Status set = override_hgt(run, area.hgt); !set.ok()) return session.fail(set.error);
  set_splitterfiles(session.workspace, session.prompts);
  if (!area.tiles) return ExitStatus::done;
  const Status selected = select(session.workspace, *area.tiles);
  return selected.ok() ? ExitStatus::done : session.fail(selected.error);
}

}  // namespace ferrowen
