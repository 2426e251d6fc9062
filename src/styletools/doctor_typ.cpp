// The check of a style against a TYP file.
#include <unordered_map>
#include <unordered_set>

#include "base/text.hpp"
#include "styletools/doctor_rows.hpp"
#include "styletools/typ_reader.hpp"
#include "styletools/typ_text.hpp"

namespace ferrowen {

namespace {

using Keys = std::unordered_set<std::string>;

constexpr std::uint8_t first_transparent_scheme = 9;
constexpr std::uint8_t opaque_scheme = 13;

class TypCheck {
 public:
  TypCheck(const LoadedStyle& style, const TypFile& typ, std::size_t lowest_draw_order)
      : m_style(style), m_typ(typ), m_lowest(lowest_draw_order) {}

  DoctorReport run() {
    putheader(m_report, row_of(DoctorCheck::typ, m_style), "REPORT");
    list_missing();
    list_unused();
    list_used();
    if (m_report.issues == 0 && m_typ.findings.empty())
      add_no_issues(m_report, row_of(DoctorCheck::typ, m_style), "No Issues found");
    return std::move(m_report);
  }

 private:
  void list_missing() {
    Keys drawn;
    for (const TypDefinition& definition : m_typ.of(m_style.text.kind))
      drawn.insert(definition.key);
    const StyleRules& rules = m_style.rules;
    for (std::size_t at = 0; at < rules.types.size(); ++at) {
      if (drawn.contains(rules.types[at])) continue;
      const StyleStatement& statement = rules.statement_of(rules.rules[rules.first_rules[at]]);
      DoctorRow row = row_at(DoctorCheck::typ, m_style, statement.place);
      row.weight = Weight::warning;
      row.marker = finding_marker;
      row.finding = "Not in TYP";
      row.detail = row.quoted =
          shown_rule(statement.condition.empty() ? statement.text : statement.condition);
      row.key = rules.types[at];
      m_report.add(std::move(row));
    }
  }

  void list_unused() {
    DoctorRow heading = row_of(DoctorCheck::typ, m_style);
    heading.weight = Weight::heading;
    heading.marker = "#";
    heading.finding = "FOUND IN TYP FILE BUT";
    m_report.add(heading);
    heading.marker = heading.kind_text = heading.finding = "";
    m_report.add(heading);
    const Keys used = used_keys();
    for (const TypDefinition& definition : m_typ.of(m_style.text.kind)) {
      if (used.contains(definition.key)) continue;
      add_definition(definition, "--------", "NOT in STYLE");
      if (has_no_order(definition)) add_no_order(definition, "-", Weight::note);
    }
  }

  void list_used() {
    putheader(m_report, row_of(DoctorCheck::typ, m_style), "OTHER");
    const Keys used = used_keys();
    for (const TypDefinition& definition : m_typ.of(m_style.text.kind)) {
      if (!used.contains(definition.key)) continue;
      add_definition(definition, "#", "In Style");
      if (has_no_order(definition)) add_no_order(definition, finding_marker, Weight::warning);
      if (!definition.damage.empty()) add_damage(definition);
    }
  }

  [[nodiscard]] Keys used_keys() const { return {m_style.rules.types.begin(), m_style.rules.types.end()}; }

  [[nodiscard]] bool has_no_order(const TypDefinition& definition) const {
    return m_style.text.kind == RuleKind::polygons && definition.draw_order == 0;
  }

  // The label; of polygons behind their level, with what keeps them from being seen.
  [[nodiscard]] std::string description(const TypDefinition& definition) const {
    std::string text = label_text(definition);
    if (m_style.text.kind != RuleKind::polygons) return text;
    if (definition.draw_order != 0) text = std::to_string(definition.draw_order) + ") " + text;
    if (definition.scheme < first_transparent_scheme || definition.scheme == opaque_scheme) return text;
    text += " (transparent) ";
    if (definition.draw_order < m_lowest) text += " draworder below " + std::to_string(m_lowest);
    return text;
  }

  DoctorRow definition_row(const TypDefinition& definition, const char* marker, const char* finding) {
    DoctorRow row = row_of(DoctorCheck::typ, m_style);
    row.marker = marker;
    row.finding = finding;
    row.key = definition.key;
    const auto rule = rule_of(definition.key);
    if (rule != m_style.rules.rules.size()) {
      const StylePlace place = m_style.rules.statement_of(m_style.rules.rules[rule]).place;
      row.file = m_style.text.files[place.file].path;
      row.line = place.line;
    }
    return row;
  }

  // The first rule that uses a type.
  std::size_t rule_of(const std::string& key) {
    if (m_first_rules.empty()) {
      for (std::size_t at = 0; at < m_style.rules.types.size(); ++at)
        m_first_rules.emplace(m_style.rules.types[at], m_style.rules.first_rules[at]);
    }
    const auto found = m_first_rules.find(key);
    return found == m_first_rules.end() ? m_style.rules.rules.size() : found->second;
  }

  void add_definition(const TypDefinition& definition, const char* marker, const char* finding) {
    DoctorRow row = definition_row(definition, marker, finding);
    row.detail = description(definition);
    row.quoted = label_text(definition);
    m_report.add(std::move(row));
  }

  void add_no_order(const TypDefinition& definition, const char* marker, Weight weight) {
    DoctorRow row = definition_row(definition, marker, "Polygon");
    row.weight = weight;
    row.detail = "No draworder " + type_code(definition.type, definition.subtype);
    m_report.add(std::move(row));
  }

  void add_damage(const TypDefinition& definition) {
    DoctorRow row = definition_row(definition, finding_marker, "Check");
    row.weight = Weight::warning;
    row.detail = "TYP file: " + definition.damage;
    m_report.add(std::move(row));
  }

  const LoadedStyle& m_style;
  const TypFile& m_typ;
  std::size_t m_lowest;
  DoctorReport m_report;
  std::unordered_map<std::string, std::size_t> m_first_rules;
};

}  // namespace

DoctorReport typ_damage(const TypFile& typ) {
  DoctorReport report;
  for (std::string& line : finding_lines(typ)) {
    DoctorRow row;
    row.check = DoctorCheck::typ;
    row.weight = Weight::error;
    row.marker = strong_marker;
    row.finding = "Check";
    row.detail = "TYP file, " + std::move(line);
    report.add(std::move(row));
  }
  return report;
}

DoctorReport chk_typstl(const LoadedStyle& style, const TypFile& typ, std::size_t lowest_draw_order) {
  return TypCheck(style, typ, lowest_draw_order).run();
}

}  // namespace ferrowen
