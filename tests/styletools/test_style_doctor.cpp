#include <doctest/doctest.h>

#include <tuple>

#include "base/text.hpp"
#include "styletools/rule_order.hpp"
#include "styletools/style_doctor.hpp"
#include "styletools/tag_actions.hpp"
#include "styletools/tag_tests.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;

namespace {

using Texts = std::vector<std::string>;

LoadedStyle style_of(const std::string& text, RuleKind kind = RuleKind::lines,
                     const std::string& included = "") {
  const IncludeSource source = [&](const StyleInclude& include, const std::string& folder) {
    return include.name == "inc" ? std::optional(StyleFileBytes{"inc", folder, included}) : std::nullopt;
  };
  LoadedStyle style;
  style.text = read_style_text(kind, {std::string(rule_file_name(kind)), "", text}, source);
  style.rules = get_styletypes(style.text);
  return style;
}

StyleRules rules_with(const std::string& text) { return style_of(text).rules; }

// The four columns of each row, joined by "|".
Texts rows_of(const DoctorReport& report) {
  Texts rows;
  for (const DoctorRow& row : report.rows)
    rows.push_back(row.marker + "|" + row.kind_text + "|" + row.finding + "|" + row.detail);
  return rows;
}

// "line finding", of the rows that count.
Texts issues_of(const DoctorReport& report) {
  Texts issues;
  for (const DoctorRow& row : report.rows)
    if (row.counts()) issues.push_back(std::to_string(row.line) + " " + row.finding);
  CHECK(issues.size() == report.issues);
  return issues;
}

TypDefinition drawn(unsigned type, const std::string& label, std::size_t level = 0, unsigned scheme = 0) {
  TypDefinition definition;
  definition.type = static_cast<std::uint16_t>(type);
  definition.key = type_key(type, 0);
  definition.labels = {{0, label}};
  definition.draw_order = level;
  definition.scheme = static_cast<std::uint8_t>(scheme);
  return definition;
}

TypFile typ_of(RuleKind kind, std::vector<TypDefinition> definitions) {
  TypFile typ;
  typ.definitions.at(static_cast<std::size_t>(kind)) = std::move(definitions);
  return typ;
}

constexpr const char* rule_of_marks = "#||--------------------|";

}  // namespace

TEST_CASE("REPORT: what the style uses and the TYP file does not draw, and the other way round") {
  const LoadedStyle style = style_of("a=b [0x01 resolution 20]\nc=d {name 'x'} [0x2f0c]\nc=e [0x2f0c]\n");
  const DoctorReport report =
      chk_typstl(style, typ_of(RuleKind::lines, {drawn(1, "Road"), drawn(9, "Path")}));
  CHECK(rows_of(report) == Texts{"#||REPORT|", rule_of_marks, "*|Lines|Not in TYP|c=d{name 'x'} ",
                                 "#|Lines|FOUND IN TYP FILE BUT|", "|||", "--------|Lines|NOT in STYLE|Path",
                                 "#||OTHER|", rule_of_marks, "#|Lines|In Style|Road"});
  CHECK(issues_of(report) == Texts{"2 Not in TYP"});
  CHECK(report.rows[2].key == "02F0C");
  const DoctorReport good = chk_typstl(style_of("a=b [0x01]"), typ_of(RuleKind::lines, {drawn(1, "Road")}));
  CHECK(rows_of(good).back() == "  |Lines|No Issues found|");
}

TEST_CASE("REPORT of polygons: draw order and transparency") {
  const LoadedStyle style = style_of("a=b [0x01]\nc=d [0x02]\n", RuleKind::polygons);
  const TypFile typ =
      typ_of(RuleKind::polygons, {drawn(1, "Wood", 3, 9), drawn(2, "Lake"), drawn(0x4c, "Sea"),
                                  drawn(5, "Park", 4, 13), drawn(6, "Car", 5, 14)});
  const Texts rows = rows_of(chk_typstl(style, typ, 5));
  const auto has = [&](const std::string& row) {
    return std::find(rows.begin(), rows.end(), row) != rows.end();
  };
  CHECK(has("#|Polygons|In Style|3) Wood (transparent)  draworder below 5"));
  CHECK(has("#|Polygons|In Style|Lake"));
  CHECK(has("*|Polygons|Polygon|No draworder 0x02"));
  CHECK(has("-|Polygons|Polygon|No draworder 0x4c"));
  CHECK(has("--------|Polygons|NOT in STYLE|4) Park"));
  CHECK(has("--------|Polygons|NOT in STYLE|5) Car (transparent) "));
  CHECK(chk_typstl(style, typ).issues == 1);
  const TypFile extended = typ_of(RuleKind::polygons, {drawn(0x10f, "Extended")});
  CHECK(contains(report_text(chk_typstl(style, extended)), "No draworder 0x10f00\r\n"));
}

TEST_CASE("ROAD CLASS: each suggestion, only where the class does not fit") {
  const std::tuple<const char*, const char*> cases[] = {
      {"highway=cycleway [0x16 road_class=0 resolution 23]", ""},
      {"highway=cycleway [0x16 road_class=1 resolution 23]", "(change road_class:0)"},
      {"highway=steps [0x16 road_class=2]", "(change road_class:0)"},
      {"highway=unclassified [0x06 road_class=1]", ""},
      {"highway=unclassified [0x06 road_class=2]", "(change road_class:1)"},
      {"highway=tertiary [0x05 road_class=3]", "(change road_class:1)"},
      {"highway=secondary [0x04 road_class = 3]", "(change road_class:2)"},
      {"highway=primary [0x03 road_class=4]", "(change road_class:3)"},
      {"highway=trunk [0x02 road_class=4]", ""},
      {"highway=trunk [0x02 road_class=2]", "(change road_class:4)"},
      {"highway=trunk & junction=roundabout & a=b [0x0c road_class=2]", ""},
      {"highway=trunk_link [0x09 road_class=4]", "(change road_class:3)"},
      {"highway=motorway_link [0x09 road_class=3]", ""},
      {"highway=motorway_link [0x09 road_class=4]", "(change road_class:3)"},
      {"highway=motorway [0x01 road_class=3]", "(change road_class:4)"},
      {"highway=motorway & a=tunnel & b=c [0x01 road_class=3]", ""},
      {"a=b [0x1c road_class=1]", "**Non routable**"},
      {"a=b [0x1a road_class=1]", ""},
      {"a=b [0x10c04 road_class=0]", "**Non routable**"},
      {"highway=track [0x2a road_class=1]", "**Non routable**(change road_class:0)"},
      {"a=b [0x13 resolution 20]", "Type expects Roadclass"},
      {"a=b [0x14 resolution 20]", ""},
      {"a=b [0x2d resolution 20]", "Type expects Roadclass"},
      {"a=b [0x17 resolution 20]", ""},
      {"a=b [0x13]", ""},
      {"# highway=primary [0x03 road_class=4]", ""},
  };
  for (const auto& [rule, finding] : cases) {
    const std::string shown = rule;
    CAPTURE(shown);
    const Texts issues = issues_of(parse_roadclass(style_of(rule)));
    CHECK(issues == (finding[0] == 0 ? Texts{} : Texts{std::string("1 ") + finding}));
  }
  const DoctorReport report = parse_roadclass(style_of("\nhighway=track [0x2a road_class=1 ]\n"));
  CHECK(
      rows_of(report) ==
      Texts{"#||ROAD CLASS|", rule_of_marks,
            "  |Lines|**Non routable** means take out road_class=xx and road_speed=xx|",
            "*|Lines|**Non routable**(change road_class:0)|2 Road Class 1 highway=track [0x2a road_class=1]",
            "  |Lines|2 Found possible errors:|"});
  CHECK(rows_of(parse_roadclass(style_of("a=b [0x20]"))).back() == "  |Lines|No issues found.|");
  CHECK(parse_roadclass(style_of("highway=track [0x2a road_class=1]", RuleKind::points)).rows.empty());
}

TEST_CASE(
    "RESOLUTION and LEVELS: largest first, equal ones in the order of the file, with their include letter") {
  const LoadedStyle style = style_of(
      "a=b [0x01 resolution 20]\n#c=c [0x02 resolution 24]\nd=d [0x03 Resolution 24-22]\ninclude 'inc';\n",
      RuleKind::lines, "e=e [0x04 resolution 20 level 3]\nf=f [0x05 resolution 26]\n");
  const DoctorReport report = resolution_list(style);
  CHECK(rows_of(report) == Texts{"#||RESOLUTION|", rule_of_marks, "#|Lines|RESOLUTION 26|",
                                 "*|Lines|2a) |f=f [0x05 resolution 26]", "#|Lines|RESOLUTION 24|",
                                 "  |Lines|3|d=d [0x03 Resolution 24-22]", "#|Lines|RESOLUTION 20|",
                                 "  |Lines|1|a=b [0x01 resolution 20]",
                                 "  |Lines|1a) |e=e [0x04 resolution 20 level 3]"});
  CHECK(report.rows[3].file == "inc");
  CHECK(rows_of(level_list(style)) == Texts{"#||LEVELS|", rule_of_marks, "#|Lines|LEVEL 3|",
                                            "  |Lines|1a) |e=e [0x04 resolution 20 level 3]"});
  CHECK(rows_of(level_list(style_of(""))).back() == "  |Lines|No data|");
}

TEST_CASE("tags of mkgmap's own and names, with the rules that ask for them") {
  const LoadedStyle style = style_of(
      "mkgmap:area2poi= true & mkgmap:region!=* [0x01]\na=b {name 'mkgmap:c'} [0x02]\n"
      "a=b & Int_Name=* [0x03]\n");
  CHECK(rows_of(parse_mkg(style)) ==
        Texts{"#||MKGMAP|", rule_of_marks,
              "  |Lines|mkgmap:area2poi, mkgmap:region|1 mkgmap:area2poi= true & mkgmap:region!=* [0x01]"});
  CHECK(rows_of(parsename(style)) ==
        Texts{"#||NAME|", rule_of_marks, "  |Lines|NAME|3 a=b & Int_Name=* [0x03]"});
  CHECK(rows_of(parsename(style_of("a=b [0x01]"))).back() == "  |Lines|No data|");
  CHECK(parse_mkg(style).issues == 0);
}

TEST_CASE("PLACES: sizes in their order of ranges") {
  const std::tuple<const char*, const char*> cases[] = {
      {"0x0400", " BOLD & BIG"}, {"0x05ff", " BOLD & BIG"},   {"0x0600", " BIG"},          {"0x0aff", " BIG"},
      {"0x0b00", " small"},      {"0x0e00", " BIG & NORMAL"}, {"0x1e3f", " BIG & NORMAL"},
  };
  for (const auto& [type, size] : cases) {
    const std::string rule = "place=x [" + std::string(type) + " resolution 20]";
    CHECK(rows_of(parseplaces(style_of(rule, RuleKind::points))).back() == "  |Points|1|" + rule + size);
  }
  for (const char* rule :
       {"place=x [0x1e40 resolution 20]", "place=x [0x0400]", "a=b [0x0400 resolution 20]"})
    CHECK(rows_of(parseplaces(style_of(rule, RuleKind::points))).back() == "  |Points|No data|");
}

TEST_CASE("tags that nothing sets; those of the map data and of mkgmap are not counted") {
  const DoctorReport report = parse_own(style_of(
      "a=b {set tmp:one='x'; add two = 'y'} [0x01]\n"
      "ref=* {name '${tmp:one} ${two}' | '${tmp:tow|def:}' | '$three'} [0x02 default_name '${mkgmap:mine}']\n"
      "c=d & e=$four & f != ${tmp:one} {name "
      "'${ref}${name}${mkgmap:country}${tmp:tow}${destination:ref}'}\n"));
  CHECK(issues_of(report) == Texts{"2 'tmp:tow' not found.", "2 'three' not found.",
                                   "2 'mkgmap:mine' not found.", "3 'four' not found."});
  CHECK(report.rows.size() == 8);
  CHECK(rows_of(parse_own(style_of("a=b {set c=d; name '${c}'}"))) == Texts{"  |Lines|No issues found.|"});
}

TEST_CASE("tags that relations give to their members are set") {
  const test::TempFolder folder;
  folder.write("s/lines", "a=b {name '${mkgmap:route} ${tmp:x}'} [0x01]");
  folder.write("s/relations", "type=route {\n apply role=a\n {set mkgmap:route='${name}'; set b=c}\n}\n");
  CHECK(issues_of(parse_own(load_style(style_in_folder(folder / "s/"), RuleKind::lines))) ==
        Texts{"1 'tmp:x' not found."});
}

TEST_CASE("rules that are commented out") {
  const DoctorReport report =
      parse_notused(style_of("#a=b [0x01]\n # [0X02 text ]\n# a=b\nc=d [0x03] # [0x04]\n"));
  CHECK(rows_of(report) == Texts{"*|Lines|Not Used|#a=b [0x01]", "*|Lines|Not Used|# [0X02 text]"});
  CHECK(rows_of(parse_notused(style_of("a=b [0x01]"))) ==
        Texts{"#||Style Check|", rule_of_marks, "  |Lines|No issues found.|"});
}

TEST_CASE("Style Check: each finding with its wording") {
  const DoctorReport report = parse(style_of(
      "highway=a [0x01]\nhighway=a & b=c [0x02]\nx=y [0x03]\naddr:housenumber=* [0x04]\n"
      "k=v {delete k}\nk=v [0x05]\nq=1 | x=y [0x06]\nhighway=b [0x07 continue]\nhighway=b [0x08]\n"));
  CHECK(rows_of(report) == Texts{"#||Style Check|", rule_of_marks,
                                 "***|Lines|Not rendered|[Not rendered:2] highway=a & b=c [0x02]",
                                 "*|Lines|Add 'continue':|[1] highway=a [0x01]", "*|Lines|Check POIs after|4",
                                 "*|Lines|Tag deleted: k|[Check:6] k=v [0x05]",
                                 "*|Lines|Check|[Check:7] q=1 | x=y [0x06] (never for x=y)",
                                 "*|Lines|Check|[Check:9] highway=b [0x08]"});
  CHECK(report.rows[2].other_place == "lines:1");
  CHECK(report.rows[6].other_place == "lines:3");
  CHECK(report.rows[7].other_place == "Parsed: highway=b lines:8");
  CHECK(rows_of(parse(style_of("a=b [0x01]\n"))).back() == "  |Lines|No issues found.|");
  CHECK(issues_of(parse(style_of("\ninclude 'no';\na=b [0x01\nc=d [0x02]"))) == Texts{"2 Check", "3 Check"});
}

TEST_CASE("Style Check: a rule is lost only when it is certain") {
  // The second rule of each is lost or not.
  const std::tuple<const char*, bool> cases[] = {
      {"a=b [0x01]\na=b [0x02]", true},
      {"a=b [0x01 continue]\na=b [0x02]", false},
      {"a=* [0x01]\na=b [0x02]", true},
      {"a=* [0x01]\na~'x' & c=d [0x02]", true},
      {"a=* [0x01]\na!=b [0x02]", false},
      {"a!=b & c=d [0x01]\na=x & c=d [0x02]", true},
      {"a!=b & c=d [0x01]\nc=d [0x02]", false},
      {"a=b & c=d [0x01]\na=b [0x02]", false},
      {"a=b | c=d [0x01]\nc=d & e=f [0x02]", true},
      {"a=b [0x01]\nx=y & (a=b & c=d | a=b & e=f) [0x02]", true},
      {"!(a=b | c=d) & e=f [0x01]\na=x & c=y & e=f [0x02]", true},
      {"!(a=b & c=d) & e=f [0x01]\na=x & e=f [0x02]", true},
      {"!(a=b & c=d) & e=f [0x01]\na=b & e=f [0x02]", false},
      {"a=b & length()>50 [0x01]\na=b & length()>50 & c=d [0x02]", true},
      {"a=b & length()>50 [0x01]\na=b & length()>40 [0x02]", false},
      // Tags that change in between.
      {"a=b [0x01]\nc=d {set a=b}\na=b [0x02]", false},
      {"a=b [0x01]\nc=d {set a=x; add e='${f}'}\na=b [0x02]", true},
      {"a=b [0x01]\nc=d {set a='${f}'}\na=b [0x02]", false},
      {"a=b [0x01]\nc=d {set a=b} [0x07 continue]\na=b [0x02]", true},
      {"a=b [0x01]\nc=d {set a=b} [0x07 continue with_actions]\na=b [0x02]", false},
      {"a!=b & c=d [0x01]\ne=f {delete a}\na!=b & c=d [0x02]", false},
      {"k=v {delete k}\nk=v [0x02]", true},
      {"k=v {delete k}\nc=d {set k=v}\nk=v [0x02]", false},
      {"k=v & c=d {delete k}\nk=v [0x02]", false},
      {"k=v {delete k}\nk!=v & c=d [0x02]", false},
      // Blocks.
      {"if (a=b) then\nc=d [0x01]\nend\nc=d [0x02]", false},
      {"if (a=b) then\nc=d [0x01]\nend\na=b & c=d [0x02]", true},
      {"if (a=b) then\nc=d [0x01]\nelse\nc=d [0x02]\nend", false},
      {"c=d [0x01]\nif (a=b) then\nc=d [0x02]\nend", true},
      {"if (a=b) then\n() {set a=c}\nx=y [0x01]\nend\na=b & x=y [0x02]", false},
      {"<finalize>\na=b [0x01]\na=b [0x02]", false},
      {"a=b [0x01 default_name 'to continue on']\na=b [0x02]", true},
      // Not understood: left alone.
      {"a=b & [0x01]\na=b [0x02]", false},
      {"a=$b [0x01]\na=$b [0x02]", false},
  };
  for (const auto& [text, lost] : cases) {
    const std::string shown = text;
    CAPTURE(shown);
    std::size_t found = 0;
    for (const DoctorRow& row : parse(style_of(text)).rows)
      if (row.finding == "Not rendered" || row.finding.starts_with("Tag deleted")) ++found;
    CHECK(found == (lost ? 1 : 0));
  }
}

TEST_CASE("Style Check: deleted tags, for whom they are lost") {
  const std::tuple<const char*, std::size_t, const char*> cases[] = {
      {"highway=footway {delete ref}\nhighway=* & ref=* [0x01]", 1,
       "(of objects that the earlier rule has matched)"},
      {"highway=footway {delete ref}\nhighway=path & ref=* [0x01]", 0, ""},
      {"highway=footway {delete ref}\nhighway=footway {set ref=x}\nhighway=* & ref=* [0x01]", 0, ""},
      {"ref~'x' {delete ref}\nhighway=* & ref=* [0x01]", 0, ""},
      {"a=1 {delete a}\nif (a=1 | b=2) then\nb=2 [0x01]\nend", 0, ""},
      {"a=1 {delete a}\na=1 | b=2 [0x01]", 1, "(never for a=1)"},
  };
  for (const auto& [text, count, detail] : cases) {
    const std::string shown = text;
    CAPTURE(shown);
    const DoctorReport report = parse(style_of(text));
    CHECK(report.issues == count);
    if (count > 0) CHECK(contains(report.rows[2].detail, detail));
  }
}

TEST_CASE(
    "Style Check: a block with a long condition costs no more than a short one and hides nothing inside") {
  std::string text = "if (a=0";
  for (int number = 1; number < 120; ++number)
    text += " | a=" + std::to_string(number);
  text += ") then\n";
  for (int number = 0; number < 300; ++number)
    text += "b=" + std::to_string(number) + " [0x01]\n";
  text += "b=7 & c=1 [0x02]\nelse\nb=7 & c=1 [0x03]\nend\nb=7 [0x04]\n";
  const DoctorReport report = parse(style_of(text));
  CHECK(issues_of(report) == Texts{"302 Not rendered", "9 Add 'continue':"});
}

TEST_CASE("what is wrong with the rules for relations is told once, whatever the kind") {
  const test::TempFolder folder;
  folder.write("points", "a=b [0x01]\n");
  folder.write("lines", "a=b [0x01]\n");
  folder.write("relations", "include 'gone';\ntype=x {sett a=b}\n");
  DoctorReport report;
  for (const RuleKind kind : {RuleKind::lines, RuleKind::points})
    report.append(parse(load_style(style_in_folder(folder.path()), kind)));
  CHECK(issues_of(report) == Texts{"1 Check", "2 Check"});
  CHECK(report.rows[2].file == folder / "relations");
  CHECK(report.rows[2].detail == "The included file 'gone' is missing.");
  CHECK(report.rows[3].detail == "'sett' is no action.");
}

TEST_CASE("Style Check: many rules with the same first test hide none that is lost") {
  std::string general = "highway=x [0x01]\n";
  std::string special = "highway=x & a!=1 [0x01]\n";
  for (int number = 0; number < 70; ++number) {
    general += "highway=x & n!=" + std::to_string(number) + " [0x02]\n";
    special += "highway=x & c!=2 & n!=" + std::to_string(number) + " [0x02]\n";
  }
  for (const std::string& text : {general + "highway=x & z=1 [0x03]", special + "highway=x & a=5 [0x03]"}) {
    const std::vector<DoctorRow> rows = parse(style_of(text)).rows;
    const auto lost = std::find_if(rows.begin(), rows.end(), [](const DoctorRow& row) {
      return row.line == 72 && row.finding == "Not rendered";
    });
    REQUIRE(lost != rows.end());
    CHECK(lost->other_place == "lines:1");
  }
}

TEST_CASE("Style Check: neither deep blocks nor unfinished references cost more than their length") {
  std::string blocks, ends;
  for (int level = 0; level < 20000; ++level) {
    blocks += "if (k" + std::to_string(level) + "=v) then\n";
    ends += "end\n";
  }
  const StyleRules deep = rules_with(blocks + "a=b [0x01]\na=b [0x02]\n" + ends);
  CHECK(fates_of_rules(deep).empty());  // of so deep a place nothing is known
  CHECK(fates_of_rules(rules_with("if (k=v) then\na=b [0x01]\na=b [0x02]\nend\n")).size() == 1);
  std::string references;
  for (int count = 0; count < 500000; ++count)
    references += "${";
  CHECK(referred_tags(references + "a}") == Texts{"a"});
  CHECK(referred_tags("name '${a|def:b}' | '${c' | '$d' | '$e") == Texts{"a", "c", "d", "e"});
}

TEST_CASE("a rule file that could not be read passes no check") {
  const LoadedStyle style = style_of("\xFF\xFEno text");
  const TypFile typ = typ_of(RuleKind::lines, {drawn(1, "Road")});
  for (const DoctorCheck check : doctor_checks)
    CHECK(rows_of(run_check(check, style, &typ)) ==
          Texts{"***|Lines|Check|This text is in UTF-16; mkgmap reads UTF-8."});
  CHECK(whole_report({style}, typ).issues == 1);
}

TEST_CASE("damage of the TYP file stands at the head of the report") {
  TypFile typ = typ_of(RuleKind::lines, {drawn(1, "Road")});
  CHECK(typ_damage(typ).rows.empty());
  for (std::size_t offset = 0; offset < 25; ++offset)
    typ.findings.push_back({offset, "damaged"});
  const std::vector<LoadedStyle> kinds{style_of("a=b [0x01]")};
  const Texts rows = rows_of(whole_report(kinds, typ));
  CHECK(rows.front() == "***||Check|TYP file, byte 0: damaged");
  CHECK(rows.at(20) == "***||Check|TYP file, 5 more findings");
  CHECK(std::count(rows.begin(), rows.end(), "  |Lines|No Issues found|") == 0);
}

TEST_CASE("rules are judged where mkgmap meets them: included ones where their include line stands") {
  const char* text = "include 'inc';\na=b [0x01]\n";
  const Texts issues = issues_of(parse(style_of(text, RuleKind::lines, "a=b & c=d [0x02]\n")));
  CHECK(issues.empty());
  const DoctorReport lost =
      parse(style_of("a=b [0x01]\ninclude 'inc';", RuleKind::lines, "\na=b & c=d [0x02]"));
  CHECK(lost.rows[2].finding == "Not rendered");
  CHECK(lost.rows[2].file == "inc");
  CHECK(lost.rows[2].line == 2);
}

TEST_CASE("the whole report and the texts made of reports") {
  std::vector<LoadedStyle> kinds;
  for (const RuleKind kind : rule_kinds)
    kinds.push_back(style_of("a=\"b\" [0x01]", kind));
  TypFile typ = typ_of(RuleKind::lines, {drawn(1, "Road")});
  const DoctorReport report = whole_report(kinds, typ);
  CHECK(report.issues == 2);
  const std::string results = results_text(report, "/styles/mine");
  CHECK(results.starts_with("Style:\t/styles/mine\r\n#\t\tPOLYGONS\t\r\n"));
  CHECK(contains(results, "\r\n*\tPGNS\tNot in TYP\ta=\"b\" \r\n"));
  CHECK(contains(results, "\r\n  \tLines\tNo Issues found\t\r\n#\t\tPOINTS\t"));
  CHECK(contains(report_text(report), "*\tPolygons\tNot in TYP\ta=\"b\" \r\n"));
  CHECK(contains(report_csv(report),
                 "typ,warning,\"Points\",00100,\"points\",1,\"Not in TYP\",\"a=\"\"b\"\" \",\"\"\r\n"));
  CHECK(contains(report_lines(report), "polygons:1: warning: [typ] Polygons 00100: Not in TYP: a=\"b\"\n"));
  CHECK(check_named("road-class") == DoctorCheck::road_class);
  CHECK_FALSE(check_named("road"));
}

TEST_CASE("tests become alternatives; what is not understood or too much becomes none") {
  const auto texts = [](std::string_view tests) {
    std::string all;
    for (const Alternative& alternative : parse_tests(tests).value_or(std::vector<Alternative>{})) {
      for (const TagTest& test : alternative)
        all += test_text(test) + " ";
      all += "/ ";
    }
    return all;
  };
  CHECK(texts("b=1 & (a='x y' | !(c=*)) & d~'[0-9]|x'") == "a=x y b=1 d~[0-9]|x / b=1 c!=* d~[0-9]|x / ");
  CHECK(texts("maxspeedkmh() > 50 & $a != \"*\"") == "a!=* maxspeedkmh()>50 / ");
  for (const char* wrong : {"", "a", "a=", "(a=b", "a=b)", "a=b c=d", "'a=b", "is_in(a=b", "&"})
    CHECK_FALSE(parse_tests(wrong));
  std::string many = "(a=1|a=2)";
  for (int index = 0; index < 20; ++index)
    many += "&(x" + std::to_string(index) + "=1|y=2)";
  CHECK_FALSE(parse_tests(many));
  CHECK_FALSE(parse_tests(std::string(100000, '(')));
  CHECK_FALSE(parse_tests(std::string(100000, '!')));
}
