#include <doctest/doctest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <filesystem>

#include "base/inflate.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "styletools/style_reader.hpp"
#include "styletools/style_rules.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"
#include "support/zip_bytes.hpp"

using namespace ferrowen;

TEST_CASE(
    "a style is found by name or path; includes come from its own folder, then from the styles folder") {
  const test::TempFolder folder("styles folder");
  folder.write("mine/lines", "include 'inc/Own';\ninclude 'inc\\shared';\ninclude lines from other;\n");
  folder.write("mine/inc/Own", "a=a [0x01]\n");
  folder.write("inc/Own", "no=no [0x7f]\n");
  folder.write("inc/shared", "b=b [0x02]\n");
  folder.write("other/lines", "include 'inc/Own';\n");
  folder.write("other/inc/Own", "c=c [0x03]\n");
  Settings settings;
  settings.styles_folder = folder.path();
  CHECK(get_styles(settings) == std::vector<std::string>{"inc", "mine", "other"});
  for (const std::string& name : {std::string("mine"), folder / "mine"}) {
    const StyleLocation style = locate_style(settings, name);
    CHECK(style.folder == folder / "mine");
    CHECK(style.styles_folder == folder.path());
    const StyleText text = chknodata(style, RuleKind::lines);
    CHECK(text.problems.empty());
    CHECK(text.files.size() == 5);
    CHECK(get_styletypes(text).types == std::vector<std::string>{"00100", "00200", "00300"});
    CHECK(chknodata(style, RuleKind::points).is_empty());
  }
}

TEST_CASE("rules of base styles stand behind the style's own, the base named last first") {
  const test::TempFolder folder;
  folder.write("mine/info", "summary: x\nbase-style: one\nbase-style=two\n");
  folder.write("mine/lines", "a=a [0x01]\n<finalize>\na=a {name 'x'}\n");
  folder.write("one/lines", "b=b [0x02]\n");
  folder.write("one/points", "p=p [0x2f00]\n");
  folder.write("two/info", "base-style: mine\nbase-style: gone\n");
  folder.write("two/lines", "include 'inc';\na=a [0x03]\n");
  folder.write("two/inc", "c=c [0x04]\n");
  const StyleLocation style = style_in_folder(folder / "mine");
  const StyleText text = chknodata(style, RuleKind::lines);
  CHECK(include_label(text) == "Include: a) two/lines b) inc c) one/lines");
  const StyleRules rules = get_styletypes(text);
  std::vector<std::string> order;
  for (const std::size_t index : rules.in_place) {
    const StyleStatement& rule = rules.statements[index];
    if (!rule.types.empty())
      order.push_back(rule.types[0] + (rule.is_of_base ? " base" : "") + (rule.in_finalize ? "!" : ""));
  }
  CHECK(order == std::vector<std::string>{"0x01", "0x04 base", "0x03 base", "0x02 base"});
  CHECK(get_styletypes(chknodata(style, RuleKind::points)).types == std::vector<std::string>{"02F00"});
  CHECK(has_rule_file(style, RuleKind::points));
  CHECK_FALSE(has_rule_file(style, RuleKind::polygons));
  std::vector<std::string> problems;
  for (const StyleProblem& problem : style_problems(style))
    problems.push_back(problem.path + ":" + std::to_string(problem.place.line) + " " + problem.text);
  const std::string info = platform::join(folder / "two", "info");
  CHECK(problems == std::vector<std::string>{info + ":2 The base style 'gone' is missing.",
                                             info + ":1 The style is based on itself."});
}

TEST_CASE("mkgmap's own styles come from its archive; where that is not known, a note says so") {
  const test::TempFolder folder;
  folder.write("mine/info", "base-style: noname\n");
  folder.write("mine/lines", "include 'inc/x' from default;\n");
  folder.write("mine/points", "include 'points' from nosuch;\n");
  const auto stored = [](const std::string& name, const std::string& text) {
    return test::ZipFile{name, text, 0, static_cast<std::uint32_t>(text.size()), crc32(text), 0};
  };
  StyleLocation style = style_in_folder(folder / "mine");
  const StyleText without = chknodata(style, RuleKind::lines);
  REQUIRE(without.problems.size() == 1);
  CHECK(without.problems[0].is_note);
  CHECK(chknodata(style, RuleKind::points).problems.at(0).text == "The included file 'points' is missing.");
  style.mkgmap_jar = folder.write(
      "mkgmap.jar",
      test::zip_bytes({stored("styles/default/inc/x", "include 'y';\na=a [0x01]\n"),
                       stored("styles/default/y", "b=b [0x02]\n"),
                       stored("styles/noname/lines", "include 'y' from default;\nc=c [0x03]\n")}));
  const StyleText text = chknodata(style, RuleKind::lines);
  CHECK(text.problems.empty());
  CHECK(get_styletypes(text).types == std::vector<std::string>{"00100", "00200", "00300"});
  CHECK(style_problems(style).empty());
}

TEST_CASE("a broken archive and an info file that cannot be read are told with their paths") {
  const test::TempFolder folder;
  folder.write("mine/info", "base-style: noname\n");
  folder.write("mine/lines", "include 'inc/x' from default;\n");
  StyleLocation style = style_in_folder(folder / "mine");
  style.mkgmap_jar = folder.write("mkgmap.jar", "no archive");
  const StyleText text = chknodata(style, RuleKind::lines);
  const std::vector<StyleProblem> of_bases = style_problems(style);
  REQUIRE(text.problems.size() == 1);
  REQUIRE(of_bases.size() == 1);
  for (const StyleProblem& problem : {text.problems[0], of_bases[0]}) {
    CHECK_FALSE(problem.is_note);
    CHECK(contains(problem.text, "because mkgmap.jar is broken: " + style.mkgmap_jar + ": is no whole zip"));
  }
}

TEST_CASE("the names of base styles are read in whatever encoding they stand") {
  const test::TempFolder folder;
  folder.write("mine/info", "base-style: gr\xF6n\n");
  folder.write("gr\u00f6n/lines", "a=a [0x01]\n");
  const StyleLocation style = style_in_folder(folder / "mine");
  CHECK(style_problems(style).empty());
  CHECK(get_styletypes(chknodata(style, RuleKind::lines)).types == std::vector<std::string>{"00100"});
}

#ifndef _WIN32
TEST_CASE("an info file that is no text is told") {
  const test::TempFolder folder;
  folder.write("lines", "a=a [0x01]\n");
  REQUIRE(mkfifo((folder / "info").c_str(), 0600) == 0);
  const std::vector<StyleProblem> problems = style_problems(style_in_folder(folder.path()));
  REQUIRE(problems.size() == 1);
  CHECK(problems[0].path == folder / "info");
  CHECK(contains(problems[0].text, "is no regular file"));
}

TEST_CASE("a pipe in place of a rule file is told, not waited for") {
  const test::TempFolder folder;
  REQUIRE(mkfifo((folder / "lines").c_str(), 0600) == 0);
  const StyleText text = chknodata(style_in_folder(folder.path()), RuleKind::lines);
  REQUIRE(text.unread.size() == 1);
  CHECK(contains(text.unread[0], "is no regular file"));
}
#endif

TEST_CASE("a missing style and an empty rule file are told apart") {
  const test::TempFolder folder;
  folder.write("mine/points", "");
  Settings settings;
  settings.styles_folder = folder.path();
  test::FakePrompts prompts;
  for (const char* name : {"mine", "gone", ""}) {
    const StyleLocation style = locate_style(settings, name);
    CHECK(chknodata(style, RuleKind::points).is_empty());
    nodata(style, prompts);
  }
  const std::string missing =
      "Cannot locate style.\r\n\r\nSelect a style or Check 'Download Essentials' on HELP menu";
  CHECK(prompts.tells() == std::vector<std::string>{"No style data", missing, missing});
}

TEST_CASE("a rule file that is there and cannot be read is not a missing one") {
  const test::TempFolder folder;
  const std::string huge = folder.write("mine/lines", "a=b [0x01]");
  std::filesystem::resize_file(platform::file_system_path(huge), (64ULL << 20U) + 1);
  folder.write("mine/points",
               "\xFF\xFE"
               "a=b [0x01]");
  const StyleLocation style = style_in_folder(folder / "mine");
  for (const RuleKind kind : {RuleKind::lines, RuleKind::points}) {
    const StyleText text = chknodata(style, kind);
    CHECK(text.is_empty());
    CHECK_FALSE(text.is_missing());
    CHECK(text.problems.size() == 1);
    test::FakePrompts prompts;
    tell_unread(text, prompts);
    REQUIRE(prompts.tells().size() == 1);
    CHECK(contains(prompts.tells().front(), folder / ("mine/" + std::string(rule_file_name(kind)))));
  }
  CHECK(chknodata(style, RuleKind::polygons).is_missing());
}

TEST_CASE("a file is read once, however its includes spell its path") {
  const test::TempFolder folder;
  folder.write("mine/lines", "include './lines';\ninclude 'inc/a';\ninclude 'inc/../inc/a';\nx=y [0x01]\n");
  folder.write("mine/inc/a", "a=a [0x02]\n");
  const StyleText text = chknodata(style_in_folder(folder / "mine"), RuleKind::lines);
  CHECK(text.files.size() == 2);
  CHECK(get_styletypes(text).rules.size() == 2);
  REQUIRE(text.problems.size() == 1);
  CHECK(text.problems.front().text == "'./lines' includes itself.");
}
