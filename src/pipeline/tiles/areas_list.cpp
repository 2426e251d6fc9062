#include "pipeline/tiles/areas_list.hpp"

#include <algorithm>
#include <array>
#include <ctime>
#include <set>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr double full_circle_units = 16777216;  // 2^24 map units are 360 degrees
constexpr long most_latitude = 4194304, most_longitude = 8388608;
constexpr std::size_t tile_number_digits = 8;
constexpr std::string_view date_mark = "generated";

std::vector<std::string> words_of(std::string_view text) {
  std::vector<std::string> words = split(collapse_blanks(trim(text)), " ");
  std::erase(words, "");
  return words;
}

std::optional<int> number_between(std::string_view text, int least, int most) {
  if (!is_digits(text)) return std::nullopt;
  const std::optional<long> number = exact_whole_number(text);
  if (!number || *number < least || *number > most) return std::nullopt;
  return static_cast<int>(*number);
}

std::optional<int> month_of(std::string_view name) {
  constexpr std::array<std::string_view, 12> months = {"jan", "feb", "mar", "apr", "may", "jun",
                                                       "jul", "aug", "sep", "oct", "nov", "dec"};
  const auto* const found = std::find(months.begin(), months.end(), lower_ascii(name));
  if (found == months.end()) return std::nullopt;
  return static_cast<int>(found - months.begin());
}

// Weekday, month, day, time, zone (left out by some writers) and year.
std::optional<double> date_of(std::string_view text) {
  const std::vector<std::string> words = words_of(text);
  if (words.size() < 5) return std::nullopt;
  const std::vector<std::string> clock = split(words[3], ":");
  if (clock.size() != 3) return std::nullopt;
  const auto month = month_of(words[1]);
  const auto day = number_between(words[2], 1, 31);
  const auto hour = number_between(clock[0], 0, 23);
  const auto minute = number_between(clock[1], 0, 59);
  const auto second = number_between(clock[2], 0, 60);
  const auto year = number_between(words.back(), 1970, 9999);
  if (!month || !day || !hour || !minute || !second || !year) return std::nullopt;
  std::tm local{};
  local.tm_year = *year - 1900;
  local.tm_mon = *month;
  local.tm_mday = *day;
  local.tm_hour = *hour;
  local.tm_min = *minute;
  local.tm_sec = *second;
  local.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&local);
  if (seconds == static_cast<std::time_t>(-1)) return std::nullopt;
  return static_cast<double>(seconds);
}

std::optional<double> date_in_comment(std::string_view line) {
  const std::size_t start = lower_ascii(line).find(date_mark);
  if (start == std::string::npos) return std::nullopt;
  return date_of(line.substr(start + date_mark.size()));
}

bool is_ordered(const Area& area) {
  return area.lower_latitude < area.upper_latitude && area.lower_longitude < area.upper_longitude &&
         area.lower_latitude >= -most_latitude && area.upper_latitude <= most_latitude &&
         area.lower_longitude >= -most_longitude && area.upper_longitude <= most_longitude;
}

std::optional<Area> area_of(std::string_view line) {
  const std::vector<std::string> parts = split(line, ":");
  if (parts.size() != 2) return std::nullopt;
  Area area;
  area.number = trim(parts[0]);
  if (area.number.size() != tile_number_digits || !is_digits(area.number)) return std::nullopt;
  const std::vector<std::string> numbers = split(replace_all(parts[1], " to ", ","), ",");
  if (numbers.size() != 4) return std::nullopt;
  std::array<long, 4> bounds{};
  for (std::size_t i = 0; i < bounds.size(); ++i) {
    const std::optional<long> number = exact_whole_number(trim(numbers[i]));
    if (!number) return std::nullopt;
    bounds.at(i) = *number;
  }
  area.lower_latitude = bounds[0];
  area.lower_longitude = bounds[1];
  area.upper_latitude = bounds[2];
  area.upper_longitude = bounds[3];
  if (!is_ordered(area)) return std::nullopt;
  return area;
}

std::string problem_in_line(std::size_t line_number, std::string_view what) {
  return "line " + std::to_string(line_number) + ": " + std::string(what);
}

}  // namespace

AreasList parse_areas_list(std::string_view text) {
  AreasList list;
  std::set<std::string> numbers;
  std::size_t line_number = 0;
  for (const std::string& raw_line : split_lines(text)) {
    ++line_number;
    const std::string_view line = trim(raw_line);
    if (line.empty()) continue;
    if (line.starts_with('#')) {
      if (!list.generated) list.generated = date_in_comment(line);
      continue;
    }
    const std::optional<Area> area = area_of(line);
    if (!area)
      list.problems.push_back(problem_in_line(line_number, "no tile number with four bounds"));
    else if (!numbers.insert(area->number).second)
      list.problems.push_back(problem_in_line(line_number, "tile " + area->number + " a second time"));
    else
      list.areas.push_back(*area);
  }
  return list;
}

double degrees_of_map_units(long units) { return static_cast<double>(units) * 360.0 / full_circle_units; }

Corner lower_left(const Area& area) {
  return {degrees_of_map_units(area.lower_latitude), degrees_of_map_units(area.lower_longitude)};
}

Corner upper_right(const Area& area) {
  return {degrees_of_map_units(area.upper_latitude), degrees_of_map_units(area.upper_longitude)};
}

}  // namespace ferrowen
