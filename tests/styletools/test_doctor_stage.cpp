#include <doctest/doctest.h>

#include "base/files.hpp"
#include "base/text.hpp"
#include "styletools/doctor_stage.hpp"
#include "styletools/style_tags.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

TEST_CASE("the TYP file that cannot be had is told in words") {
  const test::TempFolder folder;
  const std::string damaged = folder.write("bad.typ", "no TYP file");
  const StyleLocation style{folder.path(), folder.path()};
  test::FakePrompts prompts;
  CHECK_FALSE(find_typ("", style, prompts));
  CHECK_FALSE(find_typ("ab", style, prompts));
  CHECK_FALSE(find_typ(folder / "gone.typ", style, prompts));
  CHECK_FALSE(find_typ(damaged, {folder / "gone", folder.path()}, prompts));
  CHECK_FALSE(find_typ(damaged, style, prompts));
  REQUIRE(prompts.tells().size() == 5);
  CHECK(prompts.tells()[0] == "Can't find TYP file. ");
  CHECK(prompts.tells()[1] == "Can't find TYP file. Please select.\r\nab");
  CHECK(prompts.tells()[2] == "Can't find TYP file. Please select.\r\n" + (folder / "gone.typ"));
  CHECK(prompts.tells()[3].starts_with("Cannot locate style."));
  CHECK(contains(prompts.tells()[4], "bad.typ"));
}

TEST_CASE("the whole report is written anew and shown") {
  const test::TempFolder home("program folder");
  home.write("style/polygons", "a=b [0x01]\n");
  home.write("typ.txt", "an older report");
  Workspace workspace;
  workspace.folder = ProgramFolder(home.path());
  const StyleLocation style{home / "style", home.path()};
  test::FakePrompts prompts;
  CHECK(write_results(workspace, style, TypFile{}, 0, prompts));
  const std::string text = read_whole_file(home / "typ.txt");
  CHECK(text.starts_with("Style:\t" + style.folder + "\r\n#\t\tPOLYGONS\t\r\n"));
  CHECK(contains(text, "\r\n*\tPGNS\tNot in TYP\ta=b \r\n"));
  CHECK(prompts.shown_files() == Texts{home / "typ.txt"});
  CHECK_FALSE(write_results(workspace, {home / "gone", home.path()}, TypFile{}, 0, prompts));
  CHECK_FALSE(file_exists(home / "typ.txt"));
}

TEST_CASE("exports ask before they overwrite, and have nothing to write without a report") {
  const test::TempFolder folder;
  const std::string old = folder.write("old.csv", "old");
  DoctorReport report;
  test::FakePrompts prompts;
  CHECK_FALSE(export_report(report, ReportFormat::text, prompts));
  CHECK(prompts.tells() == Texts{"No data"});
  DoctorRow row;
  row.finding = "Check";
  report.add(row);
  prompts.chosen = {std::nullopt, old, old, folder / "new"};
  prompts.answers = {Answer::no, Answer::yes};
  CHECK_FALSE(export_report(report, ReportFormat::csv, prompts));
  CHECK_FALSE(export_report(report, ReportFormat::csv, prompts));
  CHECK(read_whole_file(old) == "old");
  CHECK(export_report(report, ReportFormat::csv, prompts));
  CHECK(read_whole_file(old) == report_csv(report));
  CHECK(export_report(report, ReportFormat::text, prompts));
  CHECK(read_whole_file(folder / "new.txt") == "\t\tCheck\t\r\n");
  CHECK(prompts.asks() == Texts{"Overwrite?", "Overwrite?"});
  CHECK(prompts.file_questions[0].filters[0].name == "Comma Delimiter (csv)");
  CHECK_FALSE(prompts.file_questions[0].confirms);
  CHECK(prompts.file_questions[3].proposal == "untitled.txt");
}

TEST_CASE("tags of a style are counted by rule, and places in its text are found") {
  LoadedStyle style;
  style.text =
      read_style_text(RuleKind::lines,
                      {"lines", "", "x=1 & highway=a [0x01]\nhighway=a | highway=b [\n0x02]\nx=* {name 'A'}"},
                      [](const StyleInclude&, const std::string&) { return std::nullopt; });
  style.rules = get_styletypes(style.text);
  std::string counted;
  for (const TagCount& tag : gettag(style))
    counted += tag.key + "=" + tag.value + ":" + std::to_string(tag.rules) + (tag.is_main ? "! " : " ");
  CHECK(counted == "highway=a:2! highway=b:1! x=*:1 x=1:1 ");
  // Main keys in their own order, the others behind them by name.
  LoadedStyle keys;
  const char* rules = "place=a & barrier=a & highway=a & amenity=a & a=a & power=a & landuse=a [0x01]";
  keys.text = read_style_text(RuleKind::lines, {"lines", "", rules},
                              [](const StyleInclude&, const std::string&) { return std::nullopt; });
  keys.rules = get_styletypes(keys.text);
  counted.clear();
  for (const TagCount& tag : gettag(keys))
    counted += tag.key + " ";
  CHECK(counted == "amenity landuse power highway barrier a place ");
  CHECK(tag_search_address("a:b", "c d") ==
        "https://wiki.openstreetmap.org/w/index.php?search=a%3Ab%3Dc%20d");
  CHECK(srch(style.text, "HIGHWAY", 1) == 1);
  CHECK(srch(style.text, "x=1", 1) == 0);
  CHECK_FALSE(srch(style.text, "q", 0));
  CHECK(line_at(style.text, "lines", 3) == 1);  // a line that was joined to the one above
  CHECK(line_at(style.text, "lines", 4) == 2);
  CHECK_FALSE(line_at(style.text, "points", 1));
}
