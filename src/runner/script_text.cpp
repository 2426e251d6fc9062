#include "runner/script_text.hpp"

#include <algorithm>
#include <vector>

#include "base/text.hpp"

namespace ferrowen {

namespace {

// Walks over a script and tells for every byte whether it is the shell's own text: outside quotes, not
// escaped and not in a comment. The quotes themselves are not.
class Scanner {
 public:
  Scanner(std::string_view script, Dialect dialect) : m_script(script), m_dialect(dialect) {}

  std::vector<bool> outside() {
    m_outside.assign(m_script.size(), false);
    for (m_at = 0; m_at < m_script.size(); ++m_at)
      m_outside[m_at] = m_dialect == Dialect::batch ? step_batch(m_script[m_at]) : step_shell(m_script[m_at]);
    return std::move(m_outside);
  }

 private:
  bool step_batch(char c) {
    if (c == '\n') m_quote = '\0';  // a quote that is not closed ends with its line
    if (m_quote == '\0' && c == '^') return skip_next();
    if (c != '"') return m_quote == '\0';
    m_quote = m_quote == '\0' ? '"' : '\0';
    return false;
  }

  bool step_shell(char c) {
    if (m_comment) {
      m_comment = c != '\n';
      return !m_comment;
    }
    if (c == '\\' && m_quote != '\'') return skip_next();
    if (m_quote != '\0') {
      if (c == m_quote) m_quote = '\0';
      return false;
    }
    if (c == '"' || c == '\'') {
      m_quote = c;
      return false;
    }
    m_comment = c == '#' && (m_at == 0 || contains(" \t\n;&|(", m_script.substr(m_at - 1, 1)));
    return !m_comment;
  }

  bool skip_next() {
    // The escaped byte keeps its "not outside"; behind the last byte there is none.
    if (m_at + 1 < m_script.size()) ++m_at;
    return false;
  }

  std::string_view m_script;
  Dialect m_dialect;
  std::vector<bool> m_outside;
  std::size_t m_at = 0;
  char m_quote = '\0';
  bool m_comment = false;
};

std::vector<bool> outside_quotes(std::string_view script, Dialect dialect) {
  return Scanner(script, dialect).outside();
}

bool is_space(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool begins_word(std::string_view script, std::size_t at) { return at == 0 || is_space(script[at - 1]); }

// Words behind which the next word is a command as well.
bool is_prefix_word(std::string_view word_text) {
  constexpr std::string_view prefixes[] = {"call", "exec", "time", "nice", "then", "else", "do"};
  return std::find(std::begin(prefixes), std::end(prefixes), word_text) != std::end(prefixes);
}

// True when the word that begins at `at` is the name of a command.
bool is_command_position(std::string_view script, std::size_t at) {
  const std::string_view before = script.substr(0, at);
  const std::size_t last = before.find_last_not_of(" \t");
  if (last == std::string_view::npos || contains("\r\n&|;(@", before.substr(last, 1))) return true;
  if (last + 1 == at) return false;  // the end of another word
  const std::size_t start = before.find_last_of(" \t\r\n&|;(@", last);
  const std::size_t first = start == std::string_view::npos ? 0 : start + 1;
  return is_prefix_word(before.substr(first, last + 1 - first)) && is_command_position(script, first);
}

// Offset of the first word outside quotes that begins with `text`.
std::size_t find_word(std::string_view script, std::string_view text, Dialect dialect) {
  const std::vector<bool> outside = outside_quotes(script, dialect);
  std::size_t at = script.find(text);
  while (at != std::string_view::npos && !(outside[at] && begins_word(script, at)))
    at = script.find(text, at + 1);
  return at;
}

}  // namespace

Result<std::string> add_log_option(std::string_view script, const std::string& properties_path,
                                   Dialect dialect) {
  constexpr std::string_view java = "java ";
  Result<std::string> log_option = render_argument(quoted_option("-Dlog.config", properties_path), dialect);
  if (!log_option.ok()) return log_option;
  const std::vector<bool> outside = outside_quotes(script, dialect);
  std::string result;
  for (std::size_t i = 0; i < script.size(); ++i) {
    result += script[i];
    const std::size_t start = i + 1 - std::min(i + 1, java.size());
    if (script.substr(start, i + 1 - start) == java && outside[start] && outside[i] &&
        is_command_position(script, start))
      result += " " + log_option.value + " ";
  }
  return {result, ""};
}

std::string backslashes_outside_quotes(std::string_view script, Dialect dialect) {
  const std::vector<bool> outside = outside_quotes(script, dialect);
  std::string result(script);
  for (std::size_t i = 0; i < script.size(); ++i) {
    if (script[i] == '/' && outside[i] && !begins_word(script, i)) result[i] = '\\';
  }
  return result;
}

std::string collapse_outside_quotes(std::string_view script, Dialect dialect) {
  const std::vector<bool> outside = outside_quotes(script, dialect);
  std::string result;
  for (std::size_t i = 0; i < script.size(); ++i) {
    const bool repeats = i > 0 && script[i] == ' ' && script[i - 1] == ' ' && outside[i] && outside[i - 1];
    if (!repeats) result += script[i];
  }
  return result;
}

std::optional<std::string> map_name_option(std::string_view script, Dialect dialect) {
  constexpr std::string_view name = "--mapname=";
  const std::size_t at = find_word(script, name, dialect);
  if (at == std::string_view::npos) return std::nullopt;
  const std::vector<bool> outside = outside_quotes(script, dialect);
  std::string value;
  for (std::size_t i = at + name.size(); i < script.size() && !(outside[i] && is_space(script[i])); ++i) {
    if (script[i] != '"' && script[i] != '\'') value += script[i];
  }
  return value;
}

bool has_option(std::string_view script, std::string_view option_name, Dialect dialect) {
  return find_word(script, option_name, dialect) != std::string_view::npos;
}

// In UTF-8 no letter holds this byte.
std::string blanks_for_code_250(std::string_view script) { return replace_all(script, "\xFA", " "); }

}  // namespace ferrowen
