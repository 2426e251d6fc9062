#include <doctest/doctest.h>

#include "app/script_run.hpp"
#include "base/files.hpp"
#include "pipeline/build_plan.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

std::string block(const std::string& name) {
  return "mapname: " + name + "\r\ndescription: D\r\ninput-file: " + name + ".o5m\r\n\r\n";
}

// A program folder with a split of two tiles in it.
struct Stage : test::StandIn {
  Stage() : StandIn("b\u00fcild $(x)") {
    home.write("temp/template.args", block("13224385") + block("13224386"));
    workspace.tiles = {{"13224385", "", {47.1, 9.1}, {47.2, 9.2}, false},
                       {"13224386", "", {47.1, 10.1}, {47.2, 10.2}, false}};
  }
  [[nodiscard]] std::string in_temp(std::string_view name) const {
    return platform::join(home / "temp", name);
  }
  [[nodiscard]] std::string text_of(std::string_view name) const { return read_whole_file(in_temp(name)); }
  BuildPlan plan;
};

}  // namespace

TEST_CASE("the command for a run is returned when everything it names is written") {
  Stage stage;
  stage.set("dem=1; contours=1; hgt-folder-1={home}/hgt");
  stage.workspace.tiles[0].selected = true;
  for (const char* name : {"hgt/N47E009.hgt", "temp/areas.poly"})
    stage.home.write(name, "x");
  for (const char* name : {"hgt/N47E009.osm", "hgt/N47E010.osm"})
    stage.home.write(name, "<osm></osm>");
  stage.home.write("hgt_land", "N47E009\nN47E010\n");
  const std::string line = createselectedarg(stage.workspace, stage.prompts, stage.plan);
  CHECK(stage.prompts.said.empty());
  CHECK(line == render_command(stage.plan.command, native_dialect).value);
  // The contours of the tile that is not selected stay out.
  CHECK(stage.plan.map_names == Texts{"13224385", "13224387"});
  CHECK(stage.text_of("templatetmp.args") == block("13224385"));
  for (const auto& [name, part] :
       {std::pair{"nodem.args", "N47E009.osm\r\n"}, {"dem.args", "areas.poly\r\n"}})
    CHECK(contains(stage.text_of(name), part));
}

TEST_CASE("a note is told and the build goes on; an error is told and ends it") {
  Stage stage;
  stage.set("contours=1");
  CHECK(createselectedarg(stage.workspace, stage.prompts, stage.plan) != cancelled_text);
  CHECK(stage.prompts.tells() == Texts{"Contours not added."});
  stage.set("dem=1; hgt-folder-1={home}/hgt");
  stage.home.write("hgt/N47E009.hgt", "heights");
  stage.home.write("temp/dem.args/in-the-way", "");
  CHECK(createselectedarg(stage.workspace, stage.prompts, stage.plan) == cancelled_text);
  CHECK(stage.prompts.tells().back().starts_with("Problem with dem.args\r\n" + stage.in_temp("dem.args")));
}

TEST_CASE("a selection is kept and brought back, and used while it names the selected tiles") {
  Stage stage;
  Workspace& workspace = stage.workspace;
  CHECK(save_selection(workspace).error == "Please select a Tile");
  workspace.tiles[1].selected = true;
  CHECK(save_selection(workspace).ok());
  CHECK(stage.text_of("templatesel.args") == block("13224386"));
  workspace.saved_selection = true;
  CHECK(gather_plan_facts(workspace).argument_file == stage.in_temp("templatesel.args"));
  workspace.tiles[0].selected = true;
  CHECK(gather_plan_facts(workspace).argument_file.empty());
  CHECK(loadarg(workspace, stage.in_temp("templatesel.args")).ok());
  CHECK_FALSE(workspace.tiles[0].selected);

  CHECK(loadarg(workspace, " ").error == "No arg File selected");
  CHECK(loadarg(workspace, stage.home / "gone.args").error.starts_with("Cannot locate template: "));
  const std::string empty = stage.home.write("empty.args", "# nothing\r\n");
  CHECK(loadarg(workspace, empty).error.starts_with("Template is corrupt."));
  const std::string other = stage.home.write("other.args", block("13224385") + block("99990000"));
  CHECK(contains(loadarg(workspace, other).error, "99990000"));
  CHECK_FALSE(workspace.tiles[0].selected);
  CHECK(workspace.tiles[1].selected);
}

TEST_CASE("the current arguments are saved, or the person learns why not") {
  Stage stage;
  const Command command{"java", {word("-jar"), quoted("mkgmap.jar"), word("--route")}};
  CHECK(save_current_arguments(stage.workspace, command).ok());
  CHECK(read_whole_file(stage.home / "args/sel.args") == "route\r\n");
  const std::string file = stage.workspace.settings.argument_folder = stage.home.write("file", "");
  const std::string path = platform::join(file, "sel.args");
  CHECK(save_current_arguments(stage.workspace, command).error.starts_with("Error saving " + path + "\r\n"));
}
