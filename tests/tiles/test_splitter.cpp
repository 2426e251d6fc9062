#include <doctest/doctest.h>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/split_files.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "support/stand_in.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const std::string two_tiles =
    "mapname: 13224385\ninput-file: 13224385.o5m\nmapname: 13224386\n"
    "input-file: 13224386.o5m\n";

const std::string old_tiles =
    "mapname: 13224385\ninput-file: 13224385.o5m\nmapname: 13224399\n"
    "input-file: 13224399.osm.pbf\n";

struct Stage : test::StandIn {
  Stage() : StandIn("sp lit & $(x)") {
    workspace.settings.java_options = "-Xmx1500m";
    progress.on_events = [this] {
      for (const auto& [name, text] : written_meanwhile)
        home.write("temp/" + name, text);
    };
  }
  // What an earlier split has left, and a file that belongs to somebody else.
  void make_old_split() const {
    for (const char* name : {"13224385.o5m", "13224399.osm.pbf", "areas.list", "mine.pbf"})
      home.write("temp/" + std::string(name), "old");
    home.write("temp/template.args", old_tiles);
  }
  void check_old_split() const {
    CHECK(names() == Texts{"13224385.o5m", "13224399.osm.pbf", "areas.list", "mine.pbf", "template.args"});
    CHECK(read_whole_file(home / "temp/13224385.o5m") == "old");
    CHECK(read_whole_file(home / "temp/template.args") == old_tiles);
    CHECK(workspace.settings.last_split_input.empty());
    CHECK(workspace.expected_tiles == 0);
  }
  [[nodiscard]] Texts names() const { return list_files(home / "temp", {""}); }
  StageResult run() { return do_splitter(workspace, prompts, progress); }
  StageResult start() { return start_split(workspace, prompts, progress); }

  // Files that appear in the folder of the tiles while the tool runs.
  std::vector<std::pair<std::string, std::string>> written_meanwhile;
};

}  // namespace

TEST_CASE("names of tiles") {
  for (const char* name : {"13224385.o5m", "13224385.osm.pbf", "13224385.pbf", "13224385.osm.gz"})
    CHECK(is_tile_name(name));
  for (const char* name : {"1322438.o5m", "132243855.o5m", "13224385.osm", "x3224385.o5m", "13224385.o5m.x"})
    CHECK_FALSE(is_tile_name(name));
}

TEST_CASE("checks of a split, each with its text") {
  struct Case {
    std::string Settings::*setting;
    std::string value, wanted;
  };
  Stage stage;
  const std::string in_the_way = stage.home.write("temp/63240001.pbf", test::small_pbf());
  for (const auto& [setting, value, wanted] :
       {Case{&Settings::input, "/a.MP", "Splitter can't split a .mp file."},
        Case{&Settings::input, "", "Please Add OSM file."},
        Case{&Settings::input, in_the_way,
             "'" + in_the_way +
                 "' would be overwritten: it has the name of a tile and lies in the folder for the tiles. "
                 "Please move or rename it."},
        Case{&Settings::first_map_id, "1322438", "Map ID Must be 8 digits"},
        Case{&Settings::java, "/none/java", "Please install Java or restart Ferrowen."}}) {
    const Settings good = stage.workspace.settings;
    stage.workspace.settings.*setting = value;
    CHECK(stage.start() == StageResult::stopped);
    CHECK(stage.prompts.tells().back() == wanted);
    stage.workspace.settings = good;
  }
  CHECK_FALSE(file_exists(stage.home / "stand-in-arguments"));
}

TEST_CASE("a good split replaces the old one") {
  Stage stage;
  stage.make_old_split();
  stage.home.write("temp/node1.tmp", "");
  stage.home.write("temp/relief.tmp", "not the splitter's");
  Settings& settings = stage.workspace.settings;
  settings.max_nodes = "99999";
  settings.max_areas = "256";
  REQUIRE(stage.run() == StageResult::done);
  CHECK(stage.prompts.tells() ==
        Texts{"max nodes too small. Reset to 800,000", "max areas too high. Reset to 255"});
  CHECK(stage.names() == Texts{"13224385.o5m", "13224386.o5m", "13224387.o5m", "areas.list", "areas.poly",
                               "mine.pbf", "relief.tmp", "template.args"});
  CHECK(stage.progress.statuses.back() == "3 mapfiles");
  CHECK(stage.workspace.tiles.front().description == "Tile 13224385");
  CHECK(stage.workspace.split_state == SplitState::no_need_to_split);
  CHECK(settings.last_split_input == settings.input);
  CHECK_FALSE(stage.workspace.splitting);
  CHECK(stage.progress.fractions.back() == split_fraction(0, 0));
  CHECK(read_whole_file(stage.home / "stand-in-arguments") ==
        "-Xmx1500m\n-ea\n-jar\n" + settings.splitter_jar +
            "\n--mapid=13224385\n--output-dir=" + (stage.home / "temp") +
            "\n--max-nodes=800000\n--max-areas=255\n--output=o5m\n" + settings.input + "\n");
  CHECK(contains(stage.progress.commands.back(), "\r\n--max-areas=255 \r\n--output=o5m "));
  // The same again is asked about; a No changes nothing.
  stage.prompts.answers = {Answer::no};
  CHECK(stage.start() == StageResult::stopped);
  CHECK(stage.prompts.asks() ==
        Texts{"File 'map.osm' already split.\r\nThis might not be the latest version.\r\nSplit again?"});
}

TEST_CASE("a failed split leaves the old one as it was and says why") {
  Stage stage;
  stage.make_old_split();
  std::string told;
  SUBCASE("all tiles, but it failed") {
    stage.set_mode("fail");
    stage.written_meanwhile = {{"template.args", two_tiles}, {"13224385.o5m", "1"}, {"13224386.o5m", "2"}};
    told = "\r\nError: input file doesn't exist or is not a readable file: x";
  }
  SUBCASE("never ends") {
    stage.set_mode("out-of-memory");
    told =
        "\r\njava.lang.OutOfMemoryError: Java heap space\r\nPlease give Java more memory: Settings, Splitter "
        "and Java.";
  }
  SUBCASE("an empty tile") { stage.set_mode("empty-tile"); }
  SUBCASE("temporary files are left") { stage.written_meanwhile = {{"way1.tmp", ""}}; }
  SUBCASE("nothing where it should be") {
    stage.workspace.settings.splitter_options = "--output-dir=elsewhere";
    SUBCASE("at all") {}
    SUBCASE("but a part") { stage.written_meanwhile = {{"template.args", two_tiles}, {"13224385.o5m", "1"}}; }
  }
  CHECK(stage.run() == StageResult::failed);
  REQUIRE(stage.prompts.tells().size() == 1);
  CHECK(stage.prompts.tells()[0].starts_with("No files created. Check for errors." + told));
  stage.check_old_split();
}

TEST_CASE("the bar follows the tiles, a cancelled split leaves the old ones as they were") {
  Stage stage;
  stage.make_old_split();
  stage.set_mode("out-of-memory");  // so that it does not end before
  stage.written_meanwhile = {{"template.args", two_tiles}, {"13224386.o5m", "1"}};
  stage.progress.stop = true;
  CHECK(stage.run() == StageResult::cancelled);
  CHECK(stage.prompts.said.empty());
  CHECK(stage.progress.fractions.front() == split_fraction(2, 1));
  stage.check_old_split();
  CHECK(split_fraction(5, 2) == doctest::Approx(1.0 / 3));
  CHECK(split_fraction(5, 3) == doctest::Approx(0.6 * 8700 / 9000));
  CHECK(split_fraction(1, 9) == doctest::Approx(8700.0 / 9000));
}

TEST_CASE("questions and warnings before and after a split into one tile") {
  Stage stage;
  stage.written_meanwhile = {{"template.args", two_tiles.substr(0, two_tiles.find("mapname: 13224386"))},
                             {"13224385.o5m", "1"}};
  stage.workspace.settings.splitter_options = "--output-dir=elsewhere";
  stage.workspace.settings.java_options = "-Xmx8m";
  stage.workspace.settings.max_nodes = "50000";
  const std::string question = "Current min settings:100mb --> Splitter and Java\r\nContinue anyway?";
  stage.prompts.answers = {Answer::no, Answer::yes};
  CHECK(stage.start() == StageResult::stopped);
  CHECK(stage.prompts.texts() == Texts{question});
  CHECK(stage.start() == StageResult::done);
  CHECK(stage.prompts.texts() == Texts{question, question, "Set Maxnodes >100,000",
                                       "max nodes too small. Reset to 800,000",
                                       "only 1 file created. Mapsource may crash when map is uploaded."});
}
