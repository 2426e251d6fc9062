#include "styletools/tag_tests.hpp"

#include <algorithm>
#include <iterator>

#include "base/text.hpp"

namespace ferrowen {

namespace {

using Alternatives = std::vector<Alternative>;

constexpr std::size_t most_alternatives = 128;
constexpr int deepest_bracket = 50;
constexpr std::string_view word_ends = " =!<>~&|()";

bool is_before(const TagTest& left, const TagTest& right) {
  if (left.key != right.key) return left.key < right.key;
  if (left.form != right.form) return left.form < right.form;
  return left.value < right.value;
}

TagTest negated(TagTest test) {
  using enum TagTest::Form;
  switch (test.form) {
    case equals:
      test.form = differs;
      break;
    case differs:
      test.form = equals;
      break;
    case exists:
      test.form = missing;
      break;
    case missing:
      test.form = exists;
      break;
    case needs:
    case other:
      test.value = test.value.starts_with("!") ? test.value.substr(1) : "!" + test.value;
      test.form = other;
      break;
  }
  return test;
}

// Recursive descent over the text of the tests; `negate` turns what is read into its opposite.
class TestParser {
 public:
  explicit TestParser(std::string_view text) : m_text(text) {}

  std::optional<Alternatives> all() {
    std::optional<Alternatives> found = either(false);
    skip_blanks();
    return m_text.empty() ? found : std::nullopt;
  }

 private:
  void skip_blanks() { m_text = trim(m_text); }

  bool take(std::string_view sign) {
    skip_blanks();
    if (!m_text.starts_with(sign)) return false;
    m_text.remove_prefix(sign.size());
    return true;
  }

  static std::optional<Alternatives> join(std::optional<Alternatives> left, std::optional<Alternatives> right,
                                          bool both) {
    if (!left || !right) return std::nullopt;
    if (both) return both_hold(*left, *right);
    if (left->size() + right->size() > most_alternatives) return std::nullopt;
    std::move(right->begin(), right->end(), std::back_inserter(*left));
    return left;
  }

  std::optional<Alternatives> either(bool negate) {
    std::optional<Alternatives> found = together(negate);
    while (found && take("|"))
      found = join(std::move(found), together(negate), negate);
    return found;
  }

  std::optional<Alternatives> together(bool negate) {
    std::optional<Alternatives> found = one(negate);
    while (found && take("&"))
      found = join(std::move(found), one(negate), !negate);
    return found;
  }

  std::optional<Alternatives> one(bool negate) {
    if (m_depth > deepest_bracket) return std::nullopt;
    if (take("!")) {
      ++m_depth;
      std::optional<Alternatives> found = one(!negate);
      --m_depth;
      return found;
    }
    if (!take("(")) return single(negate);
    if (take(")")) return negate ? Alternatives{} : Alternatives{{}};  // "()" always holds
    ++m_depth;
    std::optional<Alternatives> found = either(negate);
    --m_depth;
    return take(")") ? found : std::nullopt;
  }

  // A word, quoted or not.
  std::optional<std::string> word() {
    skip_blanks();
    if (m_text.empty()) return std::nullopt;
    if (m_text.front() == '\'' || m_text.front() == '"') {
      const std::size_t end = m_text.find(m_text.front(), 1);
      if (end == std::string_view::npos) return std::nullopt;
      std::string quoted(m_text.substr(1, end - 1));
      m_text.remove_prefix(end + 1);
      return quoted;
    }
    const std::string found(m_text.substr(0, m_text.find_first_of(word_ends)));
    m_text.remove_prefix(found.size());
    return found.empty() ? std::nullopt : std::optional(found);
  }

  // What stands in the round brackets behind a function's name, with them.
  std::optional<std::string> function_arguments() {
    if (!m_text.starts_with('(')) return "";
    const std::size_t end = m_text.find(')');
    if (end == std::string_view::npos) return std::nullopt;
    std::string arguments(m_text.substr(0, end + 1));
    m_text.remove_prefix(end + 1);
    return arguments;
  }

  std::optional<Alternatives> single(bool negate) {
    std::optional<std::string> key = word();
    if (!key) return std::nullopt;
    const std::optional<std::string> arguments = function_arguments();
    if (!arguments) return std::nullopt;
    if (key->starts_with('$')) key->erase(0, 1);
    skip_blanks();
    std::string sign;
    for (const std::string_view known : {"!=", "<=", ">=", "=", "<", ">", "~"}) {
      if (sign.empty() && take(known)) sign = known;
    }
    if (sign.empty() && arguments->empty()) return std::nullopt;
    skip_blanks();
    const bool is_quoted = m_text.starts_with('\'') || m_text.starts_with('"');
    const std::optional<std::string> value = sign.empty() ? "" : word();
    if (!value) return std::nullopt;
    TagTest test = test_of(*key + *arguments, sign, *value, is_quoted);
    return Alternatives{{negate ? negated(std::move(test)) : std::move(test)}};
  }

  static TagTest test_of(const std::string& key, const std::string& sign, const std::string& value,
                         bool is_quoted) {
    using enum TagTest::Form;
    const bool is_function = key.ends_with(')');
    const bool is_reference = !is_quoted && value.starts_with('$');
    if (is_function) return {other, key, key + sign + value};
    if (!is_quoted && value == "*" && sign == "=") return {exists, key, ""};
    if (!is_quoted && value == "*" && sign == "!=") return {missing, key, ""};
    if (sign == "=" && !is_reference) return {equals, key, value};
    if (sign == "!=" && !is_reference) return {differs, key, value};
    return {sign == "!=" ? other : needs, key, key + sign + value};
  }

  std::string_view m_text;
  int m_depth = 0;
};

}  // namespace

std::optional<std::vector<Alternative>> parse_tests(std::string_view tests) {
  return TestParser(tests).all();
}

std::optional<std::vector<Alternative>> both_hold(const std::vector<Alternative>& left,
                                                  const std::vector<Alternative>& right) {
  if (left.size() * right.size() > most_alternatives) return std::nullopt;
  Alternatives found;
  found.reserve(left.size() * right.size());
  for (const Alternative& one : left) {
    for (const Alternative& other : right) {
      Alternative both;
      std::set_union(one.begin(), one.end(), other.begin(), other.end(), std::back_inserter(both), is_before);
      found.push_back(std::move(both));
    }
  }
  return found;
}

std::optional<std::vector<Alternative>> none_holds(const std::vector<Alternative>& alternatives) {
  std::optional<Alternatives> found = Alternatives{{}};
  for (const Alternative& alternative : alternatives) {
    Alternatives opposites;
    for (const TagTest& test : alternative)
      opposites.push_back({negated(test)});
    if (found) found = both_hold(*found, opposites);
  }
  return found;
}

bool implies(const TagTest& now, const TagTest& then) {
  using enum TagTest::Form;
  if (now == then) return true;
  if (now.key != then.key) return false;
  if (then.form == exists) return now.is_positive();
  if (then.form == differs) return now.form == missing || (now.form == equals && now.value != then.value);
  return false;
}

std::string test_text(const TagTest& test) {
  using enum TagTest::Form;
  switch (test.form) {
    case equals:
      return test.key + "=" + test.value;
    case differs:
      return test.key + "!=" + test.value;
    case exists:
      return test.key + "=*";
    case missing:
      return test.key + "!=*";
    case needs:
    case other:
      break;
  }
  return test.value;
}

}  // namespace ferrowen
