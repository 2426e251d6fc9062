#include "styletools/style_statements.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "styletools/style_scan.hpp"

namespace ferrowen {

namespace {

// Where a line is in a statement: which bracket is open, what stood last.
struct Brackets {
  int round = 0;
  int inner = 0;
  char open = 0;  // '{' or '[': the block that is open
  char last = 0;  // last character that is no blank
  bool any_block = false;
  bool in_reference = false;  // of a condition: ${tag}

  void take(char c) {
    if (c == ' ') return;
    const bool begins_reference = open == 0 && c == '{' && last == '$';
    last = c;
    if (begins_reference || in_reference) {
      in_reference = c != '}';
      return;
    }
    if (open == 0) {
      if (c == '(') ++round;
      if (c == ')' && round > 0) --round;
      if (c == '{' || c == '[') {
        open = c;
        round = 0;
        any_block = true;
      }
    } else if (open == '[') {
      if (c == ']') open = 0;
    } else if (c == '{') {
      ++inner;  // of "apply {...}"
    } else if (c == '}' && inner-- == 0) {
      open = 0;
      inner = 0;
    }
  }
};

bool is_word(std::string_view line, std::string_view word) {
  return line.starts_with(word) &&
         (line.size() == word.size() || contains(" (;", line.substr(word.size(), 1)));
}

StyleStatement::Form form_of(std::string_view line) {
  using enum StyleStatement::Form;
  if (line == "<finalize>") return finalize;
  if (is_word(line, "if")) return if_begins;
  if (line == "else") return otherwise;
  if (line == "end") return if_ends;
  return chk_include(line).empty() ? rule : include;
}

bool goes_on(const StyleStatement& statement, const Brackets& brackets, std::string_view next) {
  if (statement.form == StyleStatement::Form::if_begins)
    return !statement.text.ends_with("then") && !contains(next, "[0x");
  if (statement.form != StyleStatement::Form::rule || statement.text.empty()) return false;
  if (brackets.open != 0 || brackets.round > 0 || next.front() == '[') return true;
  if (brackets.any_block) return false;
  return next.front() == '{' || contains("&|)=<>~", next.substr(0, 1)) || next.starts_with("!=") ||
         contains("&|!=<>~", std::string_view(&brackets.last, 1));
}

// A block that is open when the next rule with a type begins was never closed.
bool was_never_closed(const Brackets& brackets, std::string_view next) {
  if (brackets.open != 0 && !chk_include(next).empty()) return true;
  if (brackets.open == '[') return contains(next, "[") && !contains(next.substr(0, next.find('[')), "]");
  return brackets.open == '{' && contains(next, "[0x") && !contains(next.substr(0, next.find("[0x")), "}");
}

class StatementReader {
 public:
  StatementReader(std::vector<StyleStatement>& statements, std::vector<StyleProblem>& problems)
      : m_statements(statements), m_problems(problems) {}

  void take(const StyleLine& line) {
    for (std::string_view text = without_comment(line.text); !text.empty();) {
      const std::size_t end = end_of_rule(text);
      take_piece(line.place, trim(text.substr(0, end)));
      text = trim(text.substr(end));
    }
  }

  void end() {
    if (m_brackets.open != 0) report_open();
    finish();
  }

 private:
  void take_piece(StylePlace place, std::string_view text) {
    if (was_never_closed(m_brackets, text)) {
      report_open();
      finish();
    } else if (!goes_on(m_statement, m_brackets, text)) {
      finish();
    }
    if (m_statement.text.empty()) begin(place, text);
    if (!m_statement.text.empty()) m_statement.text += ' ';
    m_statement.text += text;
    m_statement.last_line = place.line;
    scan(text, [this](char c, std::size_t) {
      m_brackets.take(c);
      return true;
    });
  }

  // Where a rule ends and another one begins on the same line.
  [[nodiscard]] std::size_t end_of_rule(std::string_view text) const {
    const bool is_new = m_statement.text.empty() || was_never_closed(m_brackets, text) ||
                        !goes_on(m_statement, m_brackets, text);
    if (is_new) {
      if (text.starts_with("else ")) return 4;
      if (text.starts_with("end ")) return 3;
      const std::size_t then = is_word(text, "if") ? text.find("then ") : std::string_view::npos;
      if (then != std::string_view::npos) return then + 4;
    }
    Brackets brackets = is_new ? Brackets{} : m_brackets;
    std::size_t end = text.size();
    scan(text, [&](char c, std::size_t at) {
      const bool was_open = brackets.open != 0;
      brackets.take(c);
      if (!was_open || brackets.open != 0) return true;
      const std::string_view rest = trim(text.substr(at + 1));
      if (!rest.empty() && !contains("[{", rest.substr(0, 1))) end = at + 1;
      return end == text.size();
    });
    return end;
  }

  void begin(StylePlace place, std::string_view text) {
    m_statement.place = place;
    m_statement.form = form_of(text);
    if (m_statement.form == StyleStatement::Form::finalize) m_in_finalize = true;
    m_statement.in_finalize = m_in_finalize;
  }

  void report_open() {
    m_problems.push_back(
        {m_statement.place, std::string("'") + m_brackets.open + "' is opened here and never closed."});
  }

  void finish() {
    if (!m_statement.text.empty()) {
      cut(m_statement);
      m_statements.push_back(std::move(m_statement));
    }
    m_statement = {};
    m_brackets = {};
  }

  // The pieces of the finished text.
  static void cut(StyleStatement& statement) {
    const std::string_view text = statement.text;
    if (statement.form == StyleStatement::Form::if_begins) {
      statement.tests =
          trim(text.substr(2, text.ends_with("then") ? text.size() - 6 : std::string_view::npos));
      return;
    }
    if (statement.form != StyleStatement::Form::rule) return;
    Brackets brackets;
    std::size_t begin = 0;
    std::size_t tests_end = text.size();
    bool any_block = false;
    const auto close = [&](std::size_t at) {
      const std::string_view block = trim(text.substr(begin, at - begin));
      if (brackets.open == '[')
        statement.types.emplace_back(block);
      else if (brackets.open == '{')
        statement.actions.append(block).append(";");
      if (brackets.open == '{' && any_block) statement.has_late_actions = true;
      any_block = true;
    };
    scan(text, [&](char c, std::size_t at) {
      Brackets after = brackets;
      after.take(c);
      if (brackets.open == 0 && after.open != 0) {
        tests_end = std::min(tests_end, at);
        if (c == '[' && statement.condition.empty()) statement.condition = text.substr(0, at);
        begin = at + 1;
      }
      if (brackets.open != 0 && after.open == 0) close(at);
      brackets = after;
      return true;
    });
    if (brackets.open != 0) close(text.size());
    statement.tests = trim(text.substr(0, tests_end));
  }

  std::vector<StyleStatement>& m_statements;
  std::vector<StyleProblem>& m_problems;
  StyleStatement m_statement;
  Brackets m_brackets;
  bool m_in_finalize = false;
};

}  // namespace

void read_statements(const StyleText& style, const StyleFile& file, std::vector<StyleStatement>& statements,
                     std::vector<StyleProblem>& problems) {
  StatementReader reader(statements, problems);
  for (std::size_t at = file.first_line; at < file.first_line + file.line_count; ++at)
    reader.take(style.lines[at]);
  reader.end();
}

}  // namespace ferrowen
