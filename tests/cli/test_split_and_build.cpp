#include <doctest/doctest.h>

#include "app/program_folder.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli_run.hpp"
#include "support/stand_in.hpp"

namespace ferrowen::test {

namespace {

// A program folder whose settings name the stand-in tools.
struct Tools {
  explicit Tools(std::string_view name = "h\u00f6me") : home(name) {
    map = home.write("my map.osm",
                     "<?xml version='1.0'?>\n<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
    REQUIRE(run_cli_in(home.path(),
                       {"settings", "set", "java=" + stand_in_java(), "use-typ=no", "fid=1234",
                        "mkgmap=" + home.write("mkgmap.jar", "jar"),
                        "splitter=" + home.write("splitter.jar", "jar"), "output-folder=" + (home / "out")})
                .status == 0);
    REQUIRE(make_folder(home / "styles/mine").ok());
  }
  [[nodiscard]] CliResult run(const std::vector<std::string>& arguments) const {
    return run_cli_in(home.path(), arguments);
  }
  TempFolder home;
  std::string map;
};

}  // namespace

TEST_CASE("split, tiles, build with a stand-in for Java") {
  const Tools tools;
  const CliResult split = tools.run({"split", tools.map, "--mapid", "55500001", "--max-nodes", "200000"});
  CAPTURE(split.error);
  REQUIRE(split.status == 0);
  CHECK(contains(split.output, "55500003"));
  CHECK(setting(tools.home.path(), "last-split-input") == tools.map);
  CHECK(setting(tools.home.path(), "max-nodes") == "1000000");

  const nlohmann::json tiles = tools.run({"tiles", "--json"}).json();
  REQUIRE(tiles.at("tiles").size() == 3);
  CHECK(tiles.at("tiles").at(0).at("number") == "55500001");
  CHECK(tiles.at("tiles").at(0).at("description") == "Tile 55500001");
  CHECK(tiles.at("tiles").at(0).at("size") == std::string("tile 55500001").size());
  CHECK(contains(tools.run({"tiles"}).output, "Using all splitter files"));

  SUBCASE("the whole map") {
    const CliResult build = tools.run({"build", "--json", "--name", "Once", "--tiles", "55500001,55500002"});
    CAPTURE(build.error);
    REQUIRE(build.status == 0);
    const nlohmann::json object = build.json();
    CHECK(object.at("result") == "done");
    CHECK(object.at("tiles") == 2);
    CHECK(object.at("stages").at(0).at("seconds") >= 0);
    CHECK(contains(object.at("command").get<std::string>(), "Once"));
    CHECK(file_has_content(tools.home / "out/gmapsupp.img"));
    CHECK(setting(tools.home.path(), "map-name") == "Demo Map");
    CHECK(file_exists(tools.home / file_name::settings_backup));
  }
  SUBCASE("--print runs and keeps nothing") {
    remove_file(tools.home / "stand-in-arguments").error.clear();
    const CliResult print = tools.run({"build", "--print", "--fid", "4711"});
    CHECK(print.status == 0);
    CHECK(contains(print.output, "--family-id=4711"));
    CHECK(split_lines(print.output).size() == 1);
    CHECK(split_lines(tools.run({"build", "--print", "--verbose"}).output).size() > 5);
    CHECK_FALSE(file_exists(tools.home / "stand-in-arguments"));
    CHECK_FALSE(file_exists(tools.home / "out/gmapsupp.img"));
  }
  SUBCASE("a second split asks, and No stops it") {
    const CliResult again = tools.run({"split", tools.map});
    CHECK(again.status == 3);
    CHECK(contains(again.error, "Split again? [y/N] No"));
    CHECK(tools.run({"split", tools.map, "--yes"}).status == 0);
  }
  SUBCASE("a failed run ends with 1 and the end of its error stream") {
    tools.home.write("stand-in-mode", "style-error");
    const CliResult build = tools.run({"build"});
    CHECK(build.status == 1);
    CHECK(contains(build.error, "IMG not created."));
    CHECK(contains(build.error, std::string(file_name::error_stream) + ":\n"));
  }
  SUBCASE("unknown tiles are a check's stop") { CHECK(tools.run({"build", "--tiles", "1"}).status == 3); }
}

TEST_CASE("bad values reach the stage, which says what is wrong") {
  const Tools tools;
  const CliResult nodes = tools.run({"split", tools.map, "--max-nodes", "99999"});
  CHECK(contains(nodes.error, "max nodes too small. Reset to 800,000"));
  CHECK(setting(tools.home.path(), "max-nodes") == "1000000");
  const CliResult memory = tools.run({"split", tools.map, "--memory", "2g"});
  CHECK(memory.status == 2);
  CHECK(contains(memory.error, "2g"));
  CHECK(tools.run({"build", tools.map, "--mapid", "1234567"}).status == 3);
  CHECK(tools.run({"build", tools.map, "--option", "--unicode", "--option", "--latin1"}).status == 3);
}

TEST_CASE("a missing mkgmap.jar offers the backup") {
  const Tools tools;
  REQUIRE(tools.run({"build", tools.map}).status == 0);
  const std::string good = setting(tools.home.path(), "mkgmap");
  const std::string gone = tools.home / "gone.jar";
  REQUIRE(tools.run({"settings", "set", "mkgmap=" + gone}).status == 0);
  const CliResult refused = tools.run({"build"});
  CHECK(refused.status == 3);
  CHECK(contains(refused.error, "Cannot find " + gone + "\n\nAvailable backup:"));
  CHECK(setting(tools.home.path(), "mkgmap") == gone);
  CHECK(tools.run({"build", "--yes"}).status == 0);
  CHECK(setting(tools.home.path(), "mkgmap") == good);
}

}  // namespace ferrowen::test
