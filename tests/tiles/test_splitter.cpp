#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/split_files.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"
#include "support/stand_in.hpp"
#include "support/temp_folder.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

// Reads the output folder from its arguments and behaves as the file beside it says.
constexpr const char* stand_in_java = R"sh(#!/bin/sh
for argument in "$@"; do
  case "$argument" in --output-dir=*) cd "${argument#--output-dir=}" || exit 9 ;; esac
done
printf '%s\n' "$@" > "${0%/*}/arguments"
lists() {
  echo "# Generated $(LC_ALL=C date '+%a %b %d %H:%M:%S %Z %Y')" > areas.list
  for n; do
    echo "$n: 2197504,444416 to 2203648,450560" >> areas.list
    printf 'mapname: %s\ndescription: New\ninput-file: %s.o5m\n\n' "$n" "$n" >> template.args
  done
}
tiles() { for n; do echo tile > "$n.o5m"; done; }
. "${0%/*}/behaviour"
)sh";

struct Stage {
  test::TempFolder folder{"sp lit \xC3\xBC $(x)"};
  Workspace workspace;
  test::FakePrompts prompts;
  test::FakeProgress progress;

  Stage() {
    workspace.folder = ProgramFolder(folder / "home");
    REQUIRE(workspace.folder.create_layout().ok());
    workspace.settings = default_settings(workspace.folder.path());
    Settings& settings = workspace.settings;
    settings.input = folder.write("map.osm.pbf", test::small_pbf());
    settings.splitter_jar = folder.write("jars/splitter.jar", "");
    settings.java = folder.write("bin/java", stand_in_java);
    settings.java_options = "1500";
    fs::permissions(settings.java, fs::perms::owner_all);
  }
  [[nodiscard]] std::string tile_path(const std::string& name) const {
    return folder / ("home/temp/" + name);
  }
  [[nodiscard]] Texts split_names() const { return list_files(folder / "home/temp", {""}); }
  void behave(const std::string& text) const { folder.write("bin/behaviour", text); }
  // What an earlier split has left, and a file that belongs to somebody else.
  void make_old_split() const {
    for (const char* name : {"13224385.o5m", "13224399.osm.pbf", "areas.list", "template.args"})
      folder.write("home/temp/" + std::string(name), "old");
    folder.write("home/temp/mine.pbf", "mine");
  }
  StageResult run() { return do_splitter(workspace, prompts, progress); }
};

}  // namespace

TEST_CASE("names of tiles") {
  for (const char* name : {"13224385.o5m", "13224385.osm.pbf", "13224385.pbf", "13224385.osm.gz"})
    CHECK(is_tile_name(name));
  for (const char* name :
       {"1322438.o5m", "132243855.o5m", "13224385.osm", "x3224385.o5m", "13224385.o5m.x", ""})
    CHECK_FALSE(is_tile_name(name));
}

TEST_CASE("what a tool said about its failure") {
  CHECK(explanation("Elapsed time: 2m\njava.lang.OutOfMemoryError: Java heap space\n\tat a.b.C(D.java)\n",
                    "x") == "java.lang.OutOfMemoryError: Java heap space");
  CHECK(explanation("", "Usage\r\nError: no such option\r\n") == "Error: no such option");
  CHECK(explanation("warm\n", "one\ntwo\n") == "warm");
  CHECK(explanation("", "1\n2\n3\n4\n5\n") == "2\r\n3\r\n4\r\n5");
  CHECK(explanation("", "").empty());
}

TEST_CASE("checks of a split, each with its text") {
  Stage stage;
  Settings& settings = stage.workspace.settings;
  std::string wanted;
  SUBCASE("MP") {
    settings.input = "/a.MP";
    wanted = "Splitter can't split a .mp file.";
  }
  SUBCASE("no input") {
    settings.input = "";
    wanted = "Please Add OSM file.";
  }
  SUBCASE("missing input") {
    settings.input = "/none.pbf";
    wanted = "Cannot find file /none.pbf";
  }
  SUBCASE("empty input") {
    settings.input = stage.folder.write("e.pbf", "");
    wanted = "File has zero length:" + settings.input;
  }
  SUBCASE("no splitter.jar") {
    settings.splitter_jar = "";
    wanted = "Please locate splitter.jar in Settings";
  }
  SUBCASE("missing splitter.jar") {
    settings.splitter_jar = "/none/splitter.jar";
    wanted = "Please locate splitter.jar in Settings";
  }
  SUBCASE("memory") {
    settings.java_options = "-Xmx2g";
    wanted = check_memory("-Xmx2g").error;
  }
  SUBCASE("first map ID") {
    settings.first_map_id = "1322438";
    wanted = "Map ID Must be 8 digits";
  }
  SUBCASE("Java") {
    settings.java = "/none/java";
    wanted = "Java not installed";
  }
  SUBCASE("an input in the place of a tile") {
    settings.input = stage.folder.write("home/temp/63240001.pbf", test::small_pbf());
    wanted = "'" + settings.input +
             "' would be overwritten: it has the name of a tile and lies in the folder for the tiles. Please "
             "move or rename it.";
  }
  CHECK(start_split(stage.workspace, stage.prompts, stage.progress) == StageResult::stopped);
  CHECK(stage.prompts.tells() == Texts{wanted});
  CHECK_FALSE(file_exists(stage.folder / "bin/arguments"));
}

TEST_CASE("with a stand-in for Java, on every system") {
  test::StandIn run("stand in");
  const auto split = [&](std::string_view mode) {
    run.set_mode(mode);
    run.prompts.said.clear();
    return do_splitter(run.workspace, run.prompts, run.progress);
  };
  const auto names = [&] { return list_files(split_folder(run.workspace), {".o5m"}); };
  const Texts three = {"13224385.o5m", "13224386.o5m", "13224387.o5m"};
  CHECK(split("") == StageResult::done);
  CHECK(run.prompts.said.empty());
  CHECK(run.progress.statuses.back() == "3 mapfiles");
  CHECK(names() == three);
  run.workspace.settings.first_map_id = "20000000";
  for (const char* mode : {"fail", "empty-tile", "out-of-memory"}) {
    CAPTURE(mode);
    CHECK(split(mode) == StageResult::failed);
    REQUIRE(run.prompts.tells().size() == 1);
    CHECK(run.prompts.tells()[0].starts_with("No files created. Check for errors."));
    CHECK(names() == three);
  }
}

#ifndef _WIN32

TEST_CASE("a good split replaces the old one") {
  Stage stage;
  stage.make_old_split();
  stage.folder.write("home/temp/node1.tmp", "");
  stage.behave("lists 13224385 13224386; tiles 13224385 13224386");
  stage.workspace.settings.max_nodes = "99999";
  stage.workspace.settings.max_areas = "256";
  CHECK(stage.run() == StageResult::done);
  CHECK(stage.prompts.tells() ==
        Texts{"max nodes too small. Reset to 800,000", "max areas too high. Reset to 255"});
  CHECK(stage.split_names() ==
        Texts{"13224385.o5m", "13224386.o5m", "areas.list", "mine.pbf", "template.args"});
  CHECK(stage.progress.statuses.back() == "2 mapfiles");
  CHECK(stage.workspace.tiles.size() == 2);
  CHECK(stage.workspace.tiles.front().description == "New");
  CHECK(stage.workspace.split_state == SplitState::no_need_to_split);
  CHECK(stage.workspace.settings.last_split_input == stage.workspace.settings.input);
  CHECK(stage.workspace.settings.max_nodes == "800000");
  CHECK_FALSE(stage.workspace.splitting);
  CHECK(stage.progress.fractions.back() == split_fraction(0, 0));
  CHECK(read_whole_file(stage.folder / "bin/arguments") ==
        "-Xmx1500m\n-ea\n-jar\n" + stage.workspace.settings.splitter_jar +
            "\n--mapid=13224385\n--output-dir=" + (stage.folder / "home/temp") +
            "\n--max-nodes=800000\n--max-areas=255\n--output=o5m\n" + stage.workspace.settings.input + "\n");
  CHECK(contains(stage.progress.commands.back(), "\r\n--max-areas=255 \r\n--output=o5m "));
  // The same again is asked about; a No changes nothing.
  stage.prompts.answers = {Answer::no};
  CHECK(start_split(stage.workspace, stage.prompts, stage.progress) == StageResult::stopped);
  CHECK(stage.prompts.asks() ==
        Texts{"File 'map.osm.pbf' already split.\r\nThis might not be the latest version.\r\nSplit again?"});
}

TEST_CASE("a split into one tile is kept, with a warning") {
  Stage stage;
  stage.behave("lists 13224385; tiles 13224385");
  CHECK(stage.run() == StageResult::done);
  CHECK(stage.prompts.tells() == Texts{"only 1 file created. Mapsource may crash when map is uploaded."});
}

TEST_CASE("a failed split leaves the old one as it was") {
  Stage stage;
  stage.make_old_split();
  std::string told;
  SUBCASE("says why") {
    stage.behave("echo 'Error: no heap' >&2; exit 1");
    told = "\r\nError: no heap";
  }
  SUBCASE("lists without tiles") { stage.behave("lists 13224385 13224386"); }
  SUBCASE("a tile is missing") { stage.behave("lists 13224385 13224386; tiles 13224385"); }
  SUBCASE("an empty tile") { stage.behave("lists 13224385 13224386; tiles 13224385; : > 13224386.o5m"); }
  SUBCASE("temporary files are left") { stage.behave("lists 13224385; tiles 13224385; : > way.tmp"); }
  SUBCASE("all tiles, but it failed") { stage.behave("lists 13224385; tiles 13224385; exit 1"); }
  SUBCASE("nothing at all") { stage.behave(":"); }
  SUBCASE("never ends") {
    stage.behave("lists 13224385; echo 'java.lang.OutOfMemoryError: heap' >&2; sleep 600");
    told =
        "\r\njava.lang.OutOfMemoryError: heap\r\nPlease give Java more memory: Settings, Splitter and Java.";
  }
  CHECK(stage.run() == StageResult::failed);
  CHECK(stage.prompts.tells() == Texts{"No files created. Check for errors." + told});
  CHECK(stage.split_names() ==
        Texts{"13224385.o5m", "13224399.osm.pbf", "areas.list", "mine.pbf", "template.args"});
  CHECK(read_whole_file(stage.tile_path("13224385.o5m")) == "old");
  CHECK(read_whole_file(stage.tile_path("template.args")) == "old");
  CHECK(stage.workspace.settings.last_split_input.empty());
  CHECK(stage.workspace.expected_tiles == 0);
}

TEST_CASE("a cancelled split leaves the old one as it was") {
  Stage stage;
  stage.make_old_split();
  stage.behave("lists 13224385 13224386; tiles 13224386; sleep 600");
  stage.progress.stop_when = [&] { return file_has_content(stage.tile_path("13224386.o5m")); };
  CHECK(stage.run() == StageResult::cancelled);
  CHECK(stage.prompts.said.empty());
  CHECK(read_whole_file(stage.tile_path("13224385.o5m")) == "old");
  CHECK_FALSE(file_exists(stage.tile_path("13224386.o5m")));
}

TEST_CASE("the bar follows the tiles") {
  Stage stage;
  stage.behave("lists 13224385 13224386; sleep 0.6; tiles 13224385; sleep 0.6; tiles 13224386");
  CHECK(stage.run() == StageResult::done);
  std::vector<double> steps = stage.progress.fractions;
  steps.erase(std::unique(steps.begin(), steps.end()), steps.end());
  while (steps.front() == split_fraction(0, 0))
    steps.erase(steps.begin());
  CHECK(steps == std::vector<double>{split_fraction(2, 0), split_fraction(2, 1), split_fraction(2, 2),
                                     split_fraction(0, 0)});
}

TEST_CASE("questions and warnings before a split") {
  Stage stage;
  stage.behave("lists 13224385 13224386; tiles 13224385 13224386");
  stage.workspace.settings.java_options = "8";
  stage.workspace.settings.max_nodes = "50000";
  const std::string question = "Current min settings:100mb --> Splitter and Java\r\nContinue anyway?";
  stage.prompts.answers = {Answer::no, Answer::yes};
  CHECK(start_split(stage.workspace, stage.prompts, stage.progress) == StageResult::stopped);
  CHECK(stage.prompts.texts() == Texts{question});
  CHECK(start_split(stage.workspace, stage.prompts, stage.progress) == StageResult::done);
  CHECK(stage.prompts.texts() ==
        Texts{question, question, "Set Maxnodes >100,000", "max nodes too small. Reset to 800,000"});
}

#endif
