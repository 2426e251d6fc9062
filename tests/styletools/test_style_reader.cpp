#include <doctest/doctest.h>

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
