// Where a style is and how its rule files get into memory. Styles are read only, never written.
#pragma once

#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "styletools/style_text.hpp"

namespace ferrowen {

struct StyleLocation {
  std::string folder;           // of the style
  std::string styles_folder;    // where included files are looked for when the style does not hold them
  std::string mkgmap_jar = {};  // the archive with mkgmap's own styles; "" where it is not known
};

// The folders found under the styles folder, in byte order.
std::vector<std::string> get_styles(const Settings& settings);
// A style by its name in the styles folder or by the path of its folder.
StyleLocation locate_style(const Settings& settings, const std::string& name_or_path);
// The style in a folder; its styles folder is the one above.
StyleLocation style_in_folder(const std::string& path);

// The rule file of a kind with its includes; without lines when there is none. A file that is there and
// cannot be read is a problem of the result. Rules of
// the styles that it is based on stand behind its own.
StyleText chknodata(const StyleLocation& style, RuleKind kind);
// The rules for relations: no types of their own, but tags that they give to members.
StyleText read_relations(const StyleLocation& style);
// What is wrong with the style as a whole: a style that it is based on and that is missing, its rules for
// relations. The problems name their files themselves.
std::vector<StyleProblem> style_problems(const StyleLocation& style);
// True when the style or one that it is based on has a rule file of the kind.
bool has_rule_file(const StyleLocation& style, RuleKind kind);
// Tells in one message which files are there and could not be read; nothing when all could.
void tell_unread(const StyleText& text, Prompts& prompts);
// Tells why there is nothing to work on: the style is missing, or its rule file is missing or empty.
void nodata(const StyleLocation& style, Prompts& prompts);

}  // namespace ferrowen
