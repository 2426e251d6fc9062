#include "contours/run_contours.hpp"

#include <doctest/doctest.h>

#include <sstream>

#include "base/files.hpp"
#include "base/text.hpp"
#include "contours/osm_writer.hpp"
#include "grids.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

struct Run {
  ContourStatus status;
  std::string output, error;
};

Run run(const Texts& arguments) {
  std::ostringstream output, error;
  const ContourStatus status = run_contours(arguments, output, error);
  return {status, output.str(), error.str()};
}

std::string hill() {
  return test::cell_bytes(1201, [](int row, int column) { return row == 600 && column == 600 ? 30 : 5; });
}

std::size_t count(std::string_view text, std::string_view part) { return split(text, part).size() - 1; }

}  // namespace

TEST_CASE("the command as a contour script has it") {
  const test::TempFolder home("h ü");
  home.write("S12W077.hgt", hill());
  const std::string output = home / "S12W077.OSM";
  Texts command = {"--HgtPath=" + home.path(),
                   "--Lat=-77",
                   "--Lon=-12",
                   "--WriteElevationType=False",
                   "--FakeDistance=-0.5",
                   "--MinVerticePoints=3",
                   "--MinBoundingbox=0.00016",
                   "--DouglasPeucker=0.12",
                   "--MinorDistance=20",
                   "--Outfile=" + output};
  const Run first = run(command);
  CHECK(first.error.empty());
  REQUIRE(first.status == ContourStatus::done);
  CHECK(first.output == output + ": 1 lines, 4 points, every 20 m, from 1201 x 1201 heights\n");
  const std::string osm = read_whole_file(output);
  CHECK(
      contains(osm, "<node id=\"2828300000000\" version=\"1\" lat=\"-11.4996667\" lon=\"-76.5000000\"/>\n"));
  CHECK(
      osm.ends_with("<nd ref=\"2828300000003\"/>\n<nd ref=\"2828300000000\"/>\n"
                    "<tag k=\"contour\" v=\"elevation\"/>\n<tag k=\"contour_ext\" v=\"elevation_minor\"/>\n"
                    "<tag k=\"ele\" v=\"20\"/>\n</way>\n</osm>\n"));
  CHECK(contains(osm, "<way id=\"2828390000000\" version=\"1\">\n"));

  const Run second = run(command);
  CHECK(second.status == ContourStatus::file_exists);
  CHECK(second.error == "Error: " + output + ": exists; --OutputOverwrite=True replaces it\n");
  command.emplace_back("--outputoverwrite=true");
  CHECK(run(command).status == ContourStatus::done);
  CHECK(read_whole_file(output) == osm);
  CHECK(list_files(home.path(), {""}) == Texts{"S12W077.OSM", "S12W077.hgt"});
}

TEST_CASE("several cells at once: told in their order, each beside its heights, the same in one thread") {
  const test::TempFolder home;
  const std::string cell = test::cell_bytes(1201, [](int row, int column) { return row * 2 + column; });
  Texts command = {"--MinorDistance=100", home.write("N46E009.hgt", cell), home.write("N46E010.hgt", "short"),
                   home.write("n46e011.hgt", cell)};
  const Run made = run(command);
  CHECK(made.status == ContourStatus::wrong_usage);
  CHECK(split_lines(made.output).size() == 2);
  CHECK(made.output.starts_with(home / "N46E009.osm"));
  CHECK(contains(made.error, (home / "N46E010.hgt") + ": wrong size: 5 bytes"));
  CHECK(contains(made.error, "capital letters, N46E011.hgt"));
  const std::string many = read_whole_file(home / "N46E009.osm");
  CHECK(count(many, "elevation_major") == 1);
  CHECK(count(many, "elevation_medium") == 6);
  run({"--Threads=1", "--OutPath=" + home.path(), "--Outfile=" + (home / "one.osm"), "--MinorDistance=100",
       command[1]});
  CHECK(read_whole_file(home / "one.osm") == many);
}

TEST_CASE("cells without lines give files without lines") {
  const test::TempFolder home;
  home.write("N46E009.hgt", test::cell_bytes(1201, [](int, int) { return -32768; }));
  home.write("N46E010.hgt", test::cell_bytes(1201, [](int, int) { return 0; }));
  const Run made = run({home / "N46E009.hgt", home / "N46E010.hgt"});
  CHECK(made.status == ContourStatus::done);
  CHECK(made.error == "Note: " + (home / "N46E009.hgt") + ": holds no height at all; there are no lines\n");
  for (const char* name : {"N46E009.osm", "N46E010.osm"}) {
    const std::string osm = read_whole_file(home / name);
    CHECK(osm.ends_with("</osm>\n"));
    CHECK_FALSE(contains(osm, "<way"));
  }
}

TEST_CASE("what cannot be done is said and leaves nothing") {
  const test::TempFolder home;
  const std::string hgt = home.write("N46E009.hgt", hill());
  const std::string cell = "--HgtPath=" + home.path();
  const std::vector<std::pair<Texts, std::string>> cases = {
      {{}, "no cell: name files, or give both --Lat (its longitude) and --Lon (its latitude)"},
      {{"--MinorDistance=4", hgt}, "--MinorDistance=4: not usable: --MinorDistance=5 to 1000"},
      {{"--MinorDistance=1001", hgt}, "--MinorDistance=1001: not usable: --MinorDistance=5 to 1000"},
      {{"--MinorDistance", hgt}, "--MinorDistance: a value is missing: --MinorDistance=5 to 1000"},
      {{"--DouglasPeucker=x", hgt}, "--DouglasPeucker=x: not usable: --DouglasPeucker=0 to 1000"},
      {{"--FakeDistance=-20", hgt}, "--FakeDistance must be smaller than --MinorDistance"},
      {{"--Wrong=1", hgt}, "--Wrong=1: unknown option"},
      {{cell, "--Lat=46", "--Lon=-100"}, "--Lon=-100: not usable: --Lon=-90 to 89"},
      {{cell, "--Lat=180", "--Lon=0"}, "--Lat=180: not usable: --Lat=-180 to 179"},
      {{hgt, hgt}, "two cells would be written there"},
      {{home / "N90E009.hgt"}, "no cell's name"},
      {{cell, "--Lat=10", "--Lon=46"}, "N46E010.hgt: not found in " + home.path()},
      {{home / "N46E010.hgt"}, "no such file"}};
  for (const auto& [arguments, error] : cases) {
    const Run made = run(arguments);
    CHECK(made.status == ContourStatus::wrong_usage);
    CHECK(contains(made.error, error));
  }
  home.write("taken/inside", "");
  for (const std::string& output : {home / "none/a.osm", home / "taken"}) {
    const Run made = run({hgt, "--OutputOverwrite=True", "--Outfile=" + output});
    CHECK(made.status == ContourStatus::failed);
    CHECK(contains(made.error, output + ": "));
  }
  CHECK(list_files(home.path(), {""}) == Texts{"N46E009.hgt"});
}

TEST_CASE("a write that fails or is stopped leaves the older file") {
  const test::TempFolder home;
  const std::string path = home.write("a.osm", "older");
  const ContourLines contours{{{0, 0}, {1, 1}, {2, 0}}, {{0, 3, 20, true}}};
  CHECK(write_osm_file(path, contours, {0, 0}, {}, [] { return true; }).error == path + ": stopped");
  CHECK(read_whole_file(path) == "older");
  CHECK(list_files(home.path(), {""}) == Texts{"a.osm"});
  CHECK(write_osm(contours, {0, 0}, {}, [](std::string_view) { return "full"; }).error == "full");
}

TEST_CASE("numbers and coordinates of an OSM file") {
  const ContourLines contours{{{-1, -899999999}, {0, 5}, {-1799999999, 1234567}, {100000000, 99999999}},
                              {{0, 4, -40, false}}};
  std::string osm;
  const auto keep = [&](std::string_view bytes) {
    osm += bytes;
    return std::string();
  };
  REQUIRE(write_osm(contours, {-90, -180}, {}, keep).ok());
  for (const char* place : {"lat=\"-89.9999999\" lon=\"-0.0000001\"", "lat=\"0.0000005\" lon=\"0.0000000\"",
                            "lat=\"0.1234567\" lon=\"-179.9999999\"", "lat=\"9.9999999\" lon=\"10.0000000\""})
    CHECK(contains(osm, place));
  CHECK(count(osm, "<nd ref=") == 4);
  CHECK(contains(osm, "<way id=\"10090000000\""));
}
