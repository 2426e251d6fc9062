#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/table.hpp"
#include "cli/terminal.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr int message_no_map = 22;

ExitStatus list(Session& session, Registry& registry) {
  Workspace& workspace = session.workspace;
  const std::vector<InstalledMap> maps =
      querymapsource(workspace, registry, session.prompts, session.progress);
  Table table({{"Product"}, {"FID", Table::Align::right}, {"TYP File"}, {"Location"}});
  session.json["maps"] = Json::array();
  for (const InstalledMap& map : maps) {
    table.add({terminal_text(map.product), map.fid, terminal_text(map.typ), terminal_text(map.location)});
    session.json["maps"].push_back({{"product", map.product},
                                    {"fid", map.fid},
                                    {"typ", map.typ},
                                    {"location", map.location},
                                    {"tdb", map.tdb},
                                    {"folder", map.path},
                                    {"key", map.key}});
  }
  if (maps.empty())
    session.prompts.tell(workspace.message(message_no_map));
  else
    session.show(table.text());
  return registry.problem().empty() ? ExitStatus::done : ExitStatus::run_failed;
}

}  // namespace

ExitStatus run_command(Session& session, const MapsArguments& arguments) {
  const bool removes = arguments.action == MapsArguments::Action::remove;
  if (removes) platform::catch_interrupts();
  const ExitStatus opened =
      session.open(removes ? Session::Access::write : Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  const std::unique_ptr<Registry> registry = open_registry(session.workspace);
  if (!removes) return list(session, *registry);
  const StageResult result = remove_registered_map(session.workspace, session.prompts, session.progress,
                                                   *registry, {arguments.name, arguments.fid.value_or("")});
  return exit_status_of(result);
}

}  // namespace ferrowen
