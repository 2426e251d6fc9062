#include "styletools/style_rules.hpp"

#include <charconv>
#include <map>
#include <unordered_set>
#include <utility>

#include "base/text.hpp"
#include "styletools/rule_mistakes.hpp"
#include "styletools/style_statements.hpp"

namespace ferrowen {

namespace {

constexpr int hexadecimal = 16;
constexpr std::string_view type_mark = "0x";

// Number behind a keyword of a type definition; 0 when it is not there.
double number_behind(std::string_view definition, std::string_view keyword) {
  const std::size_t at = definition.find(keyword);
  return at == std::string_view::npos ? 0 : lenient_number(definition.substr(at + keyword.size()));
}

// The tags of a condition that begin with "mkgmap:", each up to "=", "!" or a blank.
std::vector<std::string> mkgmap_tags(std::string_view condition) {
  constexpr std::string_view prefix = "mkgmap:";
  std::vector<std::string> tags;
  for (std::size_t at = condition.find(prefix); at != std::string_view::npos;
       at = condition.find(prefix, at + 1)) {
    const std::string_view rest = condition.substr(at + prefix.size());
    tags.emplace_back(rest.substr(0, rest.find_first_of("=! ")));
  }
  return tags;
}

void parse_roadclass(StyleRule& rule) {
  const std::string text = road_class_text(rule.definition);
  if (!text.empty()) rule.road_class = static_cast<int>(lenient_whole_number(text)) + 1;
}

StyleRule rule_of(std::size_t index, const std::string& definition) {
  StyleRule rule;
  rule.statement = index;
  rule.definition = definition;
  rule.type = get_type(definition);
  rule.key = written_type_key(rule.type);
  parse_roadclass(rule);
  rule.resolution = lenient_number(get_resolution(definition));
  rule.level = number_behind(definition, "level ");
  rule.has_continue = has_word(definition, "continue");
  rule.with_actions = has_word(definition, "with_actions");
  return rule;
}

// What a condition tests besides its type.
void parse_condition(StyleStatement& statement) {
  const std::string tests = collapse_equals(statement.tests);
  statement.tests_name = contains_ignoring_case(tests, "name");
  statement.mkgmap_tags = mkgmap_tags(tests);
}

void add_rules(StyleRules& rules) {
  std::unordered_set<std::string> known;
  const auto add = [&](std::size_t index, const std::string& definition) {
    rules.rules.push_back(rule_of(index, definition));
    if (!known.insert(rules.rules.back().key).second) return;
    rules.types.push_back(rules.rules.back().key);
    rules.first_rules.push_back(rules.rules.size() - 1);
  };
  for (std::size_t index = 0; index < rules.statements.size(); ++index) {
    StyleStatement& statement = rules.statements[index];
    if (statement.form != StyleStatement::Form::rule) continue;
    parse_condition(statement);
    for (const std::string& definition : statement.types) {
      if (contains(definition, type_mark)) add(index, definition);
    }
    // A type that stands without its bracket.
    if (statement.types.empty() && statement.actions.empty() && contains(statement.text, type_mark))
      add(index, statement.text);
  }
}

// Puts the statements of included files where their include lines stand.
class PlaceWalk {
 public:
  PlaceWalk(const StyleText& style, StyleRules& rules, std::vector<std::size_t> starts)
      : m_style(style), m_rules(rules), m_starts(std::move(starts)), m_done(style.files.size()) {
    for (const StyleInclude& include : m_style.includes) {
      if (include.target) m_targets.emplace(key(include.place), *include.target);
    }
  }

  // The rule file; what its include lines do not lead to stands behind it.
  void walk_all() {
    for (std::uint32_t file = 0; file < m_style.files.size(); ++file)
      walk(file);
  }

 private:
  void walk(std::uint32_t file) {
    if (m_done[file]) return;
    m_done[file] = true;
    if (m_style.files[file].is_rule_file) m_finalize = false;
    for (std::size_t at = m_starts[file]; at < m_starts[file + 1]; ++at) {
      const StyleStatement& statement = m_rules.statements[at];
      if (m_finalize) m_rules.statements[at].in_finalize = true;
      m_rules.statements[at].is_of_base = m_style.files[file].is_base;
      if (statement.form == StyleStatement::Form::finalize) m_finalize = true;
      m_rules.in_place.push_back(at);
      if (statement.form == StyleStatement::Form::include) follow(StylePlace(statement.place));
    }
  }

  static std::pair<std::uint32_t, std::uint32_t> key(StylePlace place) { return {place.file, place.line}; }

  void follow(StylePlace place) {
    if (const auto target = m_targets.find(key(place)); target != m_targets.end()) walk(target->second);
  }

  const StyleText& m_style;
  StyleRules& m_rules;
  std::vector<std::size_t> m_starts;
  std::vector<bool> m_done;
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> m_targets;
  bool m_finalize = false;
};

}  // namespace

StyleRules get_styletypes(const StyleText& style) {
  StyleRules rules;
  std::vector<std::size_t> starts;
  for (const StyleFile& file : style.files) {
    starts.push_back(rules.statements.size());
    read_statements(style, file, rules.statements, rules.problems);
  }
  starts.push_back(rules.statements.size());
  add_rules(rules);
  PlaceWalk(style, rules, std::move(starts)).walk_all();
  for (StyleProblem& mistake : rule_mistakes(rules))
    rules.problems.push_back(std::move(mistake));
  return rules;
}

bool has_word(std::string_view definition, std::string_view word) {
  char quote = 0;
  std::size_t begin = 0;
  for (std::size_t at = 0; at <= definition.size(); ++at) {
    const char c = at < definition.size() ? definition[at] : ' ';
    const bool is_quote = quote != 0 ? c == quote : c == '\'' || c == '"';
    if (quote == 0 && (c == ' ' || c == ']' || is_quote)) {
      if (definition.substr(begin, at - begin) == word) return true;
      begin = at + 1;
    }
    if (!is_quote) continue;
    quote = quote != 0 ? '\0' : c;
    begin = at + 1;
  }
  return false;
}

std::uint32_t get_type(std::string_view rule) {
  const std::size_t at = rule.find(type_mark);
  if (at == std::string_view::npos) return 0;
  const std::string_view digits = rule.substr(at + type_mark.size());
  std::uint32_t type = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), type, hexadecimal);
  return error == std::errc{} ? type : 0;
}

std::string written_type_key(std::uint32_t type) {
  constexpr std::size_t longest_without_subtype = 2;
  constexpr std::size_t key_length = 5;
  std::string key = hexadecimal_text(type);
  if (key.size() <= longest_without_subtype) key += "00";
  return key.size() < key_length ? std::string(key_length - key.size(), '0') + key : key;
}

std::string get_resolution(std::string_view rule) {
  constexpr std::string_view word = "resolution";
  const std::string lower = lower_ascii(rule);
  const std::size_t at = lower.find(word);
  if (at == std::string::npos) return "";
  std::string_view value = trim(std::string_view(lower).substr(at + word.size()));
  value = value.substr(0, value.find_first_of(" ]"));
  return std::string(value.substr(0, value.find('-')));
}

std::string collapse_equals(std::string_view text) {
  if (!contains(text, " =") && !contains(text, "= ")) return std::string(text);
  return replace_all(replace_all(text, " =", "="), "= ", "=");
}

std::string road_class_text(std::string_view rule) {
  constexpr std::string_view word = "road_class=";
  const std::string text = collapse_equals(rule);
  const std::size_t at = text.find(word);
  if (at == std::string::npos) return "";
  const std::string_view value = std::string_view(text).substr(at + word.size());
  return std::string(value.substr(0, value.find_first_of(" ]")));
}

}  // namespace ferrowen
