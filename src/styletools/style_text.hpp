// The text of one rule file of an mkgmap style with the files that it includes, normalised line by line.
// Every line keeps its file and number. Never throws on bad bytes; what was wrong stands in `problems`.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "styletools/type_key.hpp"

namespace ferrowen {

struct StylePlace {
  std::uint32_t file = 0;  // index into StyleText::files
  std::uint32_t line = 0;  // from 1; 0: the file as a whole
};

struct StyleLine {
  StylePlace place;  // of its first piece, where several lines were joined
  std::string text;  // normalised, without line end
};

struct StyleFile {
  std::string name;                            // "lines", or as its include line names it: "inc/roads"
  std::string path;                            // where it was found
  std::string folder;                          // of the style that it belongs to
  std::size_t first_line = 0, line_count = 0;  // its part of StyleText::lines
  bool is_rule_file = false;                   // not included by another one
  bool is_base = false;                        // belongs to a style that this one is based on
};

// An include line; `target` is the index of the file, nothing when there is none.
struct StyleInclude {
  StylePlace place;
  std::string name;   // in the case written
  std::string style;  // behind "from"; "" elsewhere
  std::optional<std::uint32_t> target;
};

struct StyleProblem {
  StylePlace place;
  std::string text;
  std::string path = {};  // of the file, where it is none of StyleText::files
  bool is_note = false;   // nothing is wrong; something was not looked at
};

struct StyleText {
  RuleKind kind = RuleKind::polygons;
  std::vector<StyleFile> files;  // the rule file, then the included ones, each once, in the order met
  std::vector<StyleLine> lines;  // of all files in that order
  std::vector<StyleInclude> includes;
  std::vector<StyleProblem> problems;
  std::vector<std::string> unread;  // files that are there and could not be read; also among `problems`

  [[nodiscard]] bool is_empty() const { return lines.empty(); }
  // Neither rules nor anything to say about them.
  [[nodiscard]] bool is_missing() const { return lines.empty() && problems.empty(); }
  // The whole text as it is shown, with CR LF.
  [[nodiscard]] std::string text() const;
};

// A file as it was found: bytes as they are on the disk.
struct StyleFileBytes {
  std::string path, folder, bytes;
  std::string name = {};   // of a rule file, where it is another one than that of its kind
  std::string note = {};   // why it was not read although it is there; no file is set then
  bool is_broken = false;  // something is wrong with what it would have been read from
};
// Finds what an include line names, seen from the folder of the style that the line stands in.
using IncludeSource =
    std::function<std::optional<StyleFileBytes>(const StyleInclude& include, const std::string& folder)>;

StyleText read_style_text(RuleKind kind, const StyleFileBytes& rule_file, const IncludeSource& source);
// The same with the rule files of the styles that it is based on, in the order in which mkgmap reads them.
// Without a rule file of its own the first one is that of a base too.
StyleText read_style_text(RuleKind kind, const std::vector<StyleFileBytes>& rule_files,
                          const IncludeSource& source);

// The include names of a text, one per line; of a line that includes nothing "".
std::string chk_include(std::string_view text);
// Why a line that is meant to include something includes nothing; "" for every other line.
std::string include_mistake(std::string_view line);
// "a) ", "b) ", ... "z) ", "aa) ", "ab) ", ... of an included file; "" for the rule file itself.
std::string include_letter(std::uint32_t file);
// "Include:" and the included files, each behind its letter.
std::string include_label(const StyleText& style);

}  // namespace ferrowen
