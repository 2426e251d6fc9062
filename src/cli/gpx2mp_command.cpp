#include "cli/commands.hpp"
#include "cli/conversion_result.hpp"
#include "mp/gpx2mp.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const GpxArguments& given) {
  GpxArguments arguments = given;
  if (const ExitStatus opened = open_converter(session, arguments); opened != ExitStatus::done) return opened;
  GpxChoices choices;
  choose(choices.line_type, arguments.type);
  choose(choices.label, arguments.label);
  choose(choices.start_type, arguments.start_type);
  choose(choices.half_way_type, arguments.half_way_type);
  choose(choices.finish_type, arguments.finish_type);
  choices.offers_name = arguments.offer_name;
  choices.writes_points = arguments.points;
  choices.is_polygon = arguments.polygon;
  return show_conversion(
      session, arguments,
      gpx2mp(session.workspace, session.prompts, session.progress, arguments.files, choices));
}

}  // namespace ferrowen
