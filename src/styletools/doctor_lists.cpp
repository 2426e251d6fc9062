// The lists of the Style Doctor: resolutions, levels, places, rules that are commented out, tags of mkgmap,
// names.
#include <algorithm>
#include <functional>

#include "base/text.hpp"
#include "styletools/doctor_rows.hpp"

namespace ferrowen {

namespace {

constexpr double first_impossible_resolution = 25;

struct ListedLine {
  const StyleLine* line;
  double value;
};

bool is_comment(std::string_view line) { return trim(line).starts_with('#'); }

// The number behind a word, ended by a blank or "]".
double value_behind(const std::string& lower, std::string_view word) {
  return lenient_number(std::string_view(lower).substr(lower.find(word) + word.size()));
}

std::vector<ListedLine> lines_with(const LoadedStyle& style, std::string_view word) {
  std::vector<ListedLine> found;
  for (const StyleLine& line : style.text.lines) {
    if (is_comment(line.text)) continue;
    const std::string lower = lower_ascii(line.text);
    if (contains(lower, word)) found.push_back({&line, value_behind(lower, word)});
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const ListedLine& left, const ListedLine& right) { return left.value > right.value; });
  return found;
}

struct ListNames {
  DoctorCheck check;
  std::string_view word, section, heading;
};

DoctorReport value_list(const LoadedStyle& style, const ListNames& names) {
  DoctorReport report;
  putheader(report, row_of(names.check, style), names.section);
  const ListedLine* previous = nullptr;
  const std::vector<ListedLine> listed = lines_with(style, names.word);
  for (const ListedLine& one : listed) {
    if (previous == nullptr || previous->value != one.value) {
      DoctorRow heading = row_of(names.check, style);
      heading.weight = Weight::heading;
      heading.marker = "#";
      heading.finding = std::string(names.heading) + " " + number_text(one.value);
      report.add(std::move(heading));
    }
    previous = &one;
    DoctorRow row = row_at(names.check, style, one.line->place);
    const bool impossible = one.value >= first_impossible_resolution;
    row.weight = impossible ? Weight::warning : Weight::note;
    row.marker = impossible ? finding_marker : plain_marker;
    row.finding = std::to_string(one.line->place.line) + include_letter(one.line->place.file);
    row.detail = row.quoted = shown_rule(one.line->text);
    if (contains(one.line->text, "[0x")) row.key = written_type_key(get_type(one.line->text));
    report.add(std::move(row));
  }
  if (listed.empty()) add_no_issues(report, row_of(names.check, style), "No data");
  return report;
}

// The ranges stand in this order, although " small" lies between two larger ones.
std::string_view place_size(std::uint32_t type) {
  if (type < 0x0600) return " BOLD & BIG";
  if (type < 0x0B00) return " BIG";
  if (type < 0x0E00) return " small";
  if (type < 0x1E40) return " BIG & NORMAL";
  return "";
}

// One row per rule that has something to tell under this section.
DoctorReport statement_list(const LoadedStyle& style, DoctorCheck check, std::string_view section,
                            const std::function<std::string(const StyleStatement&)>& finding_of) {
  DoctorReport report;
  putheader(report, row_of(check, style), section);
  for (const StyleStatement& statement : style.rules.statements) {
    DoctorRow row = row_at(check, style, statement.place);
    row.marker = plain_marker;
    row.finding = finding_of(statement);
    if (row.finding.empty()) continue;
    const std::string letter = include_letter(statement.place.file);
    row.quoted = shown_rule(statement.text);
    row.detail = std::to_string(statement.place.line) + (letter.empty() ? " " : letter) + row.quoted;
    if (!statement.types.empty()) row.key = written_type_key(get_type(statement.types.front()));
    report.add(std::move(row));
  }
  if (report.rows.back().weight == Weight::heading) add_no_issues(report, row_of(check, style), "No data");
  return report;
}

}  // namespace

DoctorReport parse_mkg(const LoadedStyle& style) {
  return statement_list(style, DoctorCheck::mkgmap, "MKGMAP", [](const StyleStatement& statement) {
    std::string tags;
    for (const std::string& tag : statement.mkgmap_tags)
      tags.append(tags.empty() ? "mkgmap:" : ", mkgmap:").append(tag);
    return tags;
  });
}

DoctorReport parsename(const LoadedStyle& style) {
  return statement_list(style, DoctorCheck::names, "NAME", [](const StyleStatement& statement) {
    return std::string(statement.tests_name ? "NAME" : "");
  });
}

DoctorReport resolution_list(const LoadedStyle& style) {
  return value_list(style, {DoctorCheck::resolution, "resolution", "RESOLUTION", "RESOLUTION"});
}

DoctorReport level_list(const LoadedStyle& style) {
  return value_list(style, {DoctorCheck::level, "level ", "LEVELS", "LEVEL"});
}

DoctorReport parseplaces(const LoadedStyle& style) {
  DoctorReport report;
  putheader(report, row_of(DoctorCheck::places, style), "PLACES");
  for (const StyleRule& rule : style.rules.rules) {
    const StyleStatement& statement = style.rules.statement_of(rule);
    const std::string_view size = place_size(rule.type);
    if (size.empty() || !contains(rule.definition, "resolution") || !contains(statement.condition, "place="))
      continue;
    DoctorRow row = row_at(DoctorCheck::places, style, statement.place);
    row.marker = plain_marker;
    row.finding = std::to_string(statement.place.line) + include_letter(statement.place.file);
    row.quoted = shown_rule(statement.text);
    row.detail = row.quoted + std::string(size);
    row.key = rule.key;
    report.add(std::move(row));
  }
  if (report.rows.back().weight == Weight::heading)
    add_no_issues(report, row_of(DoctorCheck::places, style), "No data");
  return report;
}

DoctorReport parse_notused(const LoadedStyle& style) {
  DoctorReport report;
  for (const StyleLine& line : style.text.lines) {
    if (!is_comment(line.text) || style.text.files[line.place.file].is_base) continue;
    const std::string text = lower_ascii(line.text);
    if (!contains(text, "[") || !contains(text, "]") || !contains(text, "0x")) continue;
    DoctorRow row = row_at(DoctorCheck::unused, style, line.place);
    row.weight = Weight::hint;
    row.marker = finding_marker;
    row.finding = "Not Used";
    row.detail = row.quoted = shown_rule(trim(line.text));
    report.add(std::move(row));
  }
  if (!report.rows.empty()) return report;
  putheader(report, row_of(DoctorCheck::unused, style), "Style Check");
  add_no_issues(report, row_of(DoctorCheck::unused, style));
  return report;
}

}  // namespace ferrowen
