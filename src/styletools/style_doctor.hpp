// The checks of the Style Doctor. Each takes what was read and returns the rows of its report; none changes
// anything. Texts of the rows are the report's own wording.
#pragma once

#include <string>
#include <vector>

#include "styletools/doctor_report.hpp"
#include "styletools/style_reader.hpp"
#include "styletools/style_rules.hpp"
#include "styletools/typ_file.hpp"

namespace ferrowen {

// One rule file, read and cut into rules.
struct LoadedStyle {
  StyleText text;
  StyleRules rules;
  std::vector<std::string> relation_tags;    // that the rules for relations give to members
  std::vector<StyleProblem> style_problems;  // of the style as a whole; the same for every kind
};
LoadedStyle load_style(const StyleLocation& style, RuleKind kind);

// REPORT: types of the style that the TYP file does not draw, and the other way round. A polygon drawn below
// `lowest_draw_order` that is transparent is told so; 0 tells none.
DoctorReport chk_typstl(const LoadedStyle& style, const TypFile& typ, std::size_t lowest_draw_order = 0);
// What was wrong with the TYP file itself, at the head of a report; empty when nothing was.
DoctorReport typ_damage(const TypFile& typ);
// ROAD CLASS; of lines alone, empty for the other kinds.
DoctorReport parse_roadclass(const LoadedStyle& style);
// RESOLUTION and LEVELS: the rules by value, largest first.
DoctorReport resolution_list(const LoadedStyle& style);
DoctorReport level_list(const LoadedStyle& style);
// Tags that values refer to and that no action of the style sets.
DoctorReport parse_own(const LoadedStyle& style);
// Rules that are commented out.
DoctorReport parse_notused(const LoadedStyle& style);
// Style Check: rules that earlier ones keep from ever matching, deleted tags, files that are missing.
DoctorReport parse(const LoadedStyle& style);
// PLACES: the size in which place names are written.
DoctorReport parseplaces(const LoadedStyle& style);
// The tags of mkgmap's own that conditions test, and the rules that ask for a name.
DoctorReport parse_mkg(const LoadedStyle& style);
DoctorReport parsename(const LoadedStyle& style);

// One of them; the TYP check needs a TYP file and is empty without one.
DoctorReport run_check(DoctorCheck check, const LoadedStyle& style, const TypFile* typ,
                       std::size_t lowest_draw_order = 0);
// What is examined in one go; nothing of it is copied.
struct Examination {
  std::vector<const LoadedStyle*> kinds;
  const TypFile* typ = nullptr;     // without one its check finds nothing
  std::vector<DoctorCheck> checks;  // asked for by name; none: all of them
  bool kind_is_chosen = false;      // of all rule files this one was asked for
  std::size_t lowest_draw_order = 0;
};
bool asks_for(const Examination& examination, DoctorCheck check);
// A check that was asked for and that no rule file has anything for, which must not look like one that found
// nothing: what to say of it; "" when each has something to look at.
std::string idle_check(const Examination& examination);
DoctorReport examine(const Examination& examination);
// "Command13": the TYP check of all three kinds, each below the name of its kind.
DoctorReport whole_report(const std::vector<LoadedStyle>& kinds, const TypFile& typ,
                          std::size_t lowest_draw_order = 0);

}  // namespace ferrowen
