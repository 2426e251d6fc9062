#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "cli_run.hpp"
#include "support/stand_in.hpp"

namespace ferrowen::test {

namespace {

// A program folder with the tiles of a split around 47 N, 9 E.
struct Area {
  Area() {
    const std::string map =
        home.write("map.osm", "<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
    REQUIRE(run({"settings", "set", "java=" + stand_in_java(), "mkgmap=" + home.write("mkgmap.jar", "jar"),
                 "splitter=" + home.write("splitter.jar", "jar"), "hgt-folder-1=" + (home / "h")})
                .status == 0);
    REQUIRE(run({"split", map}).status == 0);
    home.write("hgt_land", "");
  }
  [[nodiscard]] CliResult run(const Arguments& arguments) const { return run_cli_in(home.path(), arguments); }
  TempFolder home{"h\u00f6 me"};
};

}  // namespace

TEST_CASE("hgt lists the cells of the tiles and where they are") {
  const TempFolder empty;
  CHECK(run_cli_in(empty.path(), {"hgt"}).told(3, "Please SPLIT file to obtain hgt files needed."));
  const Area area;
  const nlohmann::json before = area.run({"hgt", "--json"}).json();
  REQUIRE(before.at("needed") > 0);
  CHECK(before.at("found") == 0);
  const std::string cell = before.at("missing").at(0);
  const std::string file = area.home.write("h/" + cell, std::string(2884802, '\0'));
  const CliResult shown = area.run({"hgt"});
  CHECK(shown.status == 0);
  CHECK(contains(shown.output, cell + "  found"));
  CHECK(contains(shown.output, file));
  CHECK(contains(shown.output, " HGT needed: "));
  area.home.write("h/" + cell, "short");
  CHECK(area.run({"hgt", "--json"}).json().at("cells").at(0).at("state") == "damaged");
  CHECK(area.run({"hgt", "--hgt", area.home / "h2", "--json"}).json().at("cells").at(0).at("state") ==
        "missing");
  CHECK(area.run({"hgt", "--tiles", "99999999"}).told(2, "99999999"));
}

TEST_CASE("contours, unzip and merge refuse what cannot work") {
  const Area area;
  const std::string tool = area.home.write("tool", "");
  const std::string gone = area.home / "gone";
  REQUIRE(area.run({"settings", "set", "contour-tool=" + tool, "osmconvert=" + tool, "7z=" + tool,
                    "clip-folder-1=" + gone})
              .status == 0);
  struct Row {
    Arguments line;
    int status;
    std::string text;
  };
  const std::string a = area.home.write("a.pbf", "x");
  const Row rows[] = {
      {{"contours", "make", "N95E009"}, 2, "N95E009 is not a valid .hgt label."},
      {{"contours", "make", "N46E181.hgt"}, 2, "N46E181.hgt is not a valid .hgt label."},
      {{"contours", "make", "n46e009", "--interval", "4"}, 3, "Intervals  5 - 1000"},
      {{"contours", "make", "N46E009", "--interval", "1001"}, 3, "Intervals  5 - 1000"},
      {{"contours", "make", "N46E009", "--interval", "x"}, 2, "--interval: 'x'"},
      {{"contours", "make", "N46E009", "--tolerance", "-1"}, 2, "--tolerance: '-1'"},
      {{"contours", "make", "n46e009"}, 3, "N46E009.hgt\nPlease download or unzip:"},
      {{"contours", "clip"}, 3, "Clip path : " + gone + " ?"},
      {{"contours"}, 2, ""},
      {{"unzip", area.home / "none"}, 3, "Cannot find folder:"},
      {{"merge", a}, 2, "--output"},
      {{"merge", "-o", area.home / "b.pbf", a}, 3, "Must contain at least 2 files"},
      {{"merge", "-o", area.home / "b.pbf", "--list", area.home / "none.lst"}, 2, "none.lst"},
      {{"merge", "-o", area.home / "b.pbf", "--list", area.home.write("x.lst", a + "\r\n" + a + "x\r\n")},
       3,
       a + "x not a valid pbf"},
  };
  for (const Row& row : rows) {
    const CliResult result = area.run(row.line);
    CAPTURE(join_texts(row.line, " "));
    CAPTURE(result.error);
    CHECK(result.told(row.status, row.text));
  }
}

#ifndef _WIN32
TEST_CASE("contours that are made in part end with a status of their own") {
  const Area area;
  const std::string tool = area.home.write("tool",
                                           "#!/bin/sh\nfor word; do case $word in --Outfile=*) printf "
                                           "'<osm></osm>' >\"${word#*=}\";; esac; done\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  REQUIRE(area.run({"settings", "set", "contour-tool=" + tool}).status == 0);
  area.home.write("h/N46E009.hgt", std::string(2884802, '\0'));
  const CliResult part = area.run({"contours", "make", "N46E009", "N47E009", "--json"});
  CHECK(part.status == 1);
  CHECK(part.json().at("missing") == nlohmann::json::array({"N47E009.hgt"}));
  CHECK(part.json().at("files").size() == 1);
  CHECK(area.run({"contours", "make", "N46E009", "--overwrite"}).status == 0);
}
#endif

}  // namespace ferrowen::test
