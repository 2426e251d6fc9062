#include "pipeline/options_text.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view end_mark = "##";
constexpr std::string_view unpredictable = "Results will be unpredictable!";
constexpr std::array<std::string_view, 4> input_endings = {".mp", ".o5m", ".osm", ".pbf"};

std::string warning(std::string_view subject) {
  return "In options: " + std::string(subject) + std::string(crlf) + std::string(unpredictable);
}

bool names_input_file(const Argument& argument) {
  const std::string name = lower_ascii(option_name(argument));
  if (name == "--input-file" || name == "input-file") return true;
  const std::string text = argument.name + argument.value;
  return std::any_of(input_endings.begin(), input_endings.end(),
                     [&](std::string_view ending) { return ends_with_ignoring_case(text, ending); });
}

bool begins_comment(const Argument& argument) {
  return argument.quoting == Argument::Quoting::when_needed &&
         (argument.name + argument.value).starts_with('#');
}

void take_line(OptionsText& taken, std::string_view line) {
  for (Argument& argument : parse_arguments(line)) {
    if (begins_comment(argument)) return;
    if (names_input_file(argument)) taken.warnings.push_back(warning(argument.name + argument.value));
    taken.options.push_back(std::move(argument));
  }
}

}  // namespace

OptionsText parse_options_text(std::string_view text, std::string_view name) {
  OptionsText taken;
  bool in_dem_block = false;
  for (const std::string& raw_line : split_lines(text)) {
    if (contains(raw_line, end_mark)) break;
    const std::string_view line = trim(raw_line);
    if (const DemMark mark = dem_mark(line); mark != DemMark::none) {
      in_dem_block = mark == DemMark::opens;
    } else if (in_dem_block) {
      if (!line.empty() && !line.starts_with('#')) taken.dem_options.emplace_back(line);
    } else {
      take_line(taken, line);
    }
  }
  if (in_dem_block) taken.warnings.push_back(warning(std::string(name) + " </dem>"));
  return taken;
}

DemMark dem_mark(std::string_view line) {
  if (trim(line).starts_with('#')) return DemMark::none;
  const std::string text = lower_ascii(line);
  if (contains(text, "</dem>")) return DemMark::closes;
  return contains(text, "<dem>") ? DemMark::opens : DemMark::none;
}

std::string option_name(const Argument& argument) {
  const std::string text = argument.name + argument.value;
  return text.substr(0, text.find('='));
}

bool has_option_named(const std::vector<Argument>& options, std::string_view name) {
  return std::any_of(options.begin(), options.end(),
                     [&](const Argument& argument) { return option_name(argument) == name; });
}

}  // namespace ferrowen
