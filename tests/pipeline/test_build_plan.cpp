#include "pipeline/build_plan.hpp"

#include <doctest/doctest.h>

#include <algorithm>

#include "base/text.hpp"
#include "platform/paths.hpp"
#include "support/settings_of.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

std::string in_root(std::string_view name) {
  return platform::separator == '/' ? "/home/ferro wen/" + std::string(name)
                                    : "C:\\ferro wen\\" + replace_all(name, "/", "\\");
}

std::string block(const std::string& name, const std::string& description, const std::string& file) {
  return "mapname: " + name + "\r\ndescription: " + description + "\r\ninput-file: " + file + "\r\n\r\n";
}

struct Planned {
  Planned() {
    workspace.folder = ProgramFolder(platform::folder_of(in_root("x")));
    settings.input = in_root("in.osm.pbf");
    settings.split_folder = in_root("temp");
    settings.output_folder = in_root("out");
    for (const char* number : {"13224385", "13224386", "13224387"})
      workspace.tiles.push_back({number, "", {47, 9}, {48, 10}, false});
    facts.template_text = "# head\n" + block("13224385", "One", "1.o5m") + block("13224386", "Two", "2.o5m") +
                          block("13224387", "Three", "3.o5m");
  }
  [[nodiscard]] BuildPlan plan() const {
    Result<BuildPlan> made = plan_build(workspace, facts);
    CHECK(made.error == "");
    return made.value;
  }
  [[nodiscard]] std::string error() const { return plan_build(workspace, facts).error; }

  Workspace workspace;
  Settings& settings = workspace.settings = test::settings_of(
      "mkgmap=/m/mkgmap.jar; fid=1000; map-name=My Map; use-typ=0; dem-options=--dem-dists=3312");
  PlanFacts facts;
};

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

TEST_CASE("the tiles of a build, their selection and their numbers") {
  struct Case {
    const char* map_id;
    std::vector<std::size_t> selected;
    Texts files;
    Texts map_names;
    std::string blocks;  // of the last file
  };
  const Texts whole = {"13224385", "13224386", "13224387"};
  const std::string nw = in_root("temp/templatenw.args");
  const std::string tmp = in_root("temp/templatetmp.args");
  const std::string renumbered = block("55550000", "One", "1.o5m") + block("55550001", "Two", "2.o5m") +
                                 block("55550002", "Three", "3.o5m");
  const Case cases[] = {
      {"13224385", {}, {}, whole, ""},
      {"13224385", {0, 1, 2}, {}, whole, ""},
      {"13224385", {2}, {tmp}, {"13224387"}, block("13224387", "Three", "3.o5m")},
      {" 55550000 ", {}, {nw}, {"55550000", "55550001", "55550002"}, renumbered},
      {"55550000", {1}, {tmp, nw}, {"55550001"}, block("55550001", "Two", "2.o5m")},
  };
  for (const Case& each : cases) {
    Planned planned;
    planned.settings.map_id = each.map_id;
    for (const std::size_t index : each.selected)
      planned.workspace.tiles[index].selected = true;
    const BuildPlan plan = planned.plan();
    const std::string file = each.files.empty() ? in_root("temp/template.args") : each.files.back();
    CHECK(paths_of(plan) == each.files);
    CHECK(inputs_of(plan) == Texts{"-c", file});
    CHECK(plan.map_names == each.map_names);
    if (!plan.files.empty()) CHECK(plan.files.back().text == "# head\r\n" + each.blocks);
  }
}

TEST_CASE("a saved selection is used as it stands; a tile without a block is told") {
  Planned planned;
  planned.workspace.tiles[1].selected = true;
  planned.facts.argument_file = in_root("temp/templatesel.args");
  planned.facts.argument_file_text = block("13224386", "Renamed", "2.o5m");
  CHECK(planned.plan().files.empty());
  CHECK(inputs_of(planned.plan()) == Texts{"-c", planned.facts.argument_file});
  planned.settings.map_id = "55550000";
  CHECK(planned.plan().files[0].text == block("55550001", "Renamed", "2.o5m"));

  Planned other;
  other.workspace.tiles.push_back({"13224388", "", {}, {}, true});
  CHECK(other.error() == other.workspace.message(4));
  other.workspace.tiles[0].selected = true;
  CHECK(other.plan().notes == Texts{"Not in " + in_root("temp/template.args") + ": 13224388"});
}

TEST_CASE("an unsplit input is one block in the program folder") {
  Planned planned;
  test::assign(planned.settings, "description=Mine; contours=1");
  for (const char* input : {"in.MP", "{a}: \"b\" $(c) %d%.osm"}) {
    planned.settings.input = in_root(input);
    planned.settings.unsplit_input = !contains(input, ".MP");
    const BuildPlan plan = planned.plan();
    CHECK(plan.files[0].text == block("13224385", "Mine", in_root(input)));
    CHECK(inputs_of(plan) == Texts{"-c", in_root("args/template1.args"), "--description=Mine"});
    CHECK(plan.notes == Texts{"Contours not added."});
  }
  planned.settings.input = in_root("a\nmapname: 1.osm");
  CHECK(contains(planned.error(), planned.settings.input));
}

TEST_CASE("contours come first, under map names of their own") {
  Planned planned;
  planned.workspace.tiles[0].selected = true;
  test::assign(planned.settings, "contours=1; map-id=55550000");
  CHECK(planned.plan().notes == Texts{"Contours not added."});
  planned.facts.contour_files = {"/h/N47E009.osm", "/h/N47E010.osm"};
  const BuildPlan plan = planned.plan();
  CHECK(plan.map_names == Texts{"55550000", "55550003", "55550004"});
  CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/nodem.args"), "-c", in_root("temp/templatenw.args")});
  CHECK(plan.files.back().text ==
        "transparent\r\ndraw-priority: 30\r\n\r\n"
        "mapname: 55550003\r\ndescription:Contours\r\ninput-file: /h/N47E009.osm\r\n\r\n"
        "mapname: 55550004\r\ndescription:Contours\r\ninput-file: /h/N47E010.osm\r\n\r\n"
        "no-transparent\r\ndraw-priority: 25\r\n");

  // The free options have the last word on what holds for the tiles.
  planned.settings.options_text = "--draw-priority=40\r\n--transparent";
  CHECK(planned.plan().files.back().text.ends_with("\r\n\r\ndraw-priority: 40\r\n"));
  planned.settings.use_options_text = false;
  CHECK(planned.plan().files.back().text == plan.files.back().text);
  planned.settings.map_id = "99999998";
  CHECK(contains(planned.error(), "99999998"));
}

TEST_CASE("DEM arguments stand before the tiles") {
  Planned planned;
  planned.settings.dem = true;
  CHECK(planned.error() == "No hgt files found . Please untick DEM");
  planned.facts.hgt_folders = {"/hgt one", "/two"};
  planned.facts.areas_poly_exists = true;
  planned.settings.options_text = "--x\r\n<dem>\r\n--dem-interpolation=auto\r\n</dem>";
  const BuildPlan plan = planned.plan();
  const std::string options = "dem-dists=3312\r\ndem-interpolation=auto\r\ndem=/hgt one,/two\r\n";
  CHECK(inputs_of(plan) == Texts{"-c", in_root("temp/dem.args"), "-c", in_root("temp/template.args")});
  CHECK(plan.files.back().text == options + "\r\ndem-poly=" + in_root("temp/areas.poly") + "\r\n");
  planned.settings.unsplit_input = true;
  CHECK(planned.plan().files.back().text == options);
  for (const char* folder : {"/a,b", "/a\nb"}) {
    planned.facts.hgt_folders = {folder};
    CHECK(contains(planned.error(), folder));
  }
  planned.settings.dem = false;
  CHECK_FALSE(contains(join_texts(plain_arguments(planned.plan().command), " "), "interpolation"));
}

TEST_CASE("the TYP is passed as a copy in the output folder") {
  Planned planned;
  planned.settings.use_typ = true;
  for (const std::string& typ : {in_root("typ/My.TYP"), in_root("out/My.TYP")}) {
    planned.settings.typ = typ;
    CHECK(planned.plan().typ_source == typ);
    CHECK(planned.plan().typ_copy == in_root("out/My.TYP"));
    CHECK(inputs_of(planned.plan()).back() == in_root("out/My.TYP"));
  }
  planned.settings.typ = " ";
  CHECK(planned.plan().typ_copy.empty());
}

TEST_CASE("what stops a plan, and what is only told") {
  Planned planned;
  planned.settings.options_text = "extra.mp\r\n<dem>";
  CHECK(planned.plan().notes == Texts{"In options: extra.mp\r\nResults will be unpredictable!",
                                      "In options: mkopts </dem>\r\nResults will be unpredictable!"});
  for (const char* map_id : {"", "1322438", "132243855", "1322438A"}) {
    planned.settings.map_id = map_id;
    CHECK(planned.error() == "mapname needs 8 digits");
  }
  planned.settings.map_id = "13224385";
  planned.facts.template_text.clear();
  CHECK(planned.error() == planned.workspace.message(4));
  planned.settings.unsplit_input = true;
  planned.settings.input = " ";
  CHECK(planned.error() == "Please Add OSM file.");
  planned.settings.output_folder = planned.settings.map_folder = "";
  CHECK(planned.error() == planned.workspace.message(65));
}
