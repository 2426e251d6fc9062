#include "elevation/dem_arguments.hpp"

#include <doctest/doctest.h>

#include <string>
#include <tuple>
#include <vector>

using namespace ferrowen;

TEST_CASE("dem.args holds the options without dashes, then the folder and the outline") {
  const std::tuple<const char*, std::vector<std::string>, const char*, const char*> rows[] = {
      {"--overview-dem-dist=88888\r\n--dem-dists=3312,6624",
       {},
       "/s/areas.poly",
       "overview-dem-dist=88888\r\ndem-dists=3312,6624\r\ndem=/h g\r\n\r\ndem-poly=/s/areas.poly\r\n"},
      {"--copyright=a--b\x1f--dem-dists=3312",
       {"--dem-interpolation=bicubic", "dem-dists=1"},
       "",
       "copyright=ab\r\ndem-dists=3312\r\ndem-interpolation=bicubic\r\ndem-dists=1\r\ndem=/h g\r\n"},
      {" \r\n", {}, "/a--b/areas.poly", "dem=/h g\r\n\r\ndem-poly=/a--b/areas.poly\r\n"},
  };
  for (const auto& [options, block, outline, text] : rows)
    CHECK(dem_arguments_text(options, block, "/h g", outline) == text);
}
