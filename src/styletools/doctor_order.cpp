// The Style Check: rules that never match, and rules that look at what an earlier rule looked at.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "base/text.hpp"
#include "styletools/doctor_rows.hpp"
#include "styletools/rule_order.hpp"
#include "styletools/tag_tests.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view leading_keys = "highway=amenity=landuse=natural=man_made=leisure=";

bool is_leading_key(const std::string& key) {
  return !key.empty() && !contains(key, "=") && contains("=" + std::string(leading_keys), "=" + key + "=");
}

// The key that a rule begins with.
std::string_view first_key(std::string_view tests) {
  tests.remove_prefix(std::min(tests.find_first_not_of("( !"), tests.size()));
  return tests.substr(0, tests.find_first_of("=!<>~ "));
}

class StyleCheck {
 public:
  explicit StyleCheck(const LoadedStyle& style) : m_style(style), m_rules(style.rules) {}

  DoctorReport run() {
    putheader(m_report, row_of(DoctorCheck::style, m_style), "Style Check");
    add_problems();
    for (const RuleFate& fate : fates_of_rules(m_rules))
      m_fates.emplace(fate.statement, fate);
    for (const std::size_t index : m_rules.in_place) {
      const StyleStatement& statement = m_rules.statements[index];
      const bool makes_something = std::any_of(statement.types.begin(), statement.types.end(),
                                               [](const std::string& type) { return contains(type, "0x"); });
      if (makes_something && !statement.in_finalize && !statement.is_of_base) examine(index, statement);
    }
    if (m_report.issues == 0) add_no_issues(m_report, row_of(DoctorCheck::style, m_style));
    return std::move(m_report);
  }

 private:
  struct Words {
    std::string finding, detail, other;
  };

  void add(StylePlace place, Weight weight, const char* marker, Words words) {
    DoctorRow row = row_at(DoctorCheck::style, m_style, place);
    row.weight = weight;
    row.marker = marker;
    row.finding = std::move(words.finding);
    row.detail = std::move(words.detail);
    row.other_place = std::move(words.other);
    m_report.add(std::move(row));
  }

  // The same for a rule, whose type the row names.
  void add(const StyleStatement& statement, Weight weight, const char* marker, Words words) {
    add(statement.place, weight, marker, std::move(words));
    m_report.rows.back().key = written_type_key(get_type(statement.types.front()));
    m_report.rows.back().quoted = shown_rule(statement.text);
  }

  void add_problems() {
    for (const auto* problems : {&m_style.text.problems, &m_rules.problems}) {
      for (const StyleProblem& problem : *problems)
        m_report.add(problem_row(DoctorCheck::style, m_style, problem));
    }
    for (const StyleProblem& problem : m_style.style_problems) {
      DoctorRow row = problem_row(DoctorCheck::style, m_style, problem);
      row.kind_text = whole_style;
      m_report.add(std::move(row));
    }
  }

  static std::string marked(const char* word, const StyleStatement& statement) {
    return "[" + std::string(word) + std::to_string(statement.place.line) + "] " + shown_rule(statement.text);
  }

  void examine(std::size_t index, const StyleStatement& statement) {
    const bool is_address = contains(statement.tests, ":house") || contains(statement.tests, ":post");
    if (is_address && !lets_later_rules_match(statement)) {
      add(statement, Weight::warning, finding_marker,
          {"Check POIs after", std::to_string(statement.place.line), ""});
    }
    const auto fate = m_fates.find(index);
    if (fate != m_fates.end()) add_fate(fate->second, statement);
    const std::vector<std::string> pairs = leading_pairs(statement);
    if (fate == m_fates.end()) add_repetition(pairs, statement);
    const std::string key(first_key(statement.tests));
    for (const std::string& pair : pairs) {
      if (pair.starts_with(key + "=")) m_parsed.emplace(pair, statement.place);
    }
  }

  static std::string never_for(const std::string& alternative) {
    return alternative.empty() ? "" : " (never for " + shown_rule(alternative) + ")";
  }

  void add_fate(const RuleFate& fate, const StyleStatement& statement) {
    const StyleStatement& earlier = m_rules.statements[fate.earlier];
    const std::string other = place_words(m_style, earlier.place);
    switch (fate.kind) {
      case RuleFate::Kind::tag_deleted:
        return add(
            statement, Weight::warning, finding_marker,
            {"Tag deleted: " + fate.what, marked("Check:", statement) + never_for(fate.never_for), other});
      case RuleFate::Kind::tag_deleted_for_some:
        return add(statement, Weight::hint, finding_marker,
                   {"Tag deleted: " + fate.what,
                    marked("Check:", statement) + " (of objects that the earlier rule has matched)", other});
      case RuleFate::Kind::partly_reached:
        return add(statement, Weight::warning, finding_marker,
                   {"Check", marked("Check:", statement) + never_for(fate.what), other});
      case RuleFate::Kind::never_reached:
        break;
    }
    add(statement, Weight::error, strong_marker, {"Not rendered", marked("Not rendered:", statement), other});
    if (m_advised.insert(fate.earlier).second)
      add(earlier, Weight::hint, finding_marker, {"Add 'continue':", marked("", earlier), ""});
  }

  // The key and value that each alternative begins with, of the keys that are looked at.
  static std::vector<std::string> leading_pairs(const StyleStatement& statement) {
    std::vector<std::string> pairs;
    for (const Alternative& alternative : parse_tests(statement.tests).value_or(std::vector<Alternative>{})) {
      for (const TagTest& test : alternative) {
        if (test.form == TagTest::Form::equals && is_leading_key(test.key)) pairs.push_back(test_text(test));
      }
    }
    return pairs;
  }

  void add_repetition(const std::vector<std::string>& pairs, const StyleStatement& statement) {
    for (const std::string& pair : pairs) {
      const auto parsed = m_parsed.find(pair);
      if (parsed == m_parsed.end()) continue;
      return add(statement, Weight::hint, finding_marker,
                 {"Check", marked("Check:", statement),
                  "Parsed: " + pair + " " + place_words(m_style, parsed->second)});
    }
  }

  const LoadedStyle& m_style;
  const StyleRules& m_rules;
  DoctorReport m_report;
  std::unordered_map<std::size_t, RuleFate> m_fates;
  std::unordered_map<std::string, StylePlace> m_parsed;
  std::unordered_set<std::size_t> m_advised;
};

}  // namespace

DoctorReport parse(const LoadedStyle& style) { return StyleCheck(style).run(); }

}  // namespace ferrowen
