// The check of road classes.
#include <algorithm>

#include "base/text.hpp"
#include "styletools/doctor_rows.hpp"

namespace ferrowen {

namespace {

constexpr std::uint32_t first_unroutable = 0x17;
constexpr std::uint32_t first_without_class = 0x14;

bool is_routable(std::uint32_t type) { return type < first_unroutable || type == 0x1a || type == 0x1b; }

// Not the same list on purpose: 0x14 and 0x17 to 0x19 need no road class, 0x2d and 0x2e do.
bool expects_class(std::uint32_t type) {
  constexpr std::uint32_t others[] = {0x15, 0x16, 0x1a, 0x1b, 0x2d, 0x2e};
  return type < first_without_class ||
         std::find(std::begin(others), std::end(others), type) != std::end(others);
}

// A road class that does not fit the highway value. The blanks inside the texts count: "=trunk " must not
// match
// "=trunk_link".
struct ClassAdvice {
  std::string_view text, unless;
  int least, most;  // classes that pass
  std::string_view suggestion;
};

constexpr int any = -1000;
constexpr ClassAdvice advices[] = {
    {"=cycleway", "", any, 0, "(change road_class:0)"},
    {"=bridleway", "", any, 0, "(change road_class:0)"},
    {"=footway", "", any, 0, "(change road_class:0)"},
    {"=track", "", any, 0, "(change road_class:0)"},
    {"=path", "", any, 0, "(change road_class:0)"},
    {"=steps", "", any, 0, "(change road_class:0)"},
    {"=residential", "", any, 0, "(change road_class:0)"},
    {"=service", "", any, 0, "(change road_class:0)"},
    {"=unclassified", "", any, 1, "(change road_class:1)"},
    {"=tertiary", "", any, 1, "(change road_class:1)"},
    {"=secondary", "", any, 2, "(change road_class:2)"},
    {"=primary", "", any, 3, "(change road_class:3)"},
    {"=trunk ", "roundabout ", 4, 4, "(change road_class:4)"},
    {"=motorway_link", "", 3, 3, "(change road_class:3)"},
    {"=trunk_link", "", 3, 3, "(change road_class:3)"},
    {"=motorway ", "=tunnel ", 4, 4, "(change road_class:4)"},
};

struct RoadFinding {
  std::string text;
  std::size_t count = 0;
  const char* marker = finding_marker;
  void add(std::string_view part) {
    text += part;
    ++count;
  }
};

RoadFinding examine(const StyleRule& rule, const std::string& text) {
  RoadFinding finding;
  if (rule.road_class == 0) {
    if (contains(rule.definition, "resolution") && expects_class(rule.type)) {
      finding.add("Type expects Roadclass");
      finding.marker = strong_marker;
    }
    return finding;
  }
  if (!is_routable(rule.type)) finding.add("**Non routable**");
  const int road_class = rule.road_class - 1;
  for (const ClassAdvice& advice : advices) {
    const bool passes = road_class >= advice.least && road_class <= advice.most;
    if (passes || !contains(text, advice.text)) continue;
    if (advice.unless.empty() || !contains(text, advice.unless)) finding.add(advice.suggestion);
  }
  return finding;
}

}  // namespace

DoctorReport parse_roadclass(const LoadedStyle& style) {
  DoctorReport report;
  if (style.text.kind != RuleKind::lines) return report;
  DoctorRow note = row_of(DoctorCheck::road_class, style);
  putheader(report, note, "ROAD CLASS");
  note.weight = Weight::heading;
  note.marker = plain_marker;
  note.finding = "**Non routable** means take out road_class=xx and road_speed=xx";
  report.add(note);
  std::size_t count = 0;
  std::size_t at = style.rules.statements.size();
  std::string text;
  for (const StyleRule& rule : style.rules.rules) {
    const StyleStatement& statement = style.rules.statement_of(rule);
    if (rule.statement != at) text = collapse_equals(statement.text);
    at = rule.statement;
    const RoadFinding found = examine(rule, text);
    if (found.count == 0) continue;
    count += found.count;
    DoctorRow row = row_at(DoctorCheck::road_class, style, statement.place);
    row.weight = Weight::warning;
    row.marker = found.marker;
    row.finding = found.text;
    row.detail = std::to_string(statement.place.line);
    if (rule.road_class != 0) row.detail += " Road Class " + std::to_string(rule.road_class - 1);
    row.quoted = shown_rule(statement.text);
    row.detail += " " + row.quoted;
    row.key = rule.key;
    report.add(std::move(row));
  }
  if (count == 0)
    add_no_issues(report, row_of(DoctorCheck::road_class, style));
  else
    add_no_issues(report, row_of(DoctorCheck::road_class, style),
                  (std::to_string(count) + " Found possible errors:").c_str());
  return report;
}

}  // namespace ferrowen
