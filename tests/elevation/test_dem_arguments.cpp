#include "elevation/dem_arguments.hpp"

#include <doctest/doctest.h>

#include <string>
#include <vector>

using namespace ferrowen;

TEST_CASE("dem.args holds the options without dashes, then the folder and the outline") {
  struct Row {
    const char* options;
    std::vector<std::string> block;
    const char* outline;
    const char* text;
  };
  const std::vector<Row> rows = {
      {"--overview-dem-dist=88888\r\n--dem-dists=3312,6624",
       {},
       "/s/areas.poly",
       "overview-dem-dist=88888\r\ndem-dists=3312,6624\r\ndem=/h g\r\n\r\ndem-poly=/s/areas.poly\r\n"},
      {"--overview-dem-dist=88888\x1f--dem-dists=3312,6624\x1f",
       {},
       "",
       "overview-dem-dist=88888\r\ndem-dists=3312,6624\r\ndem=/h g\r\n"},
      {"--copyright=a--b\n",
       {"--dem-interpolation=bicubic", "dem-dists=1"},
       "",
       "copyright=ab\r\ndem-interpolation=bicubic\r\ndem-dists=1\r\ndem=/h g\r\n"},
      {" \r\n", {}, "/a--b/areas.poly", "dem=/h g\r\n\r\ndem-poly=/a--b/areas.poly\r\n"},
  };
  for (const Row& row : rows)
    CHECK(dem_arguments_text(row.options, row.block, "/h g", row.outline) == row.text);
}
