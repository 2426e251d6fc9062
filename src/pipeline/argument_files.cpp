#include "pipeline/argument_files.hpp"

#include <algorithm>
#include <optional>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t map_name_digits = 8;
constexpr long highest_map_name = 99999999;
constexpr long overview_map_number = 63240000;  // that of every overview map that mkgmap writes
constexpr int contour_priority_step = 5;        // contours are drawn over the map that they belong to

std::optional<long> map_name_number(std::string_view name) {
  if (name.size() != map_name_digits || !is_digits(name)) return std::nullopt;
  return exact_whole_number(name);
}

std::string map_name_text(long number) {
  const std::string digits = std::to_string(number);
  return std::string(map_name_digits - digits.size(), '0') + digits;
}

std::string not_a_map_name(std::string_view name) {
  return "'" + std::string(name) + "' is no map name of 8 digits.";
}

// The numbers from `first` on in one direction, without that of the overview map.
std::vector<long> numbers_from(long first, long step, std::size_t count) {
  std::vector<long> numbers;
  for (long number = first; numbers.size() < count; number += step) {
    if (number != overview_map_number) numbers.push_back(number);
  }
  return numbers;
}

std::vector<std::string> map_name_texts(const std::vector<long>& numbers) {
  std::vector<std::string> texts;
  texts.reserve(numbers.size());
  for (const long number : numbers)
    texts.push_back(map_name_text(number));
  return texts;
}

// An argument file knows long names without "--" and nothing else: "-c file" has a long name, and a word
// that is no option names an input.
std::string argument_line(const std::string& text) {
  if (text.starts_with("--")) return text.substr(2);
  return "input-file=" + text;
}

// Behind the program's own "-jar" and the jar that follows it.
std::size_t first_option(const std::vector<std::string>& arguments) {
  const auto jar = std::find(arguments.begin(), arguments.end(), "-jar");
  const auto behind = static_cast<std::size_t>(jar - arguments.begin()) + 2;
  return jar == arguments.end() ? 0 : std::min(behind, arguments.size());
}

}  // namespace

ArgumentFile small_template(const ArgumentFile& file, const std::vector<std::string>& map_names) {
  ArgumentFile small{file.head, {}};
  std::copy_if(file.blocks.begin(), file.blocks.end(), std::back_inserter(small.blocks),
               [&](const ArgumentBlock& block) {
                 return std::find(map_names.begin(), map_names.end(), block.map_name) != map_names.end();
               });
  return small;
}

Result<ArgumentFile> renumbered_template(const ArgumentFile& file, std::string_view first,
                                         std::string_view map_id) {
  const std::optional<long> from = map_name_number(first);
  const std::optional<long> to = map_name_number(map_id);
  if (!from) return failed<ArgumentFile>(not_a_map_name(first));
  if (!to) return failed<ArgumentFile>(not_a_map_name(map_id));
  ArgumentFile renumbered = file;
  for (ArgumentBlock& block : renumbered.blocks) {
    const std::optional<long> old_number = map_name_number(block.map_name);
    if (!old_number) return failed<ArgumentFile>(not_a_map_name(block.map_name));
    const long number = *old_number - *from + *to;
    if (number < 0 || number > highest_map_name)
      return failed<ArgumentFile>("Map ID " + std::string(map_id) +
                                  " leaves no map name of 8 digits for tile " + block.map_name + ".");
    block.map_name = map_name_text(number);
  }
  return {std::move(renumbered), ""};
}

ArgumentFile unsplit_template(std::string_view map_id, std::string_view description,
                              std::string_view input_file) {
  return {{}, {{std::string(map_id), std::string(description), std::string(input_file)}}};
}

std::string contour_arguments_text(const ContourArguments& contours) {
  const auto line = [](std::string_view name, std::string_view value) {
    return std::string(name).append(value).append(crlf);
  };
  const int priority = contours.map_draw_priority + contour_priority_step;
  std::string text =
      line("transparent", "") + line("draw-priority: ", std::to_string(priority)) + line("", "");
  for (std::size_t i = 0; i < contours.files.size() && i < contours.map_names.size(); ++i)
    text += line("mapname: ", contours.map_names[i]) + line("description:", "Contours") +
            line("input-file: ", contours.files[i]) + line("", "");
  if (!contours.map_is_transparent) text += line("no-transparent", "");
  return text + line("draw-priority: ", std::to_string(contours.map_draw_priority));
}

Result<std::vector<std::string>> free_map_names(const std::vector<std::string>& taken, std::size_t count) {
  std::vector<long> numbers;
  for (const std::string& name : taken) {
    const std::optional<long> number = map_name_number(name);
    if (!number) return failed<std::vector<std::string>>(not_a_map_name(name));
    numbers.push_back(*number);
  }
  if (numbers.empty() || count == 0) return {};
  const auto [lowest, highest] = std::minmax_element(numbers.begin(), numbers.end());
  std::vector<long> found = numbers_from(*highest + 1, 1, count);
  if (found.back() > highest_map_name) {
    found = numbers_from(*lowest - 1, -1, count);
    std::reverse(found.begin(), found.end());
  }
  if (found.front() < 0)
    return failed<std::vector<std::string>>("No map names of 8 digits are left for contours.");
  return {map_name_texts(found), ""};
}

Result<std::string> current_arguments_text(const Command& command) {
  const std::vector<std::string> arguments = plain_arguments(command);
  std::string text;
  for (std::size_t i = first_option(arguments); i < arguments.size(); ++i) {
    const bool is_option_file = arguments[i] == "-c" && i + 1 < arguments.size();
    const bool is_short_option = arguments[i].starts_with('-') && !arguments[i].starts_with("--");
    if (is_short_option && !is_option_file)
      return failed<std::string>("An argument file cannot hold a short option: " + arguments[i]);
    const std::string line = is_option_file ? "read-config=" + arguments[++i] : argument_line(arguments[i]);
    if (Status checked = check_argument_value(line); !checked.ok()) return failed<std::string>(checked.error);
    text.append(line).append(crlf);
  }
  return {std::move(text), ""};
}

Status check_argument_value(std::string_view value) {
  if (value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos) return {};
  return {"Cannot be written in an argument file because it holds a line end: " + std::string(value)};
}

}  // namespace ferrowen
