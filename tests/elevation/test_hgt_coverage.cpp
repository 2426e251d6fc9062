#include "elevation/hgt_coverage.hpp"

#include <doctest/doctest.h>

#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "support/temp_folder.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
using Names = std::vector<std::string>;

namespace {

Tile tile(Corner lower_left, Corner upper_right, bool selected = false) {
  return {"13224385", "", lower_left, upper_right, selected};
}

}  // namespace

TEST_CASE("height cells are named after their south-west corner") {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"46.14", "-6.50", "N46W007.hgt"}, {"-0.5", "7.2", "S01E007.hgt"},  {"47", "-5", "N47W006.hgt"},
      {"-0,5", "-0,5", "S01W001.hgt"},   {"0", "0", "N00E000.hgt"},       {"-33", "151.2", "S34E151.hgt"},
      {"9", "-100.01", "N09W101.hgt"},   {"-0.0", "-0.25", "N00W001.hgt"}};
  for (const auto& [latitude, longitude, name] : rows) {
    CHECK(hgt_name(latitude, longitude) == name);
    CHECK(is_hgt_name(name));
  }
  for (const char* name :
       {"", "N46W007", "n46w007.hgt", "N90E000.hgt", "N46W181.hgt", "N46E180.hgt", "S91E000.hgt",
        "S00E007.hgt", "N46W000.hgt", "E46N007.hgt", "N4 W007.hgt", "N46W007.hgt ", "N046W07.hgt"}) {
    CHECK_FALSE(is_hgt_name(name));
  }
  for (const char* name : {"N89E179.hgt", "S90W180.hgt"})
    CHECK(is_hgt_name(name));
}

TEST_CASE("a tile's coverage") {
  SUBCASE("lists rows from the south, each from the west, without separators") {
    const std::string wanted = "N46W007.hgtN46W006.hgtN47W007.hgtN47W006.hgt";
    CHECK(tile_coverage(tile({46.14, -6.50}, {47.19, -5.27}), "") == wanted);
    CHECK(tile_coverage(tile({47.19, -5.27}, {46.14, -6.50}), "") == wanted);
    CHECK(coverage_names(wanted) == Names{"N46W007.hgt", "N46W006.hgt", "N47W007.hgt", "N47W006.hgt"});
  }
  SUBCASE("steps from the fractional value when the west or south edge lies between -1 and 0") {
    CHECK(tile_coverage(tile({51.2, -0.5}, {51.4, 2.3}), "") == "N51W001.hgtN51E000.hgtN51E001.hgt");
    CHECK(tile_coverage(tile({-0.5, 7.2}, {0.5, 7.4}), "") == "S01E007.hgt");
  }
  SUBCASE("leaves sea cells out, unless no land list is there") {
    const Tile both = tile({62.1, -7.5}, {62.2, -6.5});
    CHECK(tile_coverage(both, "N61W007\nN62W007\n") == "N62W007.hgt");
    CHECK(tile_coverage(both, "N61W007.hgt,N62W008.hgt") == "N62W008.hgt");
    CHECK(tile_coverage(both, "") == "N62W008.hgtN62W007.hgt");
  }
  SUBCASE("ends for corners that lie nowhere") {
    const double huge = std::numeric_limits<double>::max();
    CHECK(tile_coverage(tile({-huge, -huge}, {huge, huge}), "N46E007").size() <= 11);
    CHECK(tile_coverage(tile({1e9, 7}, {2e9, 8}), "").empty());
    CHECK(touched_cells({tile({-huge, huge}, {-huge, huge})}, "") == Names{"S90E179.hgt"});
  }
}

TEST_CASE("the coverage of a selection holds each cell once; none selected means all") {
  TileList tiles = {tile({47.1, 9.5}, {47.2, 9.6}), tile({47.1, 9.6}, {47.3, 10.1}),
                    tile({46.9, 9.5}, {47, 9.6})};
  CHECK(coverage_of_selection(tiles, "") == Names{"N47E009.hgt", "N47E010.hgt", "N46E009.hgt"});
  tiles[2].selected = true;
  CHECK(coverage_of_selection(tiles, "") == Names{"N46E009.hgt", "N47E009.hgt"});
}

TEST_CASE("the cells that tiles touch are told by their degrees") {
  CHECK(touched_cells({tile({51.2, -0.5}, {51.4, 1.3})}, "") ==
        Names{"N51W001.hgt", "N51E000.hgt", "N51E001.hgt"});
  CHECK(touched_cells({tile({-0.5, -7}, {0.5, -6})}, "") == Names{"S01W007.hgt", "N00W007.hgt"});
  TileList tiles = {tile({47, 9}, {48, 10}), tile({47.5, 9.5}, {47.6, 10.1})};
  CHECK(touched_cells(tiles, "N47E009 N47E010") == Names{"N47E009.hgt", "N47E010.hgt"});
  tiles[0].selected = true;
  CHECK(touched_cells(tiles, "") == Names{"N47E009.hgt"});
}

TEST_CASE("files of cells are looked for in their folders") {
  const test::TempFolder folder("hgt \u00fc");
  for (const char* name : {"one/N46E009.hgt", "one/N47E009.zip", "one/N48E009.hgt.zip", "one/N47E009.osm",
                           "two/N48E009clp.pbf", "two/N49E009.hgt/a folder", "two/notes.zip"})
    folder.write(name, "x");
  folder.write("two/N47E009clp.pbf", test::small_pbf());
  const Names cells = {"N46E009.hgt", "N47E009.hgt", "N48E009.hgt", "N49E009.hgt", "N49E009.hgt"};
  const std::string one = folder / "one";
  const std::string two = folder / "two";
  const auto in = [](const std::string& where, const char* name) { return platform::join(where, name); };
  const CellFiles heights = find_cell_files(cells, one, CellFile::hgt);
  CHECK(heights.found == Names{in(one, "N46E009.hgt"), in(one, "N47E009.zip"), in(one, "N48E009.hgt.zip")});
  CHECK(heights.missing == Names{"N49E009.hgt"});
  CHECK(find_cell_files(cells, one, CellFile::contours).found == Names{in(one, "N47E009.osm")});
  CHECK(find_cell_files(cells, Names{"", one, two}, CellFile::clipped_contours).found ==
        Names{in(two, "N47E009clp.pbf")});
  CHECK(holds_heights(one));
  CHECK_FALSE(holds_heights(two));
}

TEST_CASE("the folders in use come from the slots") {
  const test::TempFolder folder;
  folder.write("third/x", "");
  folder.write("root/x", "");
  Settings settings;
  settings.hgt_folder = folder / "root";
  settings.hgt_folders = {"first", " ", folder / "third", folder / "gone", folder / "root", "relative"};
  settings.clip_folders[1] = " clips ";
  settings.clip_slot = 1;
  Settings full = settings;
  CHECK(use_clip_folder(full, "clips"));
  CHECK(full.clip_slot == 1);
  CHECK(use_clip_folder(full, "new"));
  CHECK(current_clip_folder(full) == "new");
  CHECK(full.clip_folders[1] == "clips");
  for (std::string& slot : full.clip_folders)
    slot = "taken";
  CHECK_FALSE(use_clip_folder(full, "new"));
  CHECK(current_clip_folder(settings) == "clips");
  CHECK(searched_hgt_folders(settings) == Names{"first"});
  settings.hgt_auto_search = true;
  CHECK(searched_hgt_folders(settings) == Names{"first", folder / "third", folder / "root"});
  for (const int slot : {1, 6}) {
    settings.hgt_slot = slot;
    CHECK(current_hgt_folder(settings) == folder / "root");
  }
}
