#include "cli/commands.hpp"
#include "cli/conversion_result.hpp"
#include "mp/kml2mp.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const KmlArguments& arguments) {
  KmlChoices choices;
  choose(choices.line_type, arguments.type);
  choose(choices.point_type, arguments.point_type);
  choose(choices.label, arguments.label);
  choices.writes_points = arguments.points;
  return run_conversion(session, arguments, [&](const std::vector<std::string>& files) {
    return kml2mp(session.workspace, session.prompts, session.progress, files, choices);
  });
}

}  // namespace ferrowen
