#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "app/script_run.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/build_plan.hpp"
#include "platform/paths.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

std::string block(const std::string& name) {
  return "mapname: " + name + "\r\ndescription: D\r\ninput-file: " + name + ".o5m\r\n\r\n";
}

// A program folder with a split of two tiles in it.
struct Stage {
  test::TempFolder folder{"b\xC3\xBCild $(x)"};
  Workspace workspace;
  test::FakePrompts prompts;
  BuildPlan plan;

  Stage() {
    workspace.folder = ProgramFolder(folder.path());
    Settings& settings = workspace.settings;
    settings.mkgmap_jar = folder / "mkgmap.jar";
    settings.split_folder = folder / "temp";
    settings.output_folder = folder / "out";
    settings.argument_folder = folder / "saved";
    settings.hgt_folder = folder / "hgt";
    settings.map_id = "13224385";
    settings.use_typ = false;
    folder.write("temp/template.args", block("13224385") + block("13224386"));
    workspace.tiles = {{"13224385", "", {47.1, 9.1}, {47.2, 9.2}, false},
                       {"13224386", "", {47.1, 10.1}, {47.2, 10.2}, false}};
  }
  // Path of a file in a subfolder, as the system writes it.
  [[nodiscard]] std::string in(std::string_view subfolder, std::string_view name) const {
    return platform::join(folder / subfolder, name);
  }
  [[nodiscard]] std::string text_of(std::string_view name) const {
    return decode_tool_text(read_whole_file(folder / name));
  }
};

}  // namespace

TEST_CASE("the command for a run is returned when everything it names is written") {
  Stage stage;
  stage.workspace.settings.dem = stage.workspace.settings.contours = true;
  stage.workspace.tiles[0].selected = true;
  stage.folder.write("hgt/N47E009.hgt", "heights");
  stage.folder.write("hgt/N47E009.osm", "contours");
  stage.folder.write("hgt/N47E010.osm", "contours of a tile that is not selected");
  stage.folder.write("temp/areas.poly", "outline");
  stage.folder.write("hgt_land", "N47E009\nN47E010\n");
  const std::string line = createselectedarg(stage.workspace, stage.prompts, stage.plan);
  CHECK(stage.prompts.said.empty());
  CHECK(line == render_command(stage.plan.command, native_dialect).value);
  CHECK(stage.plan.map_names == Texts{"13224385", "13224387"});
  CHECK(stage.text_of("temp/templatetmp.args") == block("13224385"));
  CHECK(contains(stage.text_of("temp/nodem.args"), "input-file: " + stage.in("hgt", "N47E009.osm") + "\r\n"));
  CHECK(contains(stage.text_of("temp/dem.args"), "dem=" + stage.folder / "hgt" + "\r\n"));
  CHECK(contains(stage.text_of("temp/dem.args"), "dem-poly=" + stage.in("temp", "areas.poly")));
}

TEST_CASE("a note is told and the build goes on; an error is told and ends it") {
  Stage stage;
  stage.workspace.settings.contours = true;
  CHECK(createselectedarg(stage.workspace, stage.prompts, stage.plan) != cancelled_text);
  CHECK(stage.prompts.tells() == Texts{"Contours not added."});

  stage.workspace.settings.dem = true;
  CHECK(createselectedarg(stage.workspace, stage.prompts, stage.plan) == cancelled_text);
  CHECK(stage.prompts.tells().back() == "No hgt files found . Please untick DEM");

  stage.folder.write("hgt/N47E009.hgt", "heights");
  stage.folder.write("temp/dem.args/in-the-way", "");
  CHECK(createselectedarg(stage.workspace, stage.prompts, stage.plan) == cancelled_text);
  CHECK(stage.prompts.tells().back().starts_with("Problem with dem.args\r\n" + stage.in("temp", "dem.args")));
}

TEST_CASE("clipped contours come from the clip folder") {
  Stage stage;
  stage.workspace.settings.contours = stage.workspace.settings.clip_contours = true;
  stage.workspace.settings.clip_folders[0] = stage.folder / "clips";
  stage.folder.write("hgt/N47E009.osm", "whole");
  stage.folder.write("clips/N47E010clp.pbf", "clipped");
  CHECK(gather_plan_facts(stage.workspace).contour_files == Texts{stage.in("clips", "N47E010clp.pbf")});
}

TEST_CASE("a selection is kept and brought back") {
  Stage stage;
  Workspace& workspace = stage.workspace;
  CHECK(save_selection(workspace).error == "Please select a Tile");
  CHECK(create_smalltemparg(workspace).error == "Please select a Tile");
  workspace.tiles[1].selected = true;
  CHECK(save_selection(workspace).ok());
  CHECK(stage.text_of("temp/templatesel.args") == block("13224386"));
  workspace.settings.map_id = "55550000";
  CHECK(save_newtemplate(workspace).ok());
  CHECK(contains(stage.text_of("temp/templatenw.args"), "mapname: 55550001"));

  workspace.tiles[1].selected = false;
  workspace.tiles[0].selected = true;
  CHECK(loadarg(workspace, stage.in("temp", "templatesel.args")).ok());
  CHECK_FALSE(workspace.tiles[0].selected);
  CHECK(workspace.tiles[1].selected);

  SUBCASE("a saved selection is used while it names the selected tiles") {
    CHECK(gather_plan_facts(workspace).argument_file.empty());
    workspace.saved_selection = true;
    CHECK(gather_plan_facts(workspace).argument_file == stage.in("temp", "templatesel.args"));
    workspace.tiles[0].selected = true;
    CHECK(gather_plan_facts(workspace).argument_file.empty());
    workspace.tiles[1].selected = false;
    CHECK(gather_plan_facts(workspace).argument_file.empty());
  }
  SUBCASE("what is wrong with an argument file is told, and the selection stays") {
    CHECK(loadarg(workspace, " ").error == "No arg File selected");
    CHECK(loadarg(workspace, stage.folder / "gone.args").error.starts_with("Cannot locate template: "));
    stage.folder.write("empty.args", "# nothing\r\n");
    CHECK(loadarg(workspace, stage.folder / "empty.args").error.starts_with("Template is corrupt."));
    stage.folder.write("other.args", block("13224385") + block("99990000"));
    CHECK(contains(loadarg(workspace, stage.folder / "other.args").error, "99990000"));
    CHECK_FALSE(workspace.tiles[0].selected);
    CHECK(workspace.tiles[1].selected);
  }
}

TEST_CASE("the current arguments are saved, or the person learns why not") {
  Stage stage;
  const Command command{"java",
                        {word("-jar"), quoted("mkgmap.jar"), word("--route"), option("--x", "\xC3\xBC")}};
  CHECK(save_current_arguments(stage.workspace, command).ok());
  CHECK(stage.text_of("saved/sel.args") == "route\r\nx=\xC3\xBC\r\n");
  stage.folder.write("file", "");
  stage.workspace.settings.argument_folder = stage.folder / "file";
  const std::string path = stage.in("file", "sel.args");
  CHECK(save_current_arguments(stage.workspace, command).error.starts_with("Error saving " + path + "\r\n"));
}
