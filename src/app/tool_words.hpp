// The words by which lines of a tool's output are told apart: one list for the judgement of a build and for
// the log viewer.
#pragma once

#include <string_view>

namespace ferrowen {

// Java's level for failures in the languages that it is likely to run in, with or without the date of the log
// in front; false for the one kind that comes with every tile and means nothing.
bool is_level_line(std::string_view line);
// mkgmap's counters of maps that failed.
bool is_failure_counter(std::string_view line);
bool is_failure_counter_above_zero(std::string_view line);
// A line of a Java stack trace.
bool is_stack_line(std::string_view line);
// Says that something went wrong: a level line, a counter above zero, "Error", "Exiting", ...
bool names_a_failure(std::string_view line);

bool is_warning_line(std::string_view line);
bool is_information_line(std::string_view line);

}  // namespace ferrowen
