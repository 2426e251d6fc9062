#include "contours/cell.hpp"

#include <doctest/doctest.h>

#include "contours/height_grid.hpp"
#include "grids.hpp"

using namespace ferrowen;

TEST_CASE("names of cells") {
  for (const auto& [name, cell] : {std::pair{"N46W007", Cell{46, -7}},
                                   {"S12W077", {-12, -77}},
                                   {"N00E000", {0, 0}},
                                   {"S90W180", {-90, -180}},
                                   {"N89E179", {89, 179}}}) {
    CHECK(cell_name(cell) == name);
    CHECK(cell_of_name(name) == cell);
  }
  CHECK(cell_of_name("n46w007.HGT") == Cell{46, -7});
  for (const char* name : {"", "N46W07", "N90E000", "S91E000", "N46E180", "N46W181", "E46N007", "N4aW007",
                           "N46W00x", "N+6W007", "N46 007"})
    CHECK_FALSE(cell_of_name(name));
}

TEST_CASE("numbers of cells never meet and stay below what every program can hold") {
  CHECK(first_id({-90, -180}) == 10'000'000'000);
  CHECK(first_id({-90, -179}) == 10'100'000'000);
  CHECK(first_id({-89, -180}) == first_id({-90, 179}) + ids_per_cell);
  CHECK(first_id({89, 179}) + ids_per_cell < 1ULL << 53U);
  CHECK(nodes_per_cell + ways_per_cell == ids_per_cell);
}

TEST_CASE("bytes of a cell") {
  const Result<HeightGrid> cell = parse_hgt(test::cell_bytes(1201, [](int row, int column) {
    return row == 1200 && column == 0 ? -5 : row == 0 && column == 1200 ? -32768 : 258;
  }));
  REQUIRE(cell.ok());
  CHECK(cell.value.size == 1201);
  CHECK(cell.value.row(0)[0] == 258);
  CHECK(cell.value.row(0)[1200] == void_height);
  CHECK(cell.value.row(1200)[0] == -5);
  CHECK_FALSE(all_void(cell.value));
  CHECK(all_void(grid_of_samples("\x80", 0)));
  CHECK(all_void(test::grid(1, {-32768})));

  CHECK(parse_hgt("").error == "the cell is empty");
  CHECK(parse_hgt(std::string(1000, ' ')).error ==
        "wrong size: 1000 bytes; a cell has 2884802 (1201 x 1201 samples) or 25934402 (3601 x 3601 samples)");
  CHECK_FALSE(parse_hgt(std::string(2884801, ' ')).ok());
}
