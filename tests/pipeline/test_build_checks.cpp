#include <doctest/doctest.h>

#include "base/text.hpp"
#include "pipeline/build_checks.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

struct Checked : StandIn {
  CheckResult all() { return check_build(workspace, prompts, progress, services); }
  // The one message that the checks end with.
  std::string message() const { return prompts.texts().empty() ? "" : prompts.texts().back(); }
  BuildServices services;
};

}  // namespace

TEST_CASE("a sound set-up passes without a word, after the registered maps were collected") {
  Checked checked;
  bool collected = false;
  checked.services.collect_registered = [&](Workspace& workspace) {
    collected = true;
    workspace.registered_fids = ",77,";
  };
  CHECK(checked.all() == CheckResult::go_on);
  CHECK(checked.prompts.said.empty());
  CHECK(collected);
  CHECK(checked.progress.statuses.front() == "Collecting FID");
}

TEST_CASE("each check stops the build with its message") {
  struct Case {
    const char* what;
    std::function<void(Checked&)> arrange;
    const char* message;  // the beginning of it
  };
  const Case cases[] = {
      {"no output chosen", [](Checked& c) { c.workspace.settings.device_image = false; },
       "Please select gmapsupp & or Add to Basecamp"},
      {"no map name", [](Checked& c) { c.workspace.settings.map_name = "  "; }, "needs a Map Name."},
      {"a cell with a wrong name",
       [](Checked& c) {
         c.workspace.settings.dem = true;
         c.workspace.settings.hgt_folders[0] = c.home.path();
         c.home.write("X46W007.hgt", "x");
       },
       "X46W007.hgt is not a valid .hgt label."},
      {"mp with DEM and no height folder",
       [](Checked& c) {
         c.workspace.settings.input = c.home.write("a.mp", "[IMG ID]\nID=1\n[END]\n[POI]\nType=1\n[END]\n");
         c.workspace.settings.dem = true;
         c.workspace.settings.hgt_folders[0] = "/no/such/folder";
       },
       "Please locate folder containing .hgt files --> Contour/DEM Settings"},
      {"a large input that is not split",
       [](Checked& c) { c.workspace.split_state = SplitState::needs_splitting; }, "Please split file "},
      {"no style", [](Checked& c) { c.workspace.settings.style = ""; }, "Please select a valid style."},
      {"styles folder gone",
       [](Checked& c) {
         c.workspace.settings.style = "mine";
         c.workspace.settings.styles_folder = "/no/styles";
       },
       "Cannot find Style Folder : /no/styles"},
      {"style without a version file",
       [](Checked& c) {
         c.workspace.settings.style = "mine";
         c.home.write("styles/mine/points", "x");
       },
       "Cannot find Style version file:"},
      {"TYP missing",
       [](Checked& c) {
         c.workspace.settings.use_typ = true;
         c.workspace.settings.typ = "/no/x.typ";
       },
       "Please select a valid TYP file."},
      {"a TYP of rubbish",
       [](Checked& c) {
         c.workspace.settings.use_typ = true;
         c.workspace.settings.typ = c.home.write("x.typ", "rubbish, but of some length");
       },
       "Please select a valid TYP file."},
      {"mkgmap not set", [](Checked& c) { c.workspace.settings.mkgmap_jar = ""; },
       "Please locate mkgmap.jar in Settings"},
      {"mkgmap gone", [](Checked& c) { c.workspace.settings.mkgmap_jar = "/no/mkgmap.jar"; },
       "Please locate:'\r\n/no/mkgmap.jar'"},
      {"no Java", [](Checked& c) { c.workspace.java_version = java_not_installed; },
       "Please install Java or restart Ferrowen."},
      {"memory with a unit", [](Checked& c) { c.workspace.settings.java_options = "-Xmx2g"; }, ""},
      {"input gone", [](Checked& c) { c.workspace.settings.input = "/no/map.pbf"; },
       "main file does not exist. Click 'Check Last Splitter Files' ."},
      {"input not set", [](Checked& c) { c.workspace.settings.input = ""; }, "Please Add OSM file."},
      {"FID locked and 0",
       [](Checked& c) {
         c.workspace.settings.fid = "0";
         c.workspace.settings.fid_locked = true;
       },
       "FID can't be 0 . Please unlock FID"},
      {"contours without tiles", [](Checked& c) { c.workspace.settings.contours = true; },
       "Can't find coordinates for contours. Click Split Map."},
      {"clip folder gone",
       [](Checked& c) {
         c.workspace.settings.contours = c.workspace.settings.clip_contours = true;
         c.workspace.settings.clip_folders[0] = "/no/clip";
       },
       "Clip folder (/no/clip) does not exist."},
  };
  for (const Case& one : cases) {
    CAPTURE(one.what);
    Checked checked;
    one.arrange(checked);
    CHECK(checked.all() == CheckResult::stop);
    REQUIRE(checked.prompts.said.size() == 1);
    CHECK(checked.message().starts_with(one.message));
  }
}

TEST_CASE("warnings and questions that a build may pass") {
  Checked checked;
  Settings& settings = checked.workspace.settings;
  SUBCASE("transparent and routing") {
    settings.transparent = true;
    CHECK(checked.all() == CheckResult::go_on);
    CHECK(checked.message() == "A transparent map may cause routing problems.");
  }
  SUBCASE("no TYP file") {
    settings.use_typ = true;
    checked.prompts.answers = {Answer::yes};
    CHECK(checked.all() == CheckResult::go_on);
    CHECK(checked.message() == "No TYP file selected. Continue?");
  }
  SUBCASE("a family ID that is none becomes 100") {
    settings.fid = "70000";
    CHECK(checked.all() == CheckResult::go_on);
    CHECK(settings.fid == "100");
    CHECK(checked.message() == "Family ID between 0 and 65500. FID set to 100");
  }
  SUBCASE("an empty clip folder may be replaced") {
    settings.contours = settings.clip_contours = true;
    checked.home.write("clips/readme", "");
    settings.clip_folders[0] = checked.home / "clips";
    checked.workspace.tiles = {{"13224385", "", {47, 9}, {47.5, 9.5}, false}};
    checked.home.write("temp/template.args", "mapname: 13224385\n");
    checked.prompts.answers = {Answer::yes};
    CHECK(checked.all() == CheckResult::go_on);
    CHECK(checked.prompts.asks().front() ==
          "Clip folder" + (checked.home / "clips") + " contains no files.\r\nUse default folder?");
    CHECK(settings.clip_folders[0] == checked.workspace.path("files"));
  }
}
