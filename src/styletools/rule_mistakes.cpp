#include "styletools/rule_mistakes.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "styletools/tag_actions.hpp"

namespace ferrowen {

namespace {

constexpr int deepest_bracket = 100;
constexpr std::string_view word_ends = " =!<>~&|()";
constexpr std::string_view quotes = "'\"";

// Their results are no tags: mkgmap finds no objects by them.
constexpr std::string_view functions[] = {
    "length",      "is_closed", "is_complete", "area_size", "maxspeedkmh",
    "maxspeedmph", "type",      "osmid",       "is_in",     "is_drive_on_left",
};
constexpr std::string_view action_words[] = {
    "set",   "add",        "delete", "deletealltags", "rename",    "name",      "addlabel",
    "apply", "apply_once", "echo",   "echotags",      "addaccess", "setaccess",
};
constexpr std::string_view list_actions[] = {"name", "addlabel", "addaccess", "setaccess"};
constexpr std::string_view type_words[] = {
    "copy", "continue", "propagate", "with_actions", "withactions", "no_propagate", "oneway", "access",
};
constexpr std::string_view number_words[] = {"resolution", "level", "road_class", "road_speed"};

template <typename Words>
bool is_one_of(std::string_view word, const Words& words) {
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

bool begins_with_one_of(std::string_view text, std::string_view characters) {
  return !text.empty() && contains(characters, text.substr(0, 1));
}

// Of such characters mkgmap's words consist; each other one is a word of its own.
bool is_word_character(char c) {
  return (c & 0x80) != 0 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         contains("_-.:", std::string_view(&c, 1));
}

std::string beginning_of(std::string_view text) {
  constexpr std::size_t longest = 30;
  text = text.substr(0, longest);
  text.remove_suffix(unfinished_utf8_tail(text));
  return std::string(text);
}

std::string in_quotes(std::string_view word) {
  constexpr std::size_t longest = 60;
  word = word.substr(0, longest);
  word.remove_suffix(unfinished_utf8_tail(word));
  return "'" + std::string(word) + "'";
}

// Whether mkgmap can find objects by a part of a condition, as it stands and negated.
struct Index {
  bool plain = true, opposite = true;
};

// Recursive descent over a condition that keeps what it finds out and no alternatives: its cost is that of
// the text.
class ConditionReader {
 public:
  explicit ConditionReader(std::string_view text) : m_text(trim(text)) {}

  ConditionState read() {
    if (m_text.empty()) return {"The condition of this rule is missing.", true, true};
    const Index found = either();
    if (m_mistake.empty() && !m_gave_up && !m_text.empty())
      fail(m_text.front() == ')' ? "')' closes nothing." : "There is something behind the test: " + rest());
    if (!m_mistake.empty() || m_gave_up) return {m_mistake, true, true};
    return {"", found.plain, found.opposite};
  }

 private:
  void fail(std::string text) {
    if (m_mistake.empty() && !m_gave_up) m_mistake = std::move(text);
  }
  [[nodiscard]] bool is_over() const { return !m_mistake.empty() || m_gave_up; }

  [[nodiscard]] std::string rest() const { return beginning_of(m_text); }

  bool take(std::string_view sign) {
    m_text = trim(m_text);
    if (!m_text.starts_with(sign)) return false;
    m_text.remove_prefix(sign.size());
    m_text = trim(m_text);
    return true;
  }

  Index either() {
    Index found = together();
    while (!is_over() && take("|")) {
      const Index next = together();
      found = {found.plain && next.plain, found.opposite || next.opposite};
    }
    return found;
  }

  Index together() {
    Index found = one();
    while (!is_over() && take("&")) {
      const Index next = one();
      found = {found.plain || next.plain, found.opposite && next.opposite};
    }
    return found;
  }

  Index one() {
    if (m_depth > deepest_bracket) {
      m_gave_up = true;
      return {};
    }
    if (take("!")) return negated();
    if (!take("(")) return single();
    if (take(")")) return {};
    ++m_depth;
    const Index found = either();
    --m_depth;
    if (!is_over() && !take(")")) fail("'(' is never closed.");
    return found;
  }

  // mkgmap reads "!a=b" as "(!a)=b".
  Index negated() {
    ++m_negations;
    ++m_depth;
    const bool is_bare = !begins_with_one_of(m_text, "(!");
    const Index found = one();
    if (is_bare && !is_over() && !m_was_alone) fail("'!' stands before a test without brackets.");
    --m_depth;
    --m_negations;
    return {found.opposite, found.plain};
  }

  Index single() {
    bool is_function = false;
    const std::string_view key = operand(is_function);
    if (is_over()) return {};
    const std::string_view sign = take_sign();
    m_was_alone = sign.empty();
    if (sign.empty()) {
      if (m_negations == 0) fail("'" + std::string(key) + "' is not compared with anything.");
      return {true, false};  // "!a" is "a!=*"
    }
    bool is_value_function = false;
    operand(is_value_function);
    if (is_function) return {false, false};
    if (sign == "!=") return {false, true};
    return {true, false};
  }

  std::string_view take_sign() {
    if (take("!~")) fail("mkgmap does not know '!~': put '!' before the test in brackets.");
    for (const std::string_view sign : {"!=", "<=", ">=", "=", "<", ">", "~"}) {
      if (take(sign)) return sign;
    }
    return "";
  }

  std::string_view operand(bool& is_function) {
    m_text = trim(m_text);
    if (begins_with_one_of(m_text, quotes)) return quoted();
    const std::string_view word = m_text.substr(0, m_text.find_first_of(word_ends));
    if (word.empty()) {
      fail(m_text.empty() ? "The condition ends where a test is expected."
                          : "A test is expected before: " + rest());
      return word;
    }
    const bool stands_alone = word == "*" || word.front() == '$';
    if (!stands_alone && !std::all_of(word.begin(), word.end(), is_word_character))
      fail(in_quotes(word) + " must stand in quotes.");
    m_text = trim(m_text.substr(word.size()));
    if (!m_text.starts_with('(')) return word;
    const std::size_t end = m_text.find(')');
    if (end == std::string_view::npos) fail("'(' is never closed.");
    m_text = end == std::string_view::npos ? std::string_view{} : m_text.substr(end + 1);
    // Functions that are not known here may be found by mkgmap.
    is_function = is_one_of(word, functions);
    return word;
  }

  std::string_view quoted() {
    const std::size_t end = m_text.find(m_text.front(), 1);
    if (end == std::string_view::npos) {
      fail("A quote of this condition is never closed.");
      return {};
    }
    const std::string_view word = m_text.substr(1, end - 1);
    m_text = m_text.substr(end + 1);
    return word;
  }

  std::string_view m_text;
  std::string m_mistake;
  int m_depth = 0, m_negations = 0;
  bool m_was_alone = false;  // the last test was a key alone
  bool m_gave_up = false;
};

// Walks the actions of a rule word by word, as mkgmap does.
class ActionReader {
 public:
  explicit ActionReader(std::string_view text) : m_rest(trim(text)) {
    while (m_rest.ends_with(';'))
      m_rest = trim(m_rest.substr(0, m_rest.size() - 1));
  }

  std::string read() {
    std::string_view last;  // the action that has just ended, until a ';'
    while (!m_rest.empty()) {
      const std::string_view before = m_rest;
      const std::string_view word = next();
      if (word == ";" || word == "}") {
        last = {};
        continue;
      }
      if (!is_one_of(word, action_words)) {
        if (last.empty()) return in_quotes(word) + " is no action.";
        return "There is something behind " + in_quotes(last) + ": " + beginning_of(before) +
               " (a value of more than one word needs quotes)";
      }
      if (!take_arguments(word)) return in_quotes(word) + " lacks its tag or its value.";
      last = word;
    }
    return "";
  }

 private:
  // The next word, quoted text or sign; "" at the end.
  std::string_view next() {
    std::size_t end = 0;
    while (end < m_rest.size() && is_word_character(m_rest[end]))
      ++end;
    if (begins_with_one_of(m_rest, quotes)) end = m_rest.find(m_rest.front(), 1);
    if (end < m_rest.size() && !is_word_character(m_rest[end]) && (end == 0 || m_rest.front() == m_rest[end]))
      ++end;
    const std::string_view word = m_rest.substr(0, end);
    m_rest = trim(m_rest.substr(word.size()));
    return word;
  }

  bool take(std::string_view sign) {
    if (!m_rest.starts_with(sign)) return false;
    next();
    return true;
  }

  bool take_value() {
    if (m_rest.empty() || contains(";|}", m_rest.substr(0, 1))) return false;
    next();
    return true;
  }

  bool take_values() {
    do {
      if (!take_value()) return false;
    } while (take("|"));
    return true;
  }

  bool take_arguments(std::string_view action) {
    if (action == "set" || action == "add") return take_value() && take("=") && take_values();
    if (is_one_of(action, list_actions)) return take_values();
    if (action == "deletealltags") return true;
    if (action == "rename") return take_value() && take_value();
    if (!action.starts_with("apply")) return take_value();
    const bool names_role = m_rest.starts_with("role");
    if (names_role) next();
    if (names_role && !(take("=") && !m_rest.starts_with('{') && take_value())) return false;
    take("{");
    return true;
  }

  std::string_view m_rest;
};

// The words of a type definition: blanks and "=" part them, quoted text is one.
std::vector<std::string_view> definition_words(std::string_view text) {
  std::vector<std::string_view> words;
  for (text = trim(text); !text.empty(); text = trim(text)) {
    std::size_t end = text.find_first_of(" ='\"");
    if (end == 0 && text.front() != '=') end = text.find(text.front(), 1);
    if (end == std::string_view::npos) end = text.size();
    if (end < text.size() && contains("='\"", text.substr(end, 1)) && (end == 0 || text.front() == text[end]))
      ++end;
    words.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return words;
}

bool is_type_number(std::string_view word) {
  const bool is_hexadecimal = word.starts_with("0x") || word.starts_with("0X");
  if (!is_hexadecimal) return is_digits(word);
  word.remove_prefix(2);
  return !word.empty() && word.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

// "20", of levels and resolutions "24-20" too.
bool is_number(std::string_view word, bool may_be_range) {
  const std::size_t sign = may_be_range ? word.find('-') : std::string_view::npos;
  if (sign == std::string_view::npos) return is_digits(word);
  return is_digits(word.substr(0, sign)) && is_digits(word.substr(sign + 1));
}

// Walks the rules and the blocks of "if" that they stand in.
class MistakeWalk {
 public:
  explicit MistakeWalk(const StyleRules& rules) : m_rules(rules) {}

  std::vector<StyleProblem> run() {
    for (const std::size_t index : m_rules.in_place) {
      const StyleStatement& statement = m_rules.statements[index];
      std::string mistake = mistake_of(statement);
      if (!mistake.empty()) m_found.push_back({statement.place, std::move(mistake)});
    }
    return std::move(m_found);
  }

 private:
  std::string mistake_of(const StyleStatement& statement) {
    using enum StyleStatement::Form;
    switch (statement.form) {
      case if_begins:
        return begin_block(statement);
      case otherwise:
        if (m_blocks.empty()) return "'else' stands outside of every 'if'.";
        m_blocks.back().is_in_else = true;
        return "";
      case if_ends:
        if (m_blocks.empty()) return "'end' ends no 'if'.";
        m_blocks.pop_back();
        return "";
      case rule:
        return rule_mistake(statement);
      case include:
      case finalize:
        break;
    }
    return "";
  }

  std::string begin_block(const StyleStatement& statement) {
    const bool is_found_by_others = blocks_are_indexable();
    ConditionState state = examine_condition(statement.tests);
    m_blocks.push_back({state.is_indexable, state.is_opposite_indexable, false});
    if (!statement.text.ends_with("then")) return "'then' is missing behind the condition of 'if'.";
    if (state.mistake.empty() && !statement.tests.starts_with('('))
      return "The condition of 'if' must begin with '('.";
    if (state.mistake.empty() && !state.is_indexable && !is_found_by_others) return not_indexable;
    return std::move(state.mistake);
  }

  [[nodiscard]] std::string rule_mistake(const StyleStatement& statement) const {
    ConditionState state = examine_condition(statement.tests);
    if (!state.mistake.empty()) return std::move(state.mistake);
    if (statement.has_late_actions)
      return "A rule has one block of actions at most, and it stands before the types.";
    if (std::string mistake = action_mistake(statement.actions); !mistake.empty()) return mistake;
    for (const std::string& definition : statement.types)
      if (std::string mistake = type_mistake(definition); !mistake.empty()) return mistake;
    if (statement.types.empty() && statement.actions.empty())
      return "This rule has neither actions nor a type.";
    if (statement.in_finalize && !statement.types.empty())
      return "A rule behind <finalize> must not have a type.";
    return state.is_indexable || blocks_are_indexable() ? "" : not_indexable;
  }

  [[nodiscard]] bool blocks_are_indexable() const {
    return std::any_of(m_blocks.begin(), m_blocks.end(), [](const Block& block) {
      return block.is_in_else ? block.is_opposite_indexable : block.is_indexable;
    });
  }

  struct Block {
    bool is_indexable, is_opposite_indexable, is_in_else;
  };
  static constexpr const char* not_indexable =
      "Nothing in this condition names a tag that must be there: mkgmap needs one in each alternative.";

  const StyleRules& m_rules;
  std::vector<Block> m_blocks;
  std::vector<StyleProblem> m_found;
};

}  // namespace

std::vector<StyleProblem> rule_mistakes(const StyleRules& rules) { return MistakeWalk(rules).run(); }

ConditionState examine_condition(std::string_view tests) { return ConditionReader(tests).read(); }

std::string action_mistake(std::string_view actions) { return ActionReader(actions).read(); }

std::string type_mistake(std::string_view definition) {
  const std::vector<std::string_view> words = definition_words(definition);
  if (words.empty() || !is_type_number(words.front()))
    return "A type must begin with its number" +
           (words.empty() ? "." : ", not with " + in_quotes(words[0]) + ".");
  for (std::size_t at = 1; at < words.size(); ++at) {
    const std::string_view word = words[at];
    if (is_one_of(word, type_words)) continue;
    const bool is_name = word == "default_name";
    if (!is_name && !is_one_of(word, number_words)) return in_quotes(word) + " is unknown in a type.";
    const bool may_be_range = word == "resolution" || word == "level";
    if (!may_be_range && at + 1 < words.size() && words[at + 1] == "=") ++at;
    const std::string_view value = ++at < words.size() ? words[at] : std::string_view{};
    if (!is_name && !is_number(value, may_be_range))
      return "The number behind '" + std::string(word) + "' is missing.";
  }
  return "";
}

}  // namespace ferrowen
