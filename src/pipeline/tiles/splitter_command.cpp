#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr long least_max_nodes = 100000, reset_max_nodes = 800000;
constexpr long least_max_areas = 10, most_max_areas = 255, reset_max_areas = 100;
constexpr int message_nodes_small = 92, message_areas_small = 93, message_areas_high = 94;

// A number as the tools read it: what a person added to it ("1e6", "255.0") is gone.
std::string plain_number(std::string_view text) {
  const std::string_view trimmed = trim(text);
  return is_digits(trimmed) ? std::string(trimmed) : std::to_string(lenient_whole_number(trimmed));
}

// The text between "Xmx" and the next "m"; a setting without "Xmx" is the number itself.
std::string memory_text(std::string_view memory_setting) {
  std::string_view text = trim(memory_setting);
  if (const std::size_t start = text.find("Xmx"); start != std::string_view::npos)
    text.remove_prefix(start + 3);
  return std::string(trim(text.substr(0, text.find('m'))));
}

std::string without_comments(std::string_view options_text) {
  std::string kept;
  for (const std::string& line : split_lines(options_text)) {
    if (!trim(line).starts_with('#')) kept.append(line).append("\n");
  }
  return kept;
}

bool is_polygon_option(const Argument& argument) {
  std::string_view name = argument.name.empty() ? argument.value : argument.name;
  while (name.starts_with('-'))
    name.remove_prefix(1);
  return lower_ascii(name).starts_with("polygon-file");
}

// Options from the options editor, without those that must not reach the splitter.
void add_extra_options(std::string_view options_text, SplitterCommand& result) {
  bool value_follows = false;
  for (Argument& argument : parse_arguments(without_comments(options_text))) {
    const bool is_value = value_follows && !argument.name.starts_with('-');
    value_follows = false;
    if (is_value) continue;
    if (is_polygon_option(argument)) {
      result.notes.emplace_back("Polygon in Splitter Option not included");
      value_follows = argument.value.empty();
      continue;
    }
    result.command.arguments.push_back(std::move(argument));
  }
}

}  // namespace

std::string java_prefix(std::string_view memory_setting) {
  const std::string memory = memory_text(memory_setting);
  return memory.empty() ? "java -ea -jar" : "java -Xmx" + memory + "m -ea -jar";
}

Status check_memory(std::string_view memory_setting) {
  const std::string memory = memory_text(memory_setting);
  const bool blank = trim(memory_setting).empty();
  if (blank || (is_digits(memory) && lenient_number(memory) > 0)) return {};
  return {"The memory for Java, '" + std::string(trim(memory_setting)) +
          "', is not a number of megabytes. Please write it like -Xmx1500m in Settings, " +
          std::string(page_name(Page::splitter)) + "."};
}

int java_memory(std::string_view memory_setting) {
  constexpr std::uint64_t java_share = 4;
  if (!trim(memory_setting).empty())
    return static_cast<int>(lenient_whole_number(memory_text(memory_setting)));
  return static_cast<int>(platform::memory_megabytes() / java_share);
}

LimitCorrection corrected_max_nodes(std::string_view max_nodes) {
  if (lenient_number(max_nodes) < least_max_nodes)
    return {std::to_string(reset_max_nodes), message_nodes_small};
  return {plain_number(max_nodes), 0};
}

LimitCorrection corrected_max_areas(std::string_view max_areas) {
  const double number = lenient_number(max_areas);
  if (number < least_max_areas) return {std::to_string(reset_max_areas), message_areas_small};
  if (number > most_max_areas) return {std::to_string(most_max_areas), message_areas_high};
  return {plain_number(max_areas), 0};
}

SplitterCommand splitter_command(const Settings& settings) {
  SplitterCommand result;
  Command& command = result.command;
  std::vector<std::string> prefix = split(java_prefix(memory_of_java_options(settings.java_options)), " ");
  command.program = prefix.front();
  for (std::size_t i = 1; i < prefix.size(); ++i)
    command.arguments.push_back(word(prefix[i]));
  command.arguments.push_back(quoted(settings.splitter_jar));
  command.arguments.push_back(option("--mapid", std::string(trim(settings.first_map_id))));
  command.arguments.push_back(quoted_option("--output-dir", settings.split_folder));
  if (!trim(settings.description).empty())
    command.arguments.push_back(quoted_option("--description", settings.description));
  command.arguments.push_back(option("--max-nodes", settings.max_nodes));
  command.arguments.push_back(option("--max-areas", settings.max_areas));
  add_extra_options(settings.splitter_options, result);
  command.arguments.push_back(quoted(settings.input));
  return result;
}

int least_memory_for_split(std::uint64_t input_bytes) {
  struct Step {
    std::uint64_t most_megabytes;
    int memory;
  };
  // Rounded up from what splits of extracts of these sizes (PBF) use.
  constexpr std::array<Step, 6> steps = {
      {{12, 100}, {100, 300}, {500, 600}, {2000, 1200}, {8000, 2500}, {30000, 4000}}};
  constexpr int whole_planet = 6000;
  constexpr std::uint64_t megabyte = 1000ULL * 1000;
  const auto* const found = std::find_if(steps.begin(), steps.end(), [&](const Step& one) {
    return input_bytes <= one.most_megabytes * megabyte;
  });
  return found == steps.end() ? whole_planet : found->memory;
}

}  // namespace ferrowen
