#include "styletools/style_doctor.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "styletools/doctor_rows.hpp"
#include "styletools/tag_actions.hpp"

namespace ferrowen {

LoadedStyle load_style(const StyleLocation& style, RuleKind kind) {
  LoadedStyle loaded;
  loaded.text = chknodata(style, kind);
  loaded.rules = get_styletypes(loaded.text);
  loaded.style_problems = style_problems(style);
  const StyleText relations = read_relations(style);
  for (const std::string& unread : relations.unread)
    loaded.text.unread.push_back(unread);
  for (const StyleStatement& statement : get_styletypes(relations).statements) {
    for (TagAction& action : tag_actions(statement.actions)) {
      if (action.form == TagAction::Form::sets) loaded.relation_tags.push_back(std::move(action.key));
    }
  }
  return loaded;
}

DoctorRow row_of(DoctorCheck check, const LoadedStyle& style) {
  DoctorRow row;
  row.check = check;
  row.kind = style.text.kind;
  row.kind_text = kind_title(row.kind);
  return row;
}

DoctorRow row_at(DoctorCheck check, const LoadedStyle& style, StylePlace place) {
  DoctorRow row = row_of(check, style);
  if (place.file < style.text.files.size()) row.file = style.text.files[place.file].path;
  row.line = place.line;
  return row;
}

DoctorRow problem_row(DoctorCheck check, const LoadedStyle& style, const StyleProblem& problem) {
  DoctorRow row = row_at(check, style, problem.place);
  if (!problem.path.empty()) row.file = problem.path;
  row.weight = problem.is_note ? Weight::note : Weight::error;
  row.marker = problem.is_note ? plain_marker : strong_marker;
  row.finding = "Check";
  row.detail = problem.text;
  return row;
}

void add_no_issues(DoctorReport& report, DoctorRow row, const char* text) {
  row.weight = Weight::heading;
  row.marker = plain_marker;
  row.finding = text;
  report.add(std::move(row));
}

std::string shown_rule(std::string_view text) {
  constexpr std::size_t longest = 2000;
  if (text.size() <= longest) return std::string(text);
  text = text.substr(0, longest);
  text.remove_suffix(unfinished_utf8_tail(text));
  return std::string(text) + " ...";
}

std::string place_words(const LoadedStyle& style, StylePlace place) {
  const StyleFile& file = style.text.files.at(place.file);
  const bool is_only_one = std::count_if(style.text.files.begin(), style.text.files.end(),
                                         [&](const StyleFile& one) { return one.name == file.name; }) == 1;
  return (is_only_one ? file.name : file.path) + ":" + std::to_string(place.line);
}

namespace {

// A rule file that could not be read is not one without rules: every check says so, and nothing else.
DoctorReport unread_report(DoctorCheck check, const LoadedStyle& style) {
  DoctorReport report;
  for (const StyleProblem& problem : style.text.problems)
    report.add(problem_row(check, style, problem));
  return report;
}

// Place names are points, road classes belong to lines: the lists of other files would say nothing.
bool says_something(DoctorCheck check, RuleKind kind, const Examination& examination) {
  if (check == DoctorCheck::places) return kind == RuleKind::points || examination.kind_is_chosen;
  return check != DoctorCheck::road_class || kind == RuleKind::lines;
}

}  // namespace

DoctorReport run_check(DoctorCheck check, const LoadedStyle& style, const TypFile* typ,
                       std::size_t lowest_draw_order) {
  if (style.text.is_empty() && !style.text.problems.empty()) return unread_report(check, style);
  switch (check) {
    case DoctorCheck::typ:
      return typ == nullptr ? DoctorReport{} : chk_typstl(style, *typ, lowest_draw_order);
    case DoctorCheck::road_class:
      return parse_roadclass(style);
    case DoctorCheck::resolution:
      return resolution_list(style);
    case DoctorCheck::level:
      return level_list(style);
    case DoctorCheck::tags:
      return parse_own(style);
    case DoctorCheck::unused:
      return parse_notused(style);
    case DoctorCheck::style:
      return parse(style);
    case DoctorCheck::mkgmap:
      return parse_mkg(style);
    case DoctorCheck::names:
      return parsename(style);
    case DoctorCheck::places:
      break;
  }
  return parseplaces(style);
}

bool asks_for(const Examination& examination, DoctorCheck check) {
  const std::vector<DoctorCheck>& asked = examination.checks;
  return std::find(asked.begin(), asked.end(), check) != asked.end();
}

std::string idle_check(const Examination& examination) {
  for (const DoctorCheck check : examination.checks) {
    const bool has_work = std::any_of(
        examination.kinds.begin(), examination.kinds.end(),
        [&](const LoadedStyle* style) { return says_something(check, style->text.kind, examination); });
    if (!has_work)
      return "The check '" + std::string(check_name(check)) + "' has nothing to look at: it is for " +
             (check == DoctorCheck::places ? "points" : "lines") + " alone.";
  }
  return "";
}

DoctorReport examine(const Examination& examination) {
  DoctorReport report = examination.typ == nullptr ? DoctorReport{} : typ_damage(*examination.typ);
  for (const LoadedStyle* style : examination.kinds) {
    for (const DoctorCheck check : doctor_checks) {
      if (!examination.checks.empty() && !asks_for(examination, check)) continue;
      if (says_something(check, style->text.kind, examination))
        report.append(run_check(check, *style, examination.typ, examination.lowest_draw_order));
    }
  }
  return report;
}

DoctorReport whole_report(const std::vector<LoadedStyle>& kinds, const TypFile& typ,
                          std::size_t lowest_draw_order) {
  DoctorReport report = typ_damage(typ);
  for (const LoadedStyle& style : kinds) {
    putheader(report, row_of(DoctorCheck::typ, style), upper_ascii(kind_title(style.text.kind)));
    report.append(run_check(DoctorCheck::typ, style, &typ, lowest_draw_order));
  }
  return report;
}

}  // namespace ferrowen
