// The rules of a style text: statements as mkgmap reads them, spread over lines or not, and one row per
// Garmin type that they name. All in one pass over the text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "styletools/style_text.hpp"

namespace ferrowen {

// One statement: "tests {actions} [type ...]", or one of the words that stand alone.
struct StyleStatement {
  enum class Form : std::uint8_t { rule, include, finalize, if_begins, otherwise, if_ends };
  Form form = Form::rule;
  StylePlace place;
  std::uint32_t last_line = 0;     // of its file
  bool in_finalize = false;        // behind <finalize>: runs for what has been given a type
  bool is_of_base = false;         // of a style that this one is based on
  std::string text;                // its lines joined by a blank, without comments behind them
  std::string tests;               // what stands before "{" and "["
  std::string actions;             // what stands in "{" "}"; blocks are joined by ";"
  std::vector<std::string> types;  // what stands in each "[" "]"
  std::string condition;           // all that stands before its first "["
  bool has_late_actions = false;   // a second "{" "}", or one behind a type
  bool tests_name = false;
  std::vector<std::string> mkgmap_tags;  // tested, without "mkgmap:"
};

// A row of the rule table.
struct StyleRule {
  std::size_t statement = 0;
  std::uint32_t type = 0;  // as written behind "0x"; 0 when that is no number
  std::string key;         // the same as a type key
  std::string definition;  // what stands in "[" "]"
  int road_class = 0;      // 0: none; otherwise the class plus one
  double resolution = 0;   // 0: none
  double level = 0;        // 0: none
  bool has_continue = false, with_actions = false;
};

struct StyleRules {
  std::vector<StyleStatement> statements;  // in the order of the text: the rule file, then its includes
  std::vector<std::size_t> in_place;       // the same as mkgmap meets them: includes where they stand
  std::vector<StyleRule> rules;            // in the order of the text
  std::vector<std::string> types;          // the distinct keys, in that order
  std::vector<std::size_t> first_rules;    // of each of `types`
  std::vector<StyleProblem> problems;      // brackets that are never closed, then what mkgmap refuses

  [[nodiscard]] const StyleStatement& statement_of(const StyleRule& rule) const {
    return statements[rule.statement];
  }
};

// The rule table and the type list of a style text.
StyleRules get_styletypes(const StyleText& style);

// Whether a word stands in a type definition, outside of quotes.
bool has_word(std::string_view definition, std::string_view word);
// The number behind "0x" up to the first character that is no hexadecimal digit; 0 when there is none.
std::uint32_t get_type(std::string_view rule);
// The key of a number as it is written: without a subtype it gets "00".
std::string written_type_key(std::uint32_t type);
// The text of the resolution; of a range like 24-20 its first number; "" when there is none.
std::string get_resolution(std::string_view rule);
// " =" and "= " become "=".
std::string collapse_equals(std::string_view text);
// The text behind "road_class=" up to the next blank or "]"; "" when there is none.
std::string road_class_text(std::string_view rule);

}  // namespace ferrowen
