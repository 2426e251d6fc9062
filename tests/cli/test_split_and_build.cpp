#include <doctest/doctest.h>

#include "app/program_folder.hpp"
#include "base/files.hpp"
#include "cli_run.hpp"
#include "support/stand_in.hpp"

namespace ferrowen::test {

namespace {

// A program folder whose settings name the stand-in tools.
struct Tools {
  Tools() {
    REQUIRE(run({"settings", "set", "java=" + stand_in_java(), "use-typ=no", "fid=1234",
                 "mkgmap=" + home.write("mkgmap.jar", "jar"), "splitter=" + home.write("splitter.jar", "jar"),
                 "output-folder=" + (home / "out")})
                .status == 0);
  }
  [[nodiscard]] CliResult run(const Arguments& arguments) const { return run_cli_in(home.path(), arguments); }
  [[nodiscard]] std::string stored(const std::string& name) const { return setting(home.path(), name); }
  TempFolder home{"h\u00f6 me & co"};
  std::string map =
      home.write("my map.osm", "<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
};

}  // namespace

TEST_CASE("split, tiles, build with a stand-in for Java") {
  const Tools tools;
  const CliResult split = tools.run({"split", tools.map, "--mapid", "55500001", "--max-nodes", "200000"});
  CAPTURE(split.error);
  REQUIRE(split.status == 0);
  CHECK(contains(split.output, "55500003"));
  CHECK(tools.stored("last-split-input") == tools.map);
  CHECK(tools.stored("max-nodes") == "1000000");
  const nlohmann::json tiles = tools.run({"tiles", "--json"}).json();
  REQUIRE(tiles.at("tiles").size() == 3);
  CHECK(tiles.at("tiles").at(0).at("number") == "55500001");
  CHECK(tiles.at("tiles").at(0).at("description") == "Tile 55500001");
  CHECK(contains(tools.run({"tiles"}).output, "Using all splitter files"));

  SUBCASE("a part of the map") {
    const CliResult build = tools.run({"build", "--json", "--name", "Once", "--tiles", "55500001,55500002"});
    CAPTURE(build.error);
    REQUIRE(build.status == 0);
    const nlohmann::json object = build.json();
    CHECK(object.at("result") == "done");
    CHECK(object.at("tiles") == 2);
    CHECK(contains(object.at("command").get<std::string>(), "Once"));
    CHECK(object.at("image") == platform::join(tools.home / "gmapsupp", "Once.img"));
    CHECK(file_has_content(tools.home / "gmapsupp/Once.img"));
    CHECK_FALSE(file_exists(tools.home / "out/gmapsupp.img"));
    CHECK(tools.stored("map-name") == "Demo Map");
    CHECK(file_exists(tools.home / file_name::settings_backup));
  }
  SUBCASE("--print shows the command, a second split asks, and neither runs anything") {
    REQUIRE(remove_file(tools.home / "stand-in-arguments").ok());
    const CliResult print = tools.run({"build", "--print", "--fid", "4711", "--contours", "yes"});
    CHECK(print.told(0, "Contours not added."));
    CHECK(contains(print.output, "--family-id=4711"));
    CHECK(split_lines(print.output).size() == 1);
    CHECK(tools.run({"split", tools.map}).told(3, "Split again? [y/N] No"));
    CHECK_FALSE(file_exists(tools.home / "stand-in-arguments"));
    CHECK(tools.run({"split", tools.map, "--yes"}).status == 0);
  }
}

TEST_CASE("a missing mkgmap.jar offers the backup, which only a person takes") {
  const Tools tools;
  REQUIRE(tools.run({"build", tools.map}).status == 0);
  const std::string good = tools.stored("mkgmap");
  const std::string gone = tools.home / "gone.jar";
  REQUIRE(tools.run({"settings", "set", "mkgmap=" + gone}).status == 0);
  CHECK(tools.run({"build", "--yes"}).told(3, "Cannot find " + gone + "\n\nAvailable backup:"));
  CHECK(tools.stored("mkgmap") == gone);
  CHECK(run_cli_in(tools.home.path(), {"build"}, "y\ny\ny\n").status == 0);
  CHECK(tools.stored("mkgmap") == good);
}

}  // namespace ferrowen::test
