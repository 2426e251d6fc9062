#include "app/tool_words.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::array<std::string_view, 4> level_words = {"SEVERE (", "SCHWERWIEGEND (", "GRAVE (", "GRAVE: "};
constexpr std::array<std::string_view, 7> warning_words = {
    "WARNING", "WARNUNG", "AVERTISSEMENT", "ADVERTENCIA", "Warning", "warning", "DIAGNOSTIC ("};
constexpr std::array<std::string_view, 7> information_words = {
    "INFO (", "INFO: ", "INFORMATION (", "CONFIG (", "FINE (", "FINER (", "FINEST ("};
// No failures: one such line per tile comes with the option that checks roundabouts; the other one tells that
// a long line was cut into pieces.
constexpr std::array<std::string_view, 2> harmless_levels = {"(RoundaboutCheck)", "(LineSizeSplitterFilter)"};
constexpr std::array<std::string_view, 2> counters = {"Number of MapFailedExceptions:",
                                                      "Number of ExitExceptions:"};
constexpr std::array<std::string_view, 10> words_of_failure = {
    "Error",     "error:",  "Exception",     "Exiting",       "Could not",
    "Unable to", "Invalid", "doesn't exist", "Out of memory", "Bad file format"};

// "2026/11/21 17:01:17 " in front of a line, as the logging configuration writes it.
std::string_view without_date(std::string_view line) {
  constexpr std::string_view pattern = "0000/00/00 00:00:00 ";
  if (line.size() < pattern.size()) return line;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const bool is_digit = line[at] >= '0' && line[at] <= '9';
    if (pattern[at] == '0' ? !is_digit : line[at] != pattern[at]) return line;
  }
  return line.substr(pattern.size());
}

template <typename Words>
bool starts_with_one(std::string_view line, const Words& words) {
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view word) { return line.starts_with(word); });
}

template <typename Words>
bool contains_one(std::string_view line, const Words& words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return contains(line, word); });
}

}  // namespace

bool is_level_line(std::string_view line) {
  return starts_with_one(without_date(line), level_words) && !contains_one(line, harmless_levels);
}

bool is_failure_counter(std::string_view line) { return starts_with_one(line, counters); }

bool is_failure_counter_above_zero(std::string_view line) {
  return std::any_of(counters.begin(), counters.end(), [&](std::string_view counter) {
    return line.starts_with(counter) && lenient_number(line.substr(counter.size())) > 0;
  });
}

bool is_stack_line(std::string_view line) { return trim(line).starts_with("at "); }

bool names_a_failure(std::string_view line) {
  if (is_stack_line(line) || contains_one(line, harmless_levels)) return false;
  if (is_failure_counter(line)) return is_failure_counter_above_zero(line);
  return is_level_line(line) || contains_one(line, words_of_failure);
}

bool is_warning_line(std::string_view line) {
  return starts_with_one(without_date(line), warning_words) || contains_one(line, harmless_levels);
}

bool is_information_line(std::string_view line) {
  return starts_with_one(without_date(line), information_words) || is_failure_counter(line);
}

}  // namespace ferrowen
