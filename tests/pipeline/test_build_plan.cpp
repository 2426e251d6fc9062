#include "pipeline/build_plan.hpp"

#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/text.hpp"
#include "platform/paths.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const std::string root = platform::separator == '/' ? "/home/ferro wen" : "C:\\ferro wen";

std::string in_root(std::string_view name) {
  return platform::join(root, platform::separator == '/' ? std::string(name) : replace_all(name, "/", "\\"));
}

const std::string template_text =
    "# head\n\nmapname: 13224385\ndescription: One\ninput-file: 13224385.o5m\n\n"
    "mapname: 13224386\ndescription: Two\ninput-file: 13224386.o5m\n\n"
    "mapname: 13224387\ndescription: Three\ninput-file: 13224387.o5m\n";

std::string block(const std::string& name, const std::string& description, const std::string& file) {
  return "mapname: " + name + "\r\ndescription: " + description + "\r\ninput-file: " + file + "\r\n\r\n";
}

Workspace split_workspace() {
  Workspace workspace;
  workspace.folder = ProgramFolder(root);
  Settings& settings = workspace.settings;
  settings.input = in_root("in.osm.pbf");
  settings.mkgmap_jar = in_root("mkgmap.jar");
  settings.split_folder = in_root("temp");
  settings.output_folder = in_root("out");
  settings.map_id = "13224385";
  settings.fid = "1000";
  settings.map_name = "My Map";
  settings.style = "default";
  settings.use_typ = false;
  settings.dem_options = "--dem-dists=3312";
  for (const char* number : {"13224385", "13224386", "13224387"})
    workspace.tiles.push_back({number, "", {47, 9}, {48, 10}, false});
  return workspace;
}

PlanFacts facts() {
  PlanFacts found;
  found.template_text = template_text;
  return found;
}

BuildPlan planned(const Workspace& workspace, const PlanFacts& found) {
  Result<BuildPlan> plan = plan_build(workspace, found);
  CAPTURE(plan.error);
  REQUIRE(plan.ok());
  return plan.value;
}

Texts paths_of(const BuildPlan& plan) {
  Texts paths;
  for (const PlannedFile& file : plan.files)
    paths.push_back(file.path);
  return paths;
}

// The argument files and inputs at the end of the command.
Texts inputs_of(const BuildPlan& plan) {
  const Texts all = plain_arguments(plan.command);
  return {std::find(all.begin(), all.end(), "-c"), all.end()};
}

}  // namespace

TEST_CASE("the tiles of a build") {
  Workspace workspace = split_workspace();
  SUBCASE("the whole split goes over splitter's own file") {
    for (const bool select_all : {false, true}) {
      for (Tile& tile : workspace.tiles)
        tile.selected = select_all;
      const BuildPlan plan = planned(workspace, facts());
      CHECK(plan.files.empty());
      CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/template.args")});
      CHECK(plan.map_names == Texts{"13224385", "13224386", "13224387"});
      CHECK(plan.log_lines == Texts{"arg:" + in_root("temp/template.args")});
    }
  }
  SUBCASE("a selection gets a file of its own") {
    workspace.tiles[2].selected = true;
    const BuildPlan plan = planned(workspace, facts());
    CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/templatetmp.args")});
    CHECK(plan.files[0].text == "# head\r\n\r\n" + block("13224387", "Three", "13224387.o5m"));
    CHECK(plan.map_names == Texts{"13224387"});
  }
  SUBCASE("another map ID renumbers") {
    workspace.settings.map_id = " 55550000 ";
    const BuildPlan plan = planned(workspace, facts());
    CHECK(paths_of(plan) == Texts{in_root("temp/templatenw.args")});
    CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/templatenw.args")});
    CHECK(plan.map_names == Texts{"55550000", "55550001", "55550002"});
    CHECK(plan.files[0].text == "# head\r\n\r\n" + block("55550000", "One", "13224385.o5m") +
                                    block("55550001", "Two", "13224386.o5m") +
                                    block("55550002", "Three", "13224387.o5m"));
  }
  SUBCASE("another map ID with a selection counts from the first tile of the split") {
    workspace.settings.map_id = "55550000";
    workspace.tiles[1].selected = true;
    const BuildPlan plan = planned(workspace, facts());
    CHECK(paths_of(plan) == Texts{in_root("temp/templatetmp.args"), in_root("temp/templatenw.args")});
    CHECK(contains(plan.files[0].text, block("13224386", "Two", "13224386.o5m")));
    CHECK(plan.files[1].text == "# head\r\n\r\n" + block("55550001", "Two", "13224386.o5m"));
    CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/templatenw.args")});
    CHECK(plan.map_names == Texts{"55550001"});
  }
  SUBCASE("a saved selection is used as it stands") {
    PlanFacts found = facts();
    found.argument_file = in_root("temp/templatesel.args");
    found.argument_file_text = block("13224386", "Renamed", "13224386.o5m");
    workspace.tiles[1].selected = true;
    BuildPlan plan = planned(workspace, found);
    CHECK(plan.files.empty());
    CHECK(inputs_of(plan) == Texts{"-c", found.argument_file});
    CHECK(plan.map_names == Texts{"13224386"});
    workspace.settings.map_id = "55550000";
    plan = planned(workspace, found);
    CHECK(paths_of(plan) == Texts{in_root("temp/templatenw.args")});
    CHECK(plan.files[0].text == block("55550001", "Renamed", "13224386.o5m"));
  }
  SUBCASE("a selected tile without a block is told, and stops the build when it is the only one") {
    workspace.tiles.push_back({"13224388", "", {}, {}, true});
    CHECK(plan_build(workspace, facts()).error == workspace.message(4));
    workspace.tiles[0].selected = true;
    CHECK(planned(workspace, facts()).notes ==
          Texts{"Not in " + in_root("temp/template.args") + ": 13224388"});
  }
}

TEST_CASE("an unsplit input is one block in the program folder") {
  Workspace workspace = split_workspace();
  workspace.settings.description = "Mine";
  workspace.settings.contours = true;
  for (const char* input : {"in.MP", "small.osm.pbf", "{a}: \"b\" $(c) %d%.osm"}) {
    workspace.settings.input = in_root(input);
    workspace.settings.unsplit_input = !contains(input, ".MP");
    CHECK_FALSE(builds_from_tiles(workspace));
    const BuildPlan plan = planned(workspace, {});
    CHECK(paths_of(plan) == Texts{in_root("args/template1.args")});
    CHECK(plan.files[0].text == block("13224385", "Mine", in_root(input)));
    CHECK(inputs_of(plan) == Texts{"-c", in_root("args/template1.args"), "--description=Mine"});
    CHECK(plan.map_names == Texts{"13224385"});
    CHECK(plan.notes == Texts{"Contours not added."});
  }
  workspace.settings.input = in_root("a\nmapname: 1.osm");
  CHECK(contains(plan_build(workspace, {}).error, workspace.settings.input));
}

TEST_CASE("contours come first, under map names of their own") {
  Workspace workspace = split_workspace();
  workspace.settings.contours = true;
  PlanFacts found = facts();
  CHECK(planned(workspace, found).notes == Texts{"Contours not added."});

  found.contour_files = {in_root("hgt/N47E009.osm"), in_root("hgt/N47E010.osm")};
  workspace.tiles[0].selected = true;
  workspace.settings.map_id = "55550000";
  const BuildPlan plan = planned(workspace, found);
  CHECK(plan.notes.empty());
  CHECK(plan.map_names == Texts{"55550000", "55550003", "55550004"});
  CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/nodem.args"), "-c", in_root("temp/templatenw.args")});
  CHECK(plan.files.back().text ==
        "transparent\r\ndraw-priority: 30\r\n\r\n"
        "mapname: 55550003\r\ndescription:Contours\r\ninput-file: " +
            found.contour_files[0] +
            "\r\n\r\n"
            "mapname: 55550004\r\ndescription:Contours\r\ninput-file: " +
            found.contour_files[1] +
            "\r\n\r\n"
            "no-transparent\r\ndraw-priority: 25\r\n");

  SUBCASE("eight digits that end behind the tiles") {
    workspace.settings.map_id = "99999997";
    CHECK(planned(workspace, found).map_names == Texts{"99999997", "99999995", "99999996"});
    workspace.settings.map_id = "99999998";
    CHECK(contains(plan_build(workspace, found).error, "99999998"));
  }
  SUBCASE("the free options have the last word on what holds for the tiles") {
    workspace.settings.options_text = "--draw-priority=40\r\n--transparent";
    CHECK(planned(workspace, found).files.back().text.ends_with("\r\n\r\ndraw-priority: 40\r\n"));
    workspace.settings.use_options_text = false;
    CHECK(planned(workspace, found).files.back().text.ends_with("no-transparent\r\ndraw-priority: 25\r\n"));
  }
  SUBCASE("a line end in a path") {
    found.contour_files = {"/a\nb/N47E009.osm"};
    CHECK(contains(plan_build(workspace, found).error, "/a\nb/"));
  }
}

TEST_CASE("DEM arguments stand before the tiles") {
  Workspace workspace = split_workspace();
  workspace.settings.dem = true;
  PlanFacts found = facts();
  CHECK(plan_build(workspace, found).error == "No hgt files found . Please untick DEM");

  found.hgt_folders = {"/hgt one", "/two"};
  found.areas_poly_exists = true;
  workspace.settings.options_text = "--x\r\n<dem>\r\n--dem-interpolation=auto\r\n</dem>";
  const BuildPlan plan = planned(workspace, found);
  const std::string options = "dem-dists=3312\r\ndem-interpolation=auto\r\ndem=/hgt one,/two\r\n";
  CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/dem.args"), "-c", in_root("temp/template.args")});
  CHECK(plan.files.back().text == options + "\r\ndem-poly=" + in_root("temp/areas.poly") + "\r\n");
  CHECK_FALSE(contains(join_texts(plain_arguments(plan.command), " "), "dem-interpolation"));

  SUBCASE("an unsplit input has no outline") {
    workspace.settings.unsplit_input = true;
    CHECK(planned(workspace, found).files.back().text == options);
  }
  SUBCASE("folders that mkgmap would misread are refused") {
    for (const char* folder : {"/a,b", "/a\nb"}) {
      found.hgt_folders = {folder};
      CHECK(contains(plan_build(workspace, found).error, folder));
    }
  }
  SUBCASE("the block is left alone while DEM is off") {
    workspace.settings.dem = false;
    const BuildPlan without = planned(workspace, found);
    CHECK(without.files.empty());
    CHECK_FALSE(contains(join_texts(plain_arguments(without.command), " "), "interpolation"));
  }
}

TEST_CASE("the TYP is passed as a copy in the output folder") {
  Workspace workspace = split_workspace();
  Settings& settings = workspace.settings;
  settings.use_typ = true;
  settings.typ = in_root("typ/My.TYP");
  BuildPlan plan = planned(workspace, facts());
  CHECK(plan.typ_source == settings.typ);
  CHECK(plan.typ_copy == in_root("out/My.TYP"));
  CHECK(inputs_of(plan).back() == in_root("out/My.TYP"));

  settings.typ = in_root("out/My.TYP");
  plan = planned(workspace, facts());
  CHECK(plan.typ_source == plan.typ_copy);
  CHECK(inputs_of(plan).back() == in_root("out/My.TYP"));

  for (const auto& [use, typ] : {std::pair{false, "My.TYP"}, std::pair{true, " "}}) {
    settings.use_typ = use;
    settings.typ = typ;
    plan = planned(workspace, facts());
    CHECK(plan.typ_copy.empty());
    CHECK(inputs_of(plan).back() == in_root("temp/template.args"));
  }
}

TEST_CASE("what stops a plan, and what is only told") {
  Workspace workspace = split_workspace();
  SUBCASE("a map ID that is none") {
    for (const char* map_id : {"", "1322438", "132243855", "1322438A"}) {
      workspace.settings.map_id = map_id;
      CHECK(plan_build(workspace, facts()).error == "mapname needs 8 digits");
    }
  }
  SUBCASE("no template") { CHECK(plan_build(workspace, {}).error == workspace.message(4)); }
  SUBCASE("no input and no output folder") {
    workspace.settings.unsplit_input = true;
    workspace.settings.input = " ";
    CHECK(plan_build(workspace, {}).error == "Please Add OSM file.");
    workspace.settings.output_folder = workspace.settings.map_folder = "";
    CHECK(plan_build(workspace, {}).error == workspace.message(65));
  }
  SUBCASE("warnings of the options text name the option set") {
    workspace.settings.options_text = "extra.mp\r\n<dem>";
    CHECK(planned(workspace, facts()).notes ==
          Texts{"In options: extra.mp\r\nResults will be unpredictable!",
                "In options: mkopts </dem>\r\nResults will be unpredictable!"});
    workspace.settings.use_options_text = false;
    CHECK(planned(workspace, facts()).notes.empty());
  }
}
