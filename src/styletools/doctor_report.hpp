// What the Style Doctor says: rows of its report list with their place in the style, and the texts made of
// them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "styletools/type_key.hpp"

namespace ferrowen {

enum class DoctorCheck : std::uint8_t {
  typ,
  road_class,
  resolution,
  level,
  tags,
  unused,
  style,
  places,
  mkgmap,
  names
};
inline constexpr std::array<DoctorCheck, 10> doctor_checks{
    DoctorCheck::typ,    DoctorCheck::road_class, DoctorCheck::resolution, DoctorCheck::level,
    DoctorCheck::tags,   DoctorCheck::unused,     DoctorCheck::style,      DoctorCheck::places,
    DoctorCheck::mkgmap, DoctorCheck::names};

enum class Weight : std::uint8_t {
  heading,  // structure of the report
  note,     // a row of a list; nothing is wrong
  hint,     // worth a look
  warning,  // does not do what it seems to do
  error,    // something is lost on the map
};

struct DoctorRow {
  DoctorCheck check = DoctorCheck::typ;
  Weight weight = Weight::note;
  RuleKind kind = RuleKind::polygons;
  // The four columns.
  std::string marker, kind_text, finding, detail;
  std::string quoted;  // the part of the detail that is the style's or the TYP file's own text
  // Where it is.
  std::string file;  // path; "" when the row belongs to no line
  std::uint32_t line = 0;
  std::string key;  // of the Garmin type, when there is one
  // The earlier rule that the row speaks of, in words: "polygons:12"; "" elsewhere.
  std::string other_place;

  [[nodiscard]] bool counts() const { return weight >= Weight::hint; }
};

// The kind column of rows about the style as a whole.
inline constexpr const char* whole_style = "Style";

struct DoctorReport {
  std::vector<DoctorRow> rows;
  std::size_t issues = 0;

  void add(DoctorRow row);
  // Rows about the style as a whole, which every kind has, are kept once.
  void append(DoctorReport other);
};

// A heading of capitals and the rule row below it.
void putheader(DoctorReport& report, const DoctorRow& section, std::string_view title);

std::string_view check_name(DoctorCheck check);  // "typ", "road-class", ...: as the command line spells it
std::optional<DoctorCheck> check_named(std::string_view name);
std::string_view weight_name(Weight weight);

// The columns of the rows joined by tabs, one line each: the report list as text.
std::string report_text(const DoctorReport& report);
// "FILE:LINE: weight: [check] ..." for every row that is no heading.
std::string report_lines(const DoctorReport& report);
// Comma-separated, with a line of headings; headings of the report are left out.
std::string report_csv(const DoctorReport& report);
// The results file: the style, then each row behind a line end, "Polygons" shortened to "PGNS".
std::string results_text(const DoctorReport& report, const std::string& style_folder);

}  // namespace ferrowen
