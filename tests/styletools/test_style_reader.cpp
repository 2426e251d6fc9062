#include <doctest/doctest.h>

#include <filesystem>

#include "base/text.hpp"
#include "styletools/style_reader.hpp"
#include "styletools/style_rules.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

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
