#include "cli/commands.hpp"
#include "cli/conversion_result.hpp"
#include "mp/gpx2mp.hpp"

namespace ferrowen {

ExitStatus run_command(Session& session, const GpxArguments& arguments) {
  GpxChoices choices;
  choose(choices.line_type, arguments.type);
  choose(choices.label, arguments.label);
  choose(choices.start_type, arguments.start_type);
  choose(choices.half_way_type, arguments.half_way_type);
  choose(choices.finish_type, arguments.finish_type);
  choices.offers_name = arguments.offer_name;
  choices.writes_points = arguments.points;
  choices.is_polygon = arguments.polygon;
  return run_conversion(session, arguments, [&](const std::vector<std::string>& files) {
    return gpx2mp(session.workspace, session.prompts, session.progress, files, choices);
  });
}

}  // namespace ferrowen
