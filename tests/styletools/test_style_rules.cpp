#include <doctest/doctest.h>

#include <map>
#include <tuple>

#include "base/text.hpp"
#include "styletools/style_rules.hpp"

using namespace ferrowen;

namespace {

using Files = std::map<std::string, std::string>;

StyleText style_of(const std::string& text, const Files& files = {}) {
  const IncludeSource source = [&](const StyleInclude& include,
                                   const std::string& folder) -> std::optional<StyleFileBytes> {
    const auto file = files.find(include.style.empty() ? include.name : include.style + ":" + include.name);
    if (file == files.end()) return std::nullopt;
    return StyleFileBytes{file->first, folder, file->second};
  };
  return read_style_text(RuleKind::lines, {"lines", "", text}, source);
}

StyleRules rules_of(const std::string& text, const Files& files = {}) {
  return get_styletypes(style_of(text, files));
}

std::vector<std::string> problems_of(const StyleText& style) {
  std::vector<std::string> texts;
  for (const StyleProblem& problem : style.problems)
    texts.push_back(std::to_string(problem.place.file) + ":" + std::to_string(problem.place.line) + " " +
                    problem.text);
  return texts;
}

}  // namespace

TEST_CASE("a rule line gives condition, type, road class, resolution and level") {
  const StyleRules rules = rules_of(
      "# highway=x [0x07 resolution 20]\n"
      "highway=primary [0x02 road_class=3 resolution 20]\n"
      "highway = x [0x2f0c road_class = 0 resolution 24-20 continue with_actions]\n"
      "mkgmap:region!=* & name=a {delete a} [0x10f04 level 2]\n");
  REQUIRE(rules.rules.size() == 3);
  const auto& [first, second, third] = std::tie(rules.rules[0], rules.rules[1], rules.rules[2]);
  CHECK(rules.statement_of(first).condition == "highway=primary ");
  CHECK(first.type == 2);
  CHECK(first.key == "00200");
  CHECK(first.road_class == 4);
  CHECK(first.resolution == 20);
  CHECK_FALSE(first.has_continue);
  CHECK(rules.statement_of(first).place.line == 2);
  CHECK(second.key == "02F0C");
  CHECK(second.road_class == 1);
  CHECK(second.resolution == 24);
  CHECK(second.has_continue);
  CHECK(second.with_actions);
  CHECK(third.key == "10F04");
  CHECK(third.level == 2);
  CHECK(rules.statement_of(third).tests_name);
  CHECK(rules.statement_of(third).mkgmap_tags == std::vector<std::string>{"region"});
}

TEST_CASE("a type code ends where its digits end") {
  const std::tuple<const char*, unsigned, const char*> cases[] = {
      {"a=b [0x01]", 1, "00100"},
      {"a=b [0x2f0c resolution 24]", 0x2f0c, "02F0C"},
      {"a=b [0x10f04]", 0x10f04, "10F04"},
      {"a=b [0xzz resolution 1]", 0, "00000"},
      {"a=b [0x", 0, "00000"},
      {"a=b [0x123456789abcdef]", 0, "00000"},
  };
  for (const auto& [text, type, key] : cases) {
    const std::string shown = text;
    CAPTURE(shown);
    const StyleRules rules = rules_of(text);
    REQUIRE(rules.rules.size() == 1);
    CHECK(rules.rules[0].type == type);
    CHECK(rules.rules[0].key == key);
  }
}

TEST_CASE("rules that are spread over lines are one rule, at the line where they begin") {
  const char* texts[] = {
      "a=b [\n0x02 resolution 20]\n",
      "a=b {\n name 'x' }\n[0x02 resolution 20]\n",
      "a=b {set c=d;\n # a comment\n set e='}[0x05'\n}\n  [0x02 resolution 20]  # [0x03]\n",
      "(a=b |\n c=d)\n & e=f\n [\n0x02\nresolution 20\n]\n",
      "a~'[0-9]'\t[ 0x02 \t resolution 20 ]\r\n",
  };
  for (const std::string text : texts) {
    CAPTURE(text);
    const StyleRules rules = rules_of("x=y [0x01]\n" + text + "z=z [0x04]");
    REQUIRE(rules.rules.size() == 3);
    CHECK(rules.rules[1].key == "00200");
    CHECK(rules.rules[1].resolution == 20);
    CHECK(rules.statement_of(rules.rules[1]).place.line == 2);
    CHECK(rules.rules[2].key == "00400");
    CHECK(rules.problems.empty());
  }
}

TEST_CASE(
    "the type list holds each type once, the rule table every row; two types of one rule are two rows") {
  const StyleRules rules = rules_of("a=b [0x02] [0x03]\nc=d [0x02]\n");
  CHECK(rules.rules.size() == 3);
  CHECK(rules.types == std::vector<std::string>{"00200", "00300"});
  CHECK(rules.first_rules == std::vector<std::size_t>{0, 1});
}

TEST_CASE("brackets that are never closed are reported and swallow no rule") {
  const StyleRules rules =
      rules_of("a=b [0x02 resolution 20\nc=d [0x03]\ne=f {set g=h\ni=j [0x04]\n(k=l [0x05]");
  CHECK(rules.types == std::vector<std::string>{"00200", "00300", "00400", "00500"});
  REQUIRE(rules.problems.size() == 3);
  CHECK(rules.problems[2].text == "'(' is never closed.");
  CHECK(rules.problems[0].place.line == 1);
  CHECK(rules.problems[1].text == "'{' is opened here and never closed.");
}

TEST_CASE("a comment behind a rule draws no rule up, whatever it ends in") {
  for (const char* end : {" # like [", "# see {", " # [ #[", " #["}) {
    CAPTURE(end);
    const StyleRules rules =
        rules_of("highway=a {set x=y} [0x01 level 1]" + std::string(end) + "\nhighway=a [0x02 level 1]\n");
    CHECK(rules.types == std::vector<std::string>{"00100", "00200"});
    CHECK(rules.problems.empty());
  }
  CHECK(rules_of("a=b [ # a type [\n0x01]\nc=d [0x02]").types == std::vector<std::string>{"00100", "00200"});
}

TEST_CASE("include letters go on behind z") {
  const std::pair<std::uint32_t, const char*> cases[] = {{0, ""},       {1, "a) "},    {26, "z) "},
                                                         {27, "aa) "},  {52, "az) "},  {53, "ba) "},
                                                         {702, "zz) "}, {703, "aaa) "}};
  for (const auto& [file, letter] : cases)
    CHECK(include_letter(file) == letter);
}

TEST_CASE("includes: appended in the order met, once each, in the case written, and seen where they stand") {
  const Files files{{"inc/Roads", "b=b [0x02]\ninclude 'inc/deep';\n"},
                    {"inc/deep", "c=c [0x03]\n"},
                    {"default:points", "d=d [0x04]\n"}};
  const std::string text =
      "a=a [0x01]\ninclude 'inc/Roads';\n# include 'no';\ne=e {name 'include it'} [0x05]\n"
      "include \"inc/deep\" ;\ninclude points from default;\n";
  const StyleText style = style_of(text, files);
  CHECK(problems_of(style).empty());
  CHECK(include_label(style) == "Include: a) inc/Roads b) inc/deep c) points");
  CHECK(chk_include(text) == "inc/Roads\r\ninc/deep\r\npoints");
  const StyleRules rules = get_styletypes(style);
  CHECK(rules.types == std::vector<std::string>{"00100", "00500", "00200", "00300", "00400"});
  std::string order;
  for (const std::size_t at : rules.in_place)
    if (!rules.statements[at].types.empty()) order += rules.statements[at].tests + ",";
  CHECK(order == "a=a,b=b,c=c,e=e,d=d,");
  CHECK(rules.statements.back().place.file == 3);
  CHECK(rules.statements.back().place.line == 1);
}

TEST_CASE("missing includes and loops are problems at their line") {
  CHECK(problems_of(style_of("a=a\n\ninclude 'inc/no';")) ==
        std::vector<std::string>{"0:3 The included file 'inc/no' is missing."});
  CHECK(problems_of(style_of("include 'lines';", {{"lines", "include 'lines';"}})) ==
        std::vector<std::string>{"0:1 'lines' includes itself."});
  CHECK(problems_of(style_of("include 'a")) ==
        std::vector<std::string>{"0:1 The quote of this include line is never closed."});
  CHECK(problems_of(style_of("a=b [0x01]\ninclude '';")) ==
        std::vector<std::string>{"0:2 This include line names no file."});
  const Files files{{"inc/x", "a=b [0x01]"}, {"a.b", ""}};
  CHECK(problems_of(style_of("Include 'inc/x';\ninclude inc/x;\ninclude'inc/x';\ninclude a.b;", files)) ==
        std::vector<std::string>{"0:1 mkgmap knows 'include' in lower case only.",
                                 "0:2 'inc/x' must stand in quotes."});
  const StyleText loop = style_of("include 'a';", {{"a", "\ninclude 'b';"}, {"b", "include 'a';\n"}});
  CHECK(problems_of(loop) == std::vector<std::string>{"2:1 'a' includes itself."});
  CHECK(loop.files.size() == 3);
}

TEST_CASE("bytes that are no style are read without harm") {
  CHECK(style_of("").is_empty());
  CHECK(rules_of("\xEF\xBB\xBF"
                 "a=b [0x01]")
            .statements.front()
            .tests == "a=b");
  const StyleText old = style_of("a=b [0x01]\r#c\rd=e [0x02]");
  CHECK(old.lines.size() == 3);
  CHECK(problems_of(old).size() == 1);
  CHECK(problems_of(style_of(std::string("a\0b\n\xFF\xFE[0x", 9))).size() == 2);
  CHECK(problems_of(style_of(std::string("\xFF\xFE"
                                         "a\0=\0b\0",
                                         8))) ==
        std::vector<std::string>{"0:0 This text is in UTF-16; mkgmap reads UTF-8."});
  const std::string blanks(1U << 20U, ' ');
  const StyleRules rules = rules_of("a=b" + blanks + "[0x01]\n" + std::string(1U << 20U, '[') + "\n[0x02]");
  CHECK(rules.rules.front().key == "00100");
}

TEST_CASE("the text is shown normalised, with CR LF") {
  CHECK(style_of("a\t =\tb  [ 0x01 ]\n[\n0x02 ]\nc=d {\nname 'x' }").text() ==
        "a= b [0x01]\r\n[0x02]\r\nc=d{name 'x'}\r\n");
}

TEST_CASE("if blocks and the finalize section are told apart from rules") {
  const StyleRules rules =
      rules_of("if (a=b |\n c=d) then\ne=f [0x01]\nelse\ng=h [0x02]\nend\n<finalize>\ni=j {name 'x'}");
  using enum StyleStatement::Form;
  REQUIRE(rules.statements.size() == 7);
  CHECK(rules.statements[0].form == if_begins);
  CHECK(rules.statements[0].tests == "(a=b | c=d)");
  CHECK(rules.statements[2].form == otherwise);
  CHECK(rules.statements[4].form == if_ends);
  CHECK(rules.statements[5].form == finalize);
  CHECK(rules.statements[6].in_finalize);
  CHECK_FALSE(rules.statements[3].in_finalize);
}

TEST_CASE("what mkgmap refuses in a rule is a problem with its line, and nothing else is") {
  const std::pair<const char*, const char*> refused[] = {
      {"highway=a & (b=c [0x01]", "'(' is never closed."},
      {"highway=a) [0x01]", "')' closes nothing."},
      {"highway=a & & b=c [0x01]", "A test is expected before: & b=c"},
      {"highway [0x01]", "'highway' is not compared with anything."},
      {"a=b & is_closed() [0x01]", "'is_closed' is not compared with anything."},
      {"a=b & c=d e [0x01]", "There is something behind the test: e"},
      {"a=b & !c=d [0x01]", "'!' stands before a test without brackets."},
      {"[0x01]", "The condition of this rule is missing."},
      {"end", "'end' ends no 'if'."},
      {"a=b", "This rule has neither actions nor a type."},
      {"a=b [0x01 resoluton 20]", "'resoluton' is unknown in a type."},
      {"a=b [0x01 resolution]", "The number behind 'resolution' is missing."},
      {"a=b [0x resolution 20]", "A type must begin with its number, not with '0x'."},
      {"a=b {name 'x;y'; sett a=c}", "'sett' is no action."},
      {"<finalize>\na=b [0x01]", "A rule behind <finalize> must not have a type."},
      {"if a=b then\nx=y {set f=g}\nend", "The condition of 'if' must begin with '('."},
      {"if !(a=b) then\nx=y {set f=g}\nend", "The condition of 'if' must begin with '('."},
      {"a!~'x' [0x01]", "mkgmap does not know '!~': put '!' before the test in brackets."},
      {"a=b/c [0x01]", "'b/c' must stand in quotes."},
      {"a=b & c=2,5 [0x01]", "'2,5' must stand in quotes."},
      {"a=b;c [0x01]", "'b;c' must stand in quotes."},
      {"a=b#c [0x01]", "'b#c' must stand in quotes."},
      {"a/b=c [0x01]", "'a/b' must stand in quotes."},
      {"a=b {set x=y} {set z=w}", "A rule has one block of actions at most, and it stands before the types."},
      {"a=b [0x01] {set z=w}", "A rule has one block of actions at most, and it stands before the types."},
      {"a=b {delete a | b}",
       "There is something behind 'delete': | b (a value of more than one word needs quotes)"},
      {"a=b {set a=b c=d}",
       "There is something behind 'set': c=d (a value of more than one word needs quotes)"},
      {"a=b {set a=b,c}", "There is something behind 'set': ,c (a value of more than one word needs quotes)"},
      {"a=b {add y=${z}}",
       "There is something behind 'add': {z} (a value of more than one word needs quotes)"},
      {"a=b {set a=b |}", "'set' lacks its tag or its value."},
      {"a=b {set a b=c}", "'set' lacks its tag or its value."},
      {"a=b {add a=b; name}", "'name' lacks its tag or its value."},
      {"a=b {rename a}", "'rename' lacks its tag or its value."},
      {"a=b {set a=b; c=d}", "'c' is no action."},
  };
  for (const auto& [text, expected] : refused) {
    const std::string shown = text;
    CAPTURE(shown);
    const StyleRules rules = rules_of(text);
    REQUIRE(rules.problems.size() == 1);
    CHECK(rules.problems.front().text == expected);
  }
  for (const char* text :
       {"a!=1 [0x01]", "a!=1 | b=2 [0x01]", "!(a=1 & b=2) [0x01]", "length()>5 [0x01]", "!(a<5) {set b=c}",
        "if (a=b) then\nx=y {set f=g}\nelse\nc!=d [0x01]\nend", "if (a!=b) then\nx=y {set f=g}\nend"}) {
    CAPTURE(text);
    const StyleRules rules = rules_of(text);
    REQUIRE(rules.problems.size() == 1);
    CHECK(contains(rules.problems.front().text, "names a tag that must be there"));
  }
  for (const char* text :
       {"a=b & (c!=d | e!=f) & !g & !(h) & length ( ) > 5 & 'x y'=$z [0X01 default_name 'a b' resolution "
        "24-20]",
        "!(!(a=b)) {apply role=outer {set x=y; add z='}'}; delete a; echotags 'x'} [1 level 2 continue]",
        "if (a=b) then c!=d [0x01 road_class = 1 road_speed 2] else end",
        "operator=${brand} { delete operator; }", "<finalize>\na=b {name '${a}' | '${b}'}",
        "a=b & maxspeedkmh()>50 & nosuch()=1 | c~'.*' [0x01 copy]",
        "if ((a=b)) then c=$d & e=${f:g} & h.i:j-k_l=\u00fc [0x01] end",
        "a=* & 'b/c'=\"d/e\" & f!=* {} [0x01]",
        "a=b {set c=d set e='f' | g delete h; rename i j name 'k' | ''; set 'l m'=* }",
        "a=b {apply {set c=d}; apply_once role='e f' {add g=h} set i=j; deletealltags; echo 'k'}"}) {
    CAPTURE(text);
    CHECK(rules_of(text).problems.empty());
  }
}

TEST_CASE("rules that share a line are rules of their own") {
  const StyleRules rules =
      rules_of("a=b [0x01] c=d {set x=y} e=f [0x02]\nif (a=b) then g=h [0x03] end i=j [0x04]");
  std::vector<std::string> tests;
  for (const StyleStatement& statement : rules.statements)
    tests.push_back(statement.tests);
  CHECK(tests == std::vector<std::string>{"a=b", "c=d", "e=f", "(a=b)", "g=h", "", "i=j"});
  CHECK(rules.types == std::vector<std::string>{"00100", "00200", "00300", "00400"});
}

TEST_CASE("bytes that are not UTF-8 are told with their first line, and the rest is read on") {
  const StyleText style = style_of("a=b [0x01]\n# h\xE4user\nname=\xFC [0x02]\n");
  CHECK(
      problems_of(style) ==
      std::vector<std::string>{"0:2 This line (and 1 more below) is not in UTF-8: mkgmap refuses the file."});
  CHECK(style.text() == "a=b [0x01]\r\n# h\u00e4user\r\nname=\u00fc [0x02]\r\n");
}
