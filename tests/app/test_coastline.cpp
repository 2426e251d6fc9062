#include "app/coastline.hpp"

#include <doctest/doctest.h>

using namespace ferrowen;

namespace {

// As the maker writes it: zigzag, groups of five bits, the lowest first.
std::string number(long value) {
  unsigned long rest =
      value >= 0 ? 2UL * static_cast<unsigned long>(value) : 2UL * static_cast<unsigned long>(-value) - 1;
  std::string text;
  for (; rest >= 32; rest /= 32)
    text += static_cast<char>('0' + 32 + rest % 32);
  return text + static_cast<char>('0' + rest);
}

}  // namespace

TEST_CASE("coastline: differences of 1/500 degree become points with bounds") {
  const std::string line =
      number(-3500) + number(31000) + number(250) + number(-1) + number(-500) + number(2);
  const std::vector<Shoreline> lines = parse_coastline(line + "\r\n" + number(5) + "\n");
  REQUIRE(lines.size() == 1);
  REQUIRE(lines[0].points.size() == 3);
  CHECK(lines[0].points[0].longitude == doctest::Approx(-7));
  CHECK(lines[0].points[0].latitude == doctest::Approx(62));
  CHECK(lines[0].points[2].longitude == doctest::Approx(-7.5));
  CHECK(lines[0].lower_left.latitude == doctest::Approx(61.998));
  CHECK(lines[0].upper_right.longitude == doctest::Approx(-6.5));
}

TEST_CASE("coastline: rubbish ends its line only") {
  const std::string good = number(0) + number(0) + number(1) + number(1);
  const std::vector<Shoreline> lines = parse_coastline(good + "\n\x01\x02\n" + good + " x\n" + number(0) +
                                                       number(50000) + good + "\nPPPPPPPPPPPPPPP\n");
  REQUIRE(lines.size() == 2);
  CHECK(lines[1].points.size() == 2);
}
