#include "elevation/height_cells.hpp"

#include <doctest/doctest.h>

#include <chrono>
#include <filesystem>
#include <tuple>

#include "base/files.hpp"
#include "base/inflate.hpp"
#include "base/text.hpp"
#include "elevation/archive.hpp"
#include "elevation/download_help.hpp"
#include "platform/files.hpp"
#include "support/stand_in.hpp"
#include "support/zip_bytes.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

constexpr std::uint32_t heights_size = 2884802;

// Four cells wanted, one height folder.
struct Cells : test::StandIn {
  Cells() {
    workspace.tiles = {{"1", "", {46.1, 9.1}, {47.2, 10.2}, false}};
    set("hgt-folder-1={home}/h; dem=1; contours=1");
    home.write("h/N46E009.hgt", std::string(heights_size, '\0'));
  }
};

}  // namespace

TEST_CASE("cells are recognised by the names of their files") {
  for (const char* name :
       {"N46W007.hgt", "n46w007.HGT", "N46W007.zip", "N46W007.hgt.zip", "N46W007.osm", "N46W007clp.pbf"})
    CHECK(cell_of_file(name) == "N46W007.hgt");
  for (const char* name : {"", "N46W007", "N46W007.hg", "N96W007.hgt", "N46W187.hgt", "N46W007.SRTM.zip"})
    CHECK(cell_of_file(name).empty());
}

TEST_CASE("every cell is looked at before a DEM is built") {
  Cells stage;
  const auto zipped = [](const std::string& name, std::uint32_t checksum, std::uint16_t method = 0) {
    const std::string heights(heights_size, '\0');
    return test::zip_bytes({{name, heights, method, heights_size, checksum, 0}});
  };
  const std::uint32_t checksum = crc32(std::string(heights_size, '\0'));
  stage.home.write("h/N46E010.hgt.zip", zipped("N46E010.hgt", checksum));
  SUBCASE("archives whose data cannot be used") {
    stage.home.write("h/N47E009.zip", zipped("N47E009.hgt", checksum + 1));
    stage.home.write("h/N47E010.zip", zipped("N47E010.hgt", checksum, 14));
    CHECK(check_dem_cells(stage.workspace, stage.prompts));
    REQUIRE(stage.prompts.tells().size() == 1);
    CHECK(contains(stage.prompts.tells()[0], "2 hgt file(s) cannot be used:"));
    CHECK(contains(stage.prompts.tells()[0],
                   "N47E009.zip is a zip archive that cannot be unpacked: N47E009.hgt: the checksum"));
    CHECK(contains(stage.prompts.tells()[0], "N47E010.hgt: is packed with method 14, not with deflate."));
  }
  SUBCASE("missing, damaged and whole ones") {
    stage.home.write("h/N47E009.hgt", "short");
    CHECK(check_dem_cells(stage.workspace, stage.prompts));
    CHECK(stage.prompts.tells() ==
          Texts{"1 hgt file(s) cannot be used:\r\n" + (stage.home / "h/N47E009.hgt") +
                    " has 5 bytes; heights have 2884802 or 25934402.",
                "1 hgt file(s) not found.\r\nFolder: '" + (stage.home / "h") + "'\r\nN47E010.hgt"});
  }
  SUBCASE("archives that hold something else") {
    stage.home.write("h/N47E009.zip", test::archive_of({{"N47E008.hgt", heights_size}}));
    stage.home.write("h/N47E010.zip", test::archive_of({{"N47E010.hgt", 10}}));
    CHECK(check_dem_cells(stage.workspace, stage.prompts));
    REQUIRE(stage.prompts.tells().size() == 1);
    CHECK(contains(stage.prompts.tells()[0], "N47E009.zip is a zip archive without N47E009.hgt."));
    CHECK(contains(stage.prompts.tells()[0], "whose N47E010.hgt has 10 bytes"));
  }
  SUBCASE("not a single one of use") {
    stage.home.write("h/N46E009.hgt", "");
    stage.home.write("h/N46E010.hgt.zip", "");
    CHECK_FALSE(check_dem_cells(stage.workspace, stage.prompts));
    CHECK(stage.prompts.tells().back() ==
          "No HGT!\r\nN47E009.hgt\r\nN47E010.hgt\r\nN46E009.hgt\r\nN46E010.hgt\r\n"
          "Perhaps select Auto Search in Contour/DEM,Settings");
  }
  SUBCASE("no folder of heights") {
    stage.set("hgt-folder-1={home}/gone");
    CHECK(check_dem_cells(stage.workspace, stage.prompts));  // the plan of the build stops it
    CHECK(stage.prompts.tells() == Texts{"Cannot locate HGT files. Check Contours/Dem Settings\r\n"
                                         "Untick DEM or Contours\r\n"
                                         "Perhaps select Auto Search DEM/Contours,Settings"});
  }
}

TEST_CASE("a cell in lower case is offered for renaming" * doctest::skip(platform::names_ignore_case)) {
  Cells stage;
  for (const char* name : {"h/n46e010.HGT", "h/n47e009.hgt", "h/N47e010.Hgt"})
    stage.home.write(name, std::string(heights_size, '\0'));
  SUBCASE("Yes renames all") {
    stage.prompts.answers = {Answer::yes};
    CHECK(check_dem_cells(stage.workspace, stage.prompts));
    CHECK(stage.prompts.tells().empty());
    CHECK(stage.prompts.asks() == Texts{"These files are found only under names in upper case. Rename?\r\n"
                                        "n46e010.HGT --> N46E010.hgt\r\nn47e009.hgt --> N47E009.hgt\r\n"
                                        "N47e010.Hgt --> N47E010.hgt\r\n"});
    CHECK(file_exists(stage.home / "h/N47E010.hgt"));
  }
  SUBCASE("No leaves them missing") {
    stage.prompts.answers = {Answer::no};
    CHECK(check_dem_cells(stage.workspace, stage.prompts));
    CHECK(contains(stage.prompts.tells().at(0), "3 hgt file(s) not found."));
    CHECK(file_exists(stage.home / "h/n47e009.hgt"));
  }
}

TEST_CASE("contour files are counted before a build") {
  Cells stage;
  check_contour_files(stage.workspace, stage.prompts);
  stage.home.write("h/N46E009.osm", "<osm></osm>");
  stage.home.write("h/N46E010.osm", "<osm>cut o");
  check_contour_files(stage.workspace, stage.prompts);
  stage.set("clip-contours=1; clip-folder-1={home}/clips");
  check_contour_files(stage.workspace, stage.prompts);
  CHECK(stage.prompts.tells() ==
        Texts{"No contours found. Untick contours.", "Added 0 contours.",
              "Missing OSM Contour files (3)\r\nN46E010.osm\r\nN47E009.osm\r\nN47E010.osm",
              "Added 1 contours",
              "Check the 5 clip folders you have specified\r\n"
              "Perhaps,select Auto Search  --> Dem/Contours,Settings.",
              "Added 0 contours."});
}

TEST_CASE("clips count when they are whole and hold lines") {
  Cells stage;
  stage.set("clip-contours=1; clip-folder-1={home}/clips");
  const std::string whole = test::small_pbf();
  const std::string made = stage.home.write("clips/N46E009clp.pbf", whole);
  stage.home.write("clips/N46E010clp.pbf", whole.substr(0, whole.size() - 1));
  stage.home.write("clips/N47E009clp.pbf", "");
  stage.home.write("clips/N47E010clp.pbf", test::pbf_block("OSMHeader", "head"));
  const std::string contours = stage.home.write("h/N46E009.osm", "<osm></osm>");
  namespace fs = std::filesystem;
  fs::last_write_time(platform::file_system_path(made),
                      fs::last_write_time(platform::file_system_path(contours)) - std::chrono::seconds(5));
  check_contour_files(stage.workspace, stage.prompts);
  CHECK(stage.prompts.tells() ==
        Texts{"Missing OSM Contour files (2)\r\nN46E010clp.pbf is damaged. Please clip again.\r\n"
              "N47E009clp.pbf is damaged. Please clip again.",
              "Clipped contours without a line:\r\nN47E010clp.pbf\r\n"
              "Clipped contours older than their contours. Please clip again:\r\nN46E009clp.pbf",
              "Added 1 contours"});
}

TEST_CASE("download help") {
  CHECK(download_pages("", "Eurasia", {"N46E009.hgt"}) ==
        Texts{"https://dds.cr.usgs.gov/srtm/version2_1/SRTM3/Eurasia/N46E009.hgt.zip"});
  CHECK(download_pages("http://x", search_all, {"N46E009.hgt"}).size() == srtm_regions.size());
  CHECK(download_pages("http://x/", "Africa", Texts(30, "N46E009.hgt")) == Texts{"http://x/Africa/"});
  Cells stage;
  DownloadState state = download_state(stage.workspace, stage.prompts);
  CHECK(state.summary == "4 HGT needed: 3 HGT not found: /4");
  CHECK(download_message(state, stage.workspace) ==
        "HGT files missing (3)\r\nN46E010.hgt\r\nN47E009.hgt\r\nN47E010.hgt");
  stage.home.write("h/N47E010.hgt", "12345");  // heights are counted, not files
  state = download_state(stage.workspace, stage.prompts);
  CHECK(state.summary == "4 HGT needed: 3 HGT not found: /4");
  CHECK(cells_in(state.cells, CellCondition::damaged) == Texts{"N47E010.hgt"});
  stage.workspace.saved_selection = true;  // of no tile at all
  CHECK(download_message(state, stage.workspace) == "Please select a Tile.");
  stage.workspace.saved_selection = false;
  // A downloaded archive is told by what it holds, not by its name.
  const std::string archive =
      stage.home.write("down/M32.ZIP", test::archive_of({{"M32/N47E009.hgt", heights_size}}));
  REQUIRE(take_download(stage.workspace, archive).ok());
  state = download_state(stage.workspace, stage.prompts);
  CHECK(state.archives == Texts{stage.home / "h/M32.zip"});
  CHECK(download_message(state, stage.workspace).starts_with("Please unzip zip files"));
  const std::tuple<const char*, std::string, const char*> refused[] = {
      {"down/a.txt", "x", "a.txt is neither .hgt nor .zip"},
      {"down/N46E010.hgt", "x", "N46E010.hgt has 1 bytes; heights have 2884802 or 25934402."},
      {"down/b.zip", "x", "b.zip is no complete zip archive."},
      {"down/c.zip", test::archive_of({{"read.me", 3}}), "c.zip holds no .hgt files."},
      {"down/d.zip", test::archive_of({{"../N46E010.hgt", heights_size}}),
       "d.zip: '../N46E010.hgt' leads out of the folder"}};
  for (const auto& [name, bytes, message] : refused)
    CHECK(take_download(stage.workspace, stage.home.write(name, bytes)).error == message);
}

TEST_CASE("the list of land cells is loaded once") {
  test::StandIn stage;
  stage.home.write("hgt_land", "N46E009");
  load_land_list(stage.workspace, stage.prompts);
  stage.home.write("hgt_land", "N47E009");
  load_land_list(stage.workspace, stage.prompts);
  CHECK(stage.workspace.land_list == "N46E009");
}
