// Small things that every check of the Style Doctor needs to make its rows.
#pragma once

#include "styletools/style_doctor.hpp"

namespace ferrowen {

inline constexpr const char* finding_marker = "*";
inline constexpr const char* strong_marker = "***";
inline constexpr const char* plain_marker = "  ";

// A row of a check without a place.
DoctorRow row_of(DoctorCheck check, const LoadedStyle& style);
// The same at a place of the style.
DoctorRow row_at(DoctorCheck check, const LoadedStyle& style, StylePlace place);
// What is wrong with the style, or was not looked at.
DoctorRow problem_row(DoctorCheck check, const LoadedStyle& style, const StyleProblem& problem);
// The row that ends a check which found nothing.
void add_no_issues(DoctorReport& report, DoctorRow row, const char* text = "No issues found.");
// A rule as a row shows it: of one that is thousands of characters long the beginning.
std::string shown_rule(std::string_view text);
// "inc/roads:12": a place in words.
std::string place_words(const LoadedStyle& style, StylePlace place);

}  // namespace ferrowen
