// Automation scripts (".auto"): their tags, the reader of their text, and what is wrong with one.
//
// A script is a text of lines: "<ferrowen>", then one "<tag>value</tag>" a line, then "</ferrowen>". Tags are
// compared in lower case; values keep their case.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

enum class AutoTagKind : std::uint8_t {
  file,      // full path of an existing file
  text,      // anything, blank too
  number,    // whole number above 0
  yes_no,    // "yes" or "no"
  fid,       // family ID, or "auto"
  map_id,    // 8 digits
  typ,       // full path, "current", or blank for none
  style,     // name of a style folder
  contours,  // "yes", "no" or "clip"
  hgt,       // folder, or "auto"
  option,    // one mkgmap option; may stand several times
};

struct AutoTag {
  std::string_view name;
  AutoTagKind kind;
  std::string_view meaning;  // one sentence for a person
};

inline constexpr std::string_view auto_root = "ferrowen";
inline constexpr std::string_view auto_ending = ".auto";
// Every tag, in the order that new scripts have them.
const std::vector<AutoTag>& auto_tags();
// nullptr for a name that is no tag; case does not count.
const AutoTag* find_auto_tag(std::string_view name);

struct AutoSetting {
  std::string tag;  // lower case
  std::string value;
  std::size_t line = 0;  // counted from 1
};

struct AutoProblem {
  std::size_t line = 0;
  std::string text;
};

struct AutoScript {
  std::vector<AutoSetting> settings;  // known tags alone, in the order of the text
  std::vector<AutoProblem> problems;  // by their lines

  // The value of a tag; nothing when it does not stand there.
  [[nodiscard]] std::optional<std::string> value(std::string_view tag) const;
  // The values of a tag that may stand several times.
  [[nodiscard]] std::vector<std::string> values(std::string_view tag) const;
};

// Reads the bytes of a script: UTF-8 or the system's code page, lines that end with CR LF or LF. Whatever the
// bytes are, the problems say what could not be read; a few thousand problems end the reading.
AutoScript parse_auto_script(std::string_view bytes);

// What is there on this system, as far as a script can name it.
struct AutoFacts {
  std::function<bool(const std::string&)> file_exists, folder_exists, style_exists;
};
// All problems of a script, those of its values included, by their lines. Blank values of tags other than
// texts mean that the settings stay as they are; a script without an input file has a problem.
std::vector<AutoProblem> check_auto_script(const AutoScript& script, const AutoFacts& facts);
// "line 3: ..." each, and after the first of many how many more there are.
std::vector<std::string> problem_lines(const std::vector<AutoProblem>& problems);

// "yes", "no", "auto", ... in any case.
bool is_word(std::string_view value, std::string_view word);

}  // namespace ferrowen
