#include "cli/commands.hpp"
#include "cli/conversion_result.hpp"
#include "mp/kml2mp.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const KmlArguments& given) {
  KmlArguments arguments = given;
  if (const ExitStatus opened = open_converter(session, arguments); opened != ExitStatus::done) return opened;
  KmlChoices choices;
  choose(choices.line_type, arguments.type);
  choose(choices.point_type, arguments.point_type);
  choose(choices.label, arguments.label);
  choices.writes_points = arguments.points;
  return show_conversion(
      session, arguments,
      kml2mp(session.workspace, session.prompts, session.progress, arguments.files, choices));
}

}  // namespace ferrowen
