#include "pipeline/build_checks.hpp"

#include <doctest/doctest.h>

#include "support/stand_in.hpp"

using namespace ferrowen;

namespace {

struct Checked : test::StandIn {
  Checked() {
    home.write("cells/X46W007.hgt", "x");
    home.write("a.mp", "[IMG ID]\nID=1\n[END]\n[POI]\nType=1\n[END]\n");
    home.write("styles/mine/points", "x");
    home.write("x.typ", "rubbish, but of some length");
    home.write("clips/readme", "");
    home.write("temp/template.args", "mapname: 13224385\n");
  }
  CheckResult all() { return check_build(workspace, prompts, progress, services); }
  // The last message of the checks.
  [[nodiscard]] std::string message() const { return prompts.texts().empty() ? "" : prompts.texts().back(); }
  BuildServices services;
};

}  // namespace

TEST_CASE("a sound set-up passes without a word, after the registered maps were collected") {
  Checked checked;
  bool collected = false;
  checked.services.collect_registered = [&](Workspace&) { collected = true; };
  CHECK(checked.all() == CheckResult::go_on);
  CHECK(checked.prompts.said.empty());
  CHECK(collected);
  CHECK(checked.progress.statuses.front() == "Collecting FID");
}

TEST_CASE("each check stops the build with its message") {
  const std::pair<const char*, const char*> cases[] = {
      {"gmapsupp=0", "Please select gmapsupp & or Add to Basecamp"},
      {"dem=1; hgt-folder-1={home}/cells", "X46W007.hgt is not a valid .hgt label."},
      {"input={home}/a.mp; dem=1; hgt-folder-1=/no/such/folder",
       "Please locate folder containing .hgt files --> Contour/DEM Settings"},
      {"style=none", "Please select a valid style."},
      {"style=mine; styles-folder=/no/styles", "Cannot find Style Folder : /no/styles"},
      {"style=mine", "Cannot find Style version file:"},
      {"use-typ=1; typ=/no/x.typ", "Please select a valid TYP file."},
      {"use-typ=1; typ={home}/x.typ", "Please select a valid TYP file."},
      {"mkgmap=", "Please locate mkgmap.jar in Settings"},
      {"mkgmap=/no/mkgmap.jar", "Please locate:'\r\n/no/mkgmap.jar'"},
      {"java-options=-Xmx2g", ""},
      {"java-options=2g", "The memory for Java, '2g', is not a number of megabytes."},
      {"input=/no/map.pbf", "main file does not exist. Click 'Check Last Splitter Files' ."},
      {"input=", "Please Add OSM file."},
      {"fid=0; fid-locked=1", "FID can't be 0 . Please unlock FID"},
      {"fid=12ab", "Please enter Family ID or click GREEN 'new' button."},
      {"fid=1.5", "Please enter Family ID or click GREEN 'new' button."},
      {"fid=70000; fid-locked=1", "Please enter Family ID or click GREEN 'new' button."},
      {"dem=1", "Can't find coordinates for DEM. Click Split Map."},
      {"contours=1", "Can't find coordinates for contours. Click Split Map."},
      {"contours=1; clip-contours=1; clip-folder-1=/no/clip", "Clip folder (/no/clip) does not exist."},
  };
  for (const auto& each : cases) {
    CAPTURE(each.first);
    Checked checked;
    checked.set(each.first);
    CHECK(checked.all() == CheckResult::stop);
    CHECK(checked.prompts.said.size() == 1);
    CHECK(checked.message().starts_with(each.second));
  }
  Checked checked;
  checked.workspace.split_state = SplitState::needs_splitting;
  CHECK(checked.all() == CheckResult::stop);
  CHECK(checked.message().starts_with("Please split file "));
  checked.workspace.settings.map_name = "  ";
  CHECK(checked.all() == CheckResult::stop);
  CHECK(checked.message() == "needs a Map Name.");
}

TEST_CASE("warnings and questions that a build may pass") {
  struct Case {
    const char* assignments;
    std::string message;
    const char* after;  // a setting as it is then
  };
  const Case cases[] = {
      {"transparent=1", "A transparent map may cause routing problems.", "transparent=1"},
      {"use-typ=1", "No TYP file selected. Continue?", "use-typ=1"},
      {"fid=70000", "Family ID between 0 and 65500. FID set to 100", "fid=100"},
      {"contours=1; clip-contours=1; clip-folder-1={home}/clips",
       " contains no files.\r\nUse default folder?", "clip-folder-2={home}/files; clip-slot=1"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.assignments);
    Checked checked;
    checked.set(each.assignments);
    checked.workspace.tiles = {{"13224385", "", {47, 9}, {47.5, 9.5}, false}};
    checked.prompts.default_answer = Answer::yes;
    CHECK(checked.all() == CheckResult::go_on);
    REQUIRE_FALSE(checked.prompts.said.empty());
    CHECK(checked.prompts.said.front().text.ends_with(each.message));
    const std::string now = settings_text(checked.workspace.settings);
    checked.set(each.after);
    CHECK(settings_text(checked.workspace.settings) == now);
  }
}
