// Language files (*.m5l): read, checked, written as a template, found in the languages folder, and put in
// place of the English texts.
//
// A file is UTF-8 text; CR is dropped. A line "mlanguage=NAME" names the language. The sections stand behind
// "<language>": <commands>, <settings>, <menus>, <tooltiptxt>, <labels>, each up to its closing tag, and
// <messages> up to the end of the file. The lines of a section begin below its tag and read "key:text"; "#"
// begins a comment; texts are never trimmed. What a line stands for:
//   commands    its position; the key only reminds the translator
//   messages    the key, a number from 1 to 250
//   all others  the key, in any order; unknown keys are left alone, so that a file survives changes of a list
// What a file leaves out stays English.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/interface_texts.hpp"
#include "app/workspace.hpp"
#include "base/status.hpp"

namespace ferrowen {

inline constexpr std::string_view language_ending = ".m5l";
// Larger files are no language files; a full one is a few ten thousand bytes.
inline constexpr std::uint64_t largest_language_file = 4ULL << 20U;

struct LanguageText {
  std::size_t line = 0;  // of the file, the first is 1
  std::string text;
};

struct LanguageProblem {
  std::size_t line = 0;  // 0: the whole file
  std::string text;
};

struct LanguageFile {
  bool marked = false;  // holds "<language>"; without it the file is no language file and all else is empty
  std::string display_name;
  std::map<int, LanguageText> messages;
  std::array<std::map<std::size_t, LanguageText>, section_count> texts;  // by position in the section's list
  std::vector<LanguageProblem> problems;  // in the order of the sections; long lists are cut off
};

LanguageFile parse_language(std::string_view text);
// Lines that are not UTF-8 or hold a NUL: a file with such lines is not loaded.
std::vector<std::size_t> unreadable_lines(std::string_view text);
// Everything that a translator has to look at, by line: the problems above, unreadable lines, empty texts,
// and texts whose ends differ from the English where the program appends something.
std::vector<LanguageProblem> check_language(std::string_view text);
// "line 12: ..."; a problem of the whole file stands alone.
std::string problem_text(const LanguageProblem& problem);
// The English texts as a language file with notes for translators; line ends are CR LF.
std::string language_template();

// Replaces the texts of the workspace by those of the file, on top of the English ones. An error changes
// nothing.
Status load_language(Workspace& workspace, const std::string& path);
void use_english(Workspace& workspace);
// The same by file name in the languages folder ("": English), and remembers the choice in the settings.
Status choose_language(Workspace& workspace, std::string_view file);

struct Language {
  std::string file;  // in the languages folder
  std::string display_name;
};

// The language files of the languages folder, by display name. English, which needs no file, is not among
// them.
std::vector<Language> loadlanguages(const Workspace& workspace);

}  // namespace ferrowen
