#include <doctest/doctest.h>

#include <chrono>
#include <filesystem>

#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
namespace fs = std::filesystem;

namespace {

constexpr const char* template_text =
    "mapname: 13224386\ndescription: Second\ninput-file: 13224386.o5m\n\n"
    "mapname: 13224385\ndescription: First\ninput-file: 13224385.o5m\n";

// A program folder with a split of two tiles made from its input.
struct Split {
  test::TempFolder folder{"ti les"};
  Workspace workspace;
  test::FakePrompts prompts;

  Split() {
    workspace.folder = ProgramFolder(folder.path());
    workspace.settings.input = folder.write("map.osm.pbf", test::small_pbf());
    workspace.settings.last_split_input = workspace.settings.input;
    workspace.settings.max_nodes = "800000";
    write_areas("# Generated Sat Nov 21 12:23:42 UTC 2020");
    folder.write("temp/template.args", template_text);
    folder.write("temp/13224385.o5m", "tile");
    folder.write("temp/13224386.o5m", "tile");
    set_input_year(2019);
  }
  void write_areas(const std::string& comment) const {
    folder.write("temp/areas.list", comment +
                                        "\n13224385: 2197504,444416 to 2203648,450560\n"
                                        "13224386: 2191360,444416 to 2197504,450560\n"
                                        "13224387: 2191360,440320 to 2197504,444416\n");
  }
  void set_input_year(int year) const { set_year(workspace.settings.input, year); }
  static void set_year(const std::string& path, int year) {
    const std::chrono::sys_seconds days = std::chrono::sys_days(std::chrono::year(year) / 6 / 1);
    fs::last_write_time(path, std::chrono::file_clock::from_sys(days));
  }
  SplitState reload() {
    set_splitterfiles(workspace, prompts);
    return workspace.split_state;
  }
};

}  // namespace

TEST_CASE("areas and template are joined by number, in the order of the areas") {
  const Split split;
  const TileList tiles = join_tiles(
      "13224385: 0,0 to 4194304,8388608\n13224386: 1,1 to 2,2\n13224387: 1,1 to 2,2\n", template_text);
  REQUIRE(tiles.size() == 3);
  CHECK(tiles[0].record_text() == "13224385\r\nFirst\r\n0,0\r\n90,180");
  CHECK(tiles[1].description == "Second");
  CHECK(tiles[2].description.empty());
}

TEST_CASE("loading: the tiles and the state") {
  Split split;
  CHECK(split.reload() == SplitState::no_need_to_split);
  CHECK(split.workspace.tiles.size() == 3);
  SUBCASE("the input is newer") {
    split.set_input_year(2021);
    CHECK(split.reload() == SplitState::not_up_to_date);
    CHECK(split.workspace.tiles.size() == 3);
  }
  SUBCASE("without a date in the list the time of the list itself counts") {
    split.write_areas("# Generated yesterday");
    Split::set_year(split.folder / "temp/areas.list", 2018);
    CHECK(split.reload() == SplitState::not_up_to_date);
    Split::set_year(split.folder / "temp/areas.list", 2022);
    CHECK(split.reload() == SplitState::no_need_to_split);
  }
  SUBCASE("comments only, then no list") {
    split.folder.write("temp/areas.list", "# List of areas\r\n#\r\n");
    CHECK(split.reload() == SplitState::no_files);
    CHECK(split.workspace.tiles.empty());
    fs::remove(split.folder / "temp/areas.list");
    CHECK(split.reload() == SplitState::no_files);
  }
  SUBCASE("no tiles") {
    fs::remove(split.folder / "temp/13224385.o5m");
    fs::remove(split.folder / "temp/13224386.o5m");
    CHECK(split.reload() == SplitState::no_files);
    CHECK(split.workspace.tiles.empty());
  }
  SUBCASE("an empty tile") {
    split.folder.write("temp/13224386.o5m", "");
    CHECK(split.reload() == SplitState::needs_splitting);
  }
  SUBCASE("tiles of another input are not listed") {
    split.workspace.settings.last_split_input = split.folder / "other.osm.pbf";
    CHECK(split.reload() == SplitState::no_need_to_split);  // small
    CHECK(split.workspace.tiles.empty());
    split.workspace.settings.last_split_input.clear();  // nobody knows: the date decides
    CHECK(split.reload() == SplitState::no_need_to_split);
    CHECK(split.workspace.tiles.size() == 3);
  }
  SUBCASE("missing and MP inputs") {
    split.workspace.settings.input = split.folder / "none.pbf";
    CHECK(split.reload() == SplitState::input_missing);
    split.workspace.settings.input = split.folder.write("a.mp", "[IMG ID]");
    CHECK(split.reload() == SplitState::no_need_to_split);
    CHECK(split.workspace.tiles.empty());
  }
  SUBCASE("bad lines are told") {
    split.folder.write("temp/areas.list", "13224385: 1,1 to 2,2\nrubbish\n");
    split.reload();
    CHECK(split.workspace.tiles.size() == 1);
    CHECK(split.prompts.tells() ==
          std::vector<std::string>{platform::join(split.folder / "temp", "areas.list") +
                                   "\r\nline 2: no tile number with four bounds"});
    return;
  }
  CHECK(split.prompts.tells().empty());
}

TEST_CASE("a split that covers much, with many nodes in a tile, is warned of") {
  Split split;
  const long fifteen_degrees = 699051;  // map units, rounded up
  for (const auto& [units, max_nodes, warned] :
       {std::tuple{fifteen_degrees, "1600000", true}, std::tuple{fifteen_degrees - 10, "1600000", false},
        std::tuple{fifteen_degrees, "1000000", false}}) {
    split.prompts.said.clear();
    split.workspace.settings.max_nodes = max_nodes;
    split.folder.write("temp/areas.list", "13224385: 0,0 to 100," + std::to_string(units) + "\n");
    split.reload();
    const std::vector<std::string> wanted = {"Maxnodes (1600000) may need to be lowered to 800,000"};
    CHECK(split.prompts.tells() == (warned ? wanted : std::vector<std::string>{}));
  }
}

TEST_CASE("already split: own tiles, all there, not older than the input") {
  Split split;
  Settings& settings = split.workspace.settings;
  REQUIRE(is_already_split(split.workspace));
  SUBCASE("newer input") { split.set_input_year(2021); }
  SUBCASE("other input") { settings.last_split_input = split.folder / "other.osm.pbf"; }
  SUBCASE("nothing was split") { settings.last_split_input.clear(); }
  SUBCASE("a tile is empty") { split.folder.write("temp/13224385.o5m", ""); }
  SUBCASE("no template") { fs::remove(split.folder / "temp/template.args"); }
  SUBCASE("no list") { fs::remove(split.folder / "temp/areas.list"); }
  SUBCASE("no input") { fs::remove(settings.input); }
  SUBCASE("another folder") { settings.split_folder = split.folder / "elsewhere"; }
  CHECK_FALSE(is_already_split(split.workspace));
}

TEST_CASE("state of an input by itself") {
  Workspace workspace;
  CHECK(input_state(workspace) == SplitState::unknown);
  const test::TempFolder folder;
  workspace.settings.input = folder.write("a.osm.pbf", "x");
  CHECK(input_state(workspace) == SplitState::no_need_to_split);
  fs::resize_file(workspace.settings.input, 12000000);
  CHECK(input_state(workspace) == SplitState::no_need_to_split);
  fs::resize_file(workspace.settings.input, 12000001);
  CHECK(input_state(workspace) == SplitState::needs_splitting);
  workspace.settings.unsplit_input = true;
  CHECK(input_state(workspace) == SplitState::no_need_to_split);
}

TEST_CASE("indicator, label and selection") {
  MessageTable messages;
  messages.set(36, "Teilen");
  CHECK(state_display(SplitState::needs_splitting, messages)->text == "Teilen");
  CHECK(state_display(SplitState::not_up_to_date, messages)->text == "Splitter files may not be up-to-date");
  CHECK(state_display(SplitState::not_up_to_date, messages)->colour.green == 125);
  CHECK(state_display(SplitState::no_files, messages)->text == "No files");
  CHECK_FALSE(state_display(static_cast<SplitState>(11), messages));

  TileList tiles(3);
  CHECK(tile_list_label({}) == " NOT split");
  CHECK(tile_list_label(tiles) == "Using all splitter files");
  for (std::size_t i = 0; i < tiles.size(); ++i)
    tiles[i].number = "1322438" + std::to_string(i);
  CHECK(select_tiles(tiles, {"13224382", "13224380", "13224380"}).ok());
  CHECK(tile_list_label(tiles) == " (Maps Selected:2)");
  CHECK(select_tiles(tiles, {"13224381", "9", "x"}).error == "No such tile: 9, x");
  CHECK(tiles[2].selected);  // unchanged
  CHECK(select_tiles(tiles, {}).ok());
  CHECK(selected_count(tiles) == 0);
}
