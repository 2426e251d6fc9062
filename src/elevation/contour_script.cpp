#include "elevation/contour_script.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "elevation/height_cells.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr long usual_interval = 20;
constexpr std::string_view interval_option = "MinorDistance=";
constexpr std::string_view tolerance_option = "DouglasPeucker=";
constexpr std::string_view overwrite_option = "--OutputOverwrite=True";
constexpr std::string_view folder_variable = "Pathname";

std::string tolerance_text(double tolerance) { return number_text(static_cast<float>(tolerance)); }

// Behind the name of an option up to the next blank; npos when it is not there.
std::size_t value_start(std::string_view text, std::string_view option) {
  const std::size_t at = text.find(option);
  return at == std::string_view::npos ? at : at + option.size();
}

void set_option(std::string& text, std::string_view option, const std::string& value) {
  const std::size_t start = value_start(text, option);
  if (start == std::string::npos) {
    if (!text.empty() && !text.ends_with(' ')) text += ' ';
    text.append("--").append(option).append(value).append(" ");
    return;
  }
  const std::size_t end = std::min(text.find(' ', start), text.size());
  text.replace(start, end - start, value);
}

// Whole degrees behind the hemisphere letter, below zero for this letter.
long degrees(std::string_view digits, char letter, char negative) {
  const long value = lenient_whole_number(digits);
  return letter == negative ? -value : value;
}

// A batch file carries the name in upper case, as the file system takes both for the same.
std::string output_name(const std::string& height_file, Dialect dialect) {
  std::string name = contour_file_name(platform::name_of(height_file));
  return dialect == Dialect::batch ? upper_ascii(name) : name;
}

Result<std::string> tool_line(const ContourScript& script, const ScriptedCell& job, Dialect dialect) {
  const std::string cell = upper_ascii(platform::name_of(job.height_file));
  const long latitude = degrees(cell.substr(1, 2), cell[0], 'S');
  const long longitude = degrees(cell.substr(4, 3), cell[3], 'W');
  Result<std::string> line = render_command({script.tool, {}}, dialect);
  if (!line.ok()) return line;
  line.value += " --HgtPath=. --Lat=" + std::to_string(longitude) + " --Lon=" + std::to_string(latitude) +
                " " + script.option_text + " ";
  if (script.overwrite && !contains(line.value, overwrite_option))
    line.value.append(" ").append(overwrite_option).append(" ");
  line.value += " --Outfile=" + output_name(job.height_file, dialect);
  return line;
}

}  // namespace

long contour_interval(const Settings& settings) {
  const std::string_view text = settings.contour_options;
  const std::size_t start = value_start(text, interval_option);
  const long interval = start == std::string_view::npos ? 0 : lenient_whole_number(text.substr(start));
  return interval < least_interval ? usual_interval : interval;
}

void store_contour_choices(Settings& settings, long interval, double tolerance) {
  settings.contour_tolerance = tolerance;
  set_option(settings.contour_options, interval_option, std::to_string(interval));
  set_option(settings.contour_options, tolerance_option, tolerance_text(tolerance));
}

double tolerance_value(std::string_view text) {
  return std::max(lenient_number(replace_all(trim(text), ",", ".")), 0.0);
}

std::string contour_option_text(long interval, double tolerance) {
  return " --WriteElevationType=False --FakeDistance=-0.5 --MinVerticePoints=3 --MinBoundingbox=0.00016 "
         "--DouglasPeucker=" +
         tolerance_text(tolerance) + " --MinorDistance=" + std::to_string(interval) + " ";
}

std::string contour_summary(std::string_view option_text, double tolerance, std::size_t commands) {
  std::string text;
  for (const std::string& option : split(trim(option_text), " ")) {
    if (option.empty() || contains(option, tolerance_option)) continue;
    text += replace_all(replace_all(option, interval_option, "Interval: "), "--", "") + std::string(crlf);
  }
  return text + "Douglas-Peucker: " + tolerance_text(tolerance) +
         "\r\n\r\nTotal files to create:" + std::to_string(commands);
}

std::string contour_file_name(std::string_view height_file) {
  const std::string cell = cell_of_file(height_file);
  return replace_all(cell.empty() ? std::string(height_file) : cell, ".hgt", ".osm");
}

Result<ConsoleScript> contour_script(const ContourScript& script, Dialect dialect) {
  Result<ConsoleScript> console;
  const bool side_by_side = dialect == Dialect::shell && script.at_once > 1 && script.jobs.size() > 1;
  std::size_t number = 0;
  for (const ScriptedCell& job : script.jobs) {
    Result<std::string> line = tool_line(script, job, dialect);
    if (!line.ok()) return failed<ConsoleScript>(line.error);
    console.value.add(step::NamedFolder{std::string(folder_variable), platform::folder_of(job.height_file)})
        .add(step::Lines{line.value + (side_by_side ? " &" : "")});
    const bool group_ends = ++number % script.at_once == 0 || number == script.jobs.size();
    if (side_by_side && group_ends) console.value.add(step::Lines{"wait"});
  }
  if (script.pause) console.value.add(step::Pause{});
  return console;
}

}  // namespace ferrowen
