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
using Texts = std::vector<std::string>;

namespace {

constexpr const char* areas =
    "\n13224385: 0,0 to 4194304,8388608\n13224386: 1,1 to 2,2\n13224387: 1,1 to 2,2\n";

// A program folder with a split made from its input. It has three areas, but only two tiles.
struct Split {
  test::TempFolder folder{"ti les"};
  Workspace workspace;
  test::FakePrompts prompts;

  Split() {
    workspace.folder = ProgramFolder(folder.path());
    workspace.settings.input = workspace.settings.last_split_input =
        folder.write("map.osm.pbf", test::small_pbf());
    write("areas.list", std::string("# Generated Sat Nov 21 12:23:42 UTC 2020") + areas);
    write("template.args",
          "mapname: 13224386\ndescription: Second\ninput-file: 13224386.o5m\n\n"
          "mapname: 13224385\ndescription: First\ninput-file: 13224385.o5m\n");
    write("13224385.o5m", "tile");
    write("13224386.o5m", "tile");
    const std::chrono::sys_seconds day = std::chrono::sys_days(std::chrono::year(2019) / 6 / 1);
    fs::last_write_time(workspace.settings.input, std::chrono::file_clock::from_sys(day));
  }
  void write(const std::string& name, std::string_view text) const { folder.write("temp/" + name, text); }
  SplitState reload() {
    set_splitterfiles(workspace, prompts);
    return workspace.split_state;
  }
};

}  // namespace

TEST_CASE("tiles, state and whether a split is needed follow from what lies there") {
  struct Case {
    std::string changed;  // a file of the split
    const char* text;     // nothing: it is removed
    SplitState state;
    std::size_t tiles;
    bool already_split;
  };
  const std::string older = std::string("# Generated Sat Nov 21 12:23:42 UTC 2018") + areas;
  for (const Case& one : {Case{"none", "", SplitState::no_need_to_split, 3, true},
                          Case{"areas.list", older.c_str(), SplitState::not_up_to_date, 3, false},
                          Case{"areas.list", areas, SplitState::no_need_to_split, 3, true},
                          Case{"areas.list", "# List of areas\r\n#\r\n", SplitState::no_files, 0, false},
                          Case{"areas.list", nullptr, SplitState::no_files, 0, false},
                          Case{"template.args", nullptr, SplitState::needs_splitting, 3, false},
                          Case{"13224385.o5m", nullptr, SplitState::needs_splitting, 3, false},
                          Case{"13224386.o5m", "", SplitState::needs_splitting, 3, false},
                          Case{"../map.osm.pbf", nullptr, SplitState::input_missing, 0, false}}) {
    CAPTURE(one.changed);
    Split split;
    if (one.text == nullptr)
      fs::remove(split.folder / ("temp/" + one.changed));
    else
      split.write(one.changed, one.text);
    CHECK(split.reload() == one.state);
    CHECK(split.workspace.tiles.size() == one.tiles);
    CHECK(is_already_split(split.workspace) == one.already_split);
    CHECK(split.prompts.said.empty());
  }
}

TEST_CASE("tiles of another input are not listed, those of an unknown one are") {
  Split split;
  Settings& settings = split.workspace.settings;
  settings.last_split_input.clear();
  CHECK(split.reload() == SplitState::no_need_to_split);
  CHECK(split.workspace.tiles.size() == 3);
  settings.last_split_input = split.folder / "other.osm.pbf";
  CHECK(split.reload() == SplitState::no_need_to_split);
  CHECK(split.workspace.tiles.empty());
  CHECK_FALSE(is_already_split(split.workspace));
  fs::resize_file(settings.input, 12000000);
  CHECK(split.reload() == SplitState::no_need_to_split);
  fs::resize_file(settings.input, 12000001);
  CHECK(split.reload() == SplitState::needs_splitting);
}

TEST_CASE("areas and template are joined by number, what is odd about them is told") {
  Split split;
  split.write("areas.list", std::string(areas) + "rubbish\n");
  split.reload();
  const TileList& tiles = split.workspace.tiles;
  REQUIRE(tiles.size() == 3);
  CHECK(tiles[0].record_text() == "13224385\r\nFirst\r\n0,0\r\n90,180");
  CHECK(tiles[1].description == "Second");
  CHECK(tiles[2].description.empty());
  CHECK(split.prompts.tells() == Texts{platform::join(split.folder / "temp", "areas.list") +
                                       "\r\nline 5: no tile number with four bounds"});
  split.prompts.said.clear();
  for (const auto& [units, max_nodes] :
       {std::pair{"699051", "1600000"}, {"699041", "1600000"}, {"699051", "1000000"}}) {
    split.workspace.settings.max_nodes = max_nodes;
    split.write("areas.list", std::string("13224385: 0,0 to 100,") + units + "\n");  // 15 degrees and less
    split.reload();
  }
  CHECK(split.prompts.tells() == Texts{"Maxnodes (1600000) may need to be lowered to 800,000"});
}

TEST_CASE("label and selection") {
  TileList tiles(2);
  tiles[0].number = "13224380";
  CHECK(tile_list_label({}, {}) == " NOT split");
  CHECK(tile_list_label(tiles, {}) == "Using all splitter files");
  CHECK(select_tiles(tiles, {"13224380", "13224380"}).ok());
  CHECK(select_tiles(tiles, {"13224380", "9", "x"}).error == "No such tile: 9, x");
  CHECK(tile_list_label(tiles, {}) == " (Maps Selected:1)");
  CHECK(select_tiles(tiles, {}).ok());
  CHECK(selected_count(tiles) == 0);
}
