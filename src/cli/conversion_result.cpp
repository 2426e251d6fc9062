#include "cli/conversion_result.hpp"

#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

ExitStatus exit_status_of(ConversionEnd end) {
  switch (end) {
    case ConversionEnd::done:
      return ExitStatus::done;
    case ConversionEnd::stopped_by_check:
      return ExitStatus::stopped;
    case ConversionEnd::bad_input:
      return ExitStatus::wrong_usage;
    case ConversionEnd::failed:
    case ConversionEnd::cancelled:
      break;
  }
  return ExitStatus::run_failed;
}

ExitStatus show_conversion(Session& session, const ConvertArguments& arguments,
                           const Conversion& conversion) {
  session.json["files"] = Json::array();
  for (const ConvertedFile& file : conversion.files) {
    session.json["files"].push_back({{"input", file.input}, {"output", file.output}});
    session.show(terminal_text(file.output) + "\n");
  }
  session.json["not_converted"] = conversion.not_converted;
  session.json["lines"] = conversion.counts.lines;
  session.json["polygons"] = conversion.counts.polygons;
  session.json["pois"] = conversion.counts.pois;
  session.json["coordinates"] = conversion.counts.coordinates;
  session.show(replace_all(conversion_summary(conversion.counts), crlf, "\n") + "\n");
  if (conversion.end == ConversionEnd::cancelled) session.result = "cancelled";
  if (!conversion.not_converted.empty())
    session.prompts.tell("Not converted: " + join_texts(conversion.not_converted, ", "), Icon::warning);
  if (conversion.has_foreign_letters)
    session.prompts.tell("The labels are in code page 1251. Build the map with --option " +
                         std::string(label_code_page_option) + " to keep them as they are.");
  for (const ConvertedFile& file : conversion.files) {
    if (arguments.show) show_mp(session.prompts, file.output);
  }
  session.prompts.print_shown_files();
  return exit_status_of(conversion.end);
}

}  // namespace

void choose(std::string& choice, const std::optional<std::string>& value) {
  if (value) choice = *value;
}

ExitStatus run_conversion(Session& session, const ConvertArguments& arguments,
                          const std::function<Conversion(const std::vector<std::string>& files)>& convert) {
  platform::catch_interrupts();
  std::vector<std::string> files;
  for (const std::string& file : arguments.files)
    files.push_back(platform::absolute(file));
  // The settings are left alone: a window may be open meanwhile.
  const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  return show_conversion(session, arguments, convert(files));
}

}  // namespace ferrowen
