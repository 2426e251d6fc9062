#include "contours/trace.hpp"

#include <doctest/doctest.h>

#include <string>
#include <tuple>
#include <vector>

#include "grids.hpp"

using namespace ferrowen;
using test::grid;

namespace {

constexpr LineRules everything{2, 0, 0};
constexpr double above = least_fake_distance;

ContourLines trace(const HeightGrid& heights, const Levels& levels) {
  Result<ContourLines> contours = trace_contours(heights, {46, 9}, levels, everything);
  REQUIRE(contours.ok());
  return contours.value;
}

// One line of text per contour line: elevation, then its points in thousandths of the cell from its upper
// left corner; behind a closed line "*".
std::string text_of(const ContourLines& contours) {
  std::string text;
  for (const ContourLine& line : contours.lines) {
    text += std::to_string(line.elevation) + ":";
    for (const Point& point : contours.points_of(line)) {
      const auto thousandths = [](std::int32_t units) { return std::to_string((units + 5000) / 10000); };
      text += " " + thousandths(point.longitude - 9 * units_per_degree) + "," +
              thousandths(47 * units_per_degree - point.latitude);
    }
    text += line.closed ? " *\n" : "\n";
  }
  return text;
}

}  // namespace

TEST_CASE("lines lie where the height is, with the higher ground on their left") {
  CHECK(text_of(trace(grid(3, {0, 20, 60, 0, 20, 60, 0, 20, 60}), {50, above})) ==
        "50: 875,0 875,500 875,1000\n");
  CHECK(text_of(trace(grid(3, {1, 9, 1, 1, 9, 1, 1, 9, 1}), {5, above})) ==
        "5: 250,0 250,500 250,1000\n5: 750,1000 750,500 750,0\n");
  CHECK(text_of(trace(grid(2, {-7, -7, -3, -3}), {5, above})) == "-5: 1000,500 0,500\n");
}

TEST_CASE("a hill gives closed lines, and several levels cross one edge") {
  CHECK(text_of(trace(grid(3, {0, 0, 0, 0, 40, 0, 0, 0, 0}), {10, -0.5})) ==
        "0: 500,6 6,500 500,994 994,500 *\n10: 500,131 131,500 500,869 869,500 *\n"
        "20: 500,256 256,500 500,744 744,500 *\n30: 500,381 381,500 500,619 619,500 *\n");
}

TEST_CASE("two opposite corners that lie higher: the fold is the same for all levels") {
  CHECK(text_of(trace(grid(2, {9, 1, 1, 9}), {5, above})) == "5: 0,500 500,1000\n5: 1000,500 500,0\n");
  CHECK(text_of(trace(grid(2, {1, 9, 9, 1}), {5, above})) == "5: 500,0 1000,500\n5: 500,1000 0,500\n");
}

TEST_CASE("samples on a line are taken to one side") {
  const HeightGrid plain = grid(3, {100, 100, 100, 100, 100, 100, 100, 100, 90});
  CHECK(text_of(trace(plain, {20, -0.5})).empty());
  CHECK(text_of(trace(plain, {20, 0.5})) == "100: 524,1000 1000,524\n");
}

TEST_CASE("voids leave gaps") {
  const int hole = void_height;
  const HeightGrid ridge =
      grid(5, {0, 0, 0, 0, 0, 9, 9, hole, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9});
  CHECK(text_of(trace(ridge, {5, above})) == "5: 250,139 0,139\n5: 1000,139 750,139\n");
  CHECK(trace(grid(2, {hole, hole, hole, hole}), {}).lines.empty());
}

TEST_CASE("more points than a cell has numbers for are refused before any is made") {
  HeightGrid noise{3601, {}};
  noise.heights.resize(std::size_t{3601} * 3601);
  for (std::size_t at = 0; at < noise.heights.size(); at += 2)
    noise.heights[at] = 32767;
  CHECK(trace_contours(noise, {46, 9}, {5, above}, everything).error ==
        "more than 90000000 points; choose a larger interval");
}

TEST_CASE("which lines are kept") {
  const std::vector<Point> line = {{0, 0}, {10, 3}, {20, 0}};
  for (const auto& [least_points, least_extent, kept] :
       {std::tuple{3, 20, true}, {4, 0, false}, {3, 21, false}, {0, 0, true}})
    CHECK(is_kept(line, {static_cast<std::size_t>(least_points), least_extent, 0}) == kept);
  CHECK_FALSE(is_kept({{5, 5}}, {0, 0, 0}));

  std::vector<Point> repeated = {{0, 0}, {0, 0}, {1, 0}, {0, 0}, {0, 0}};
  std::vector<Point> closed = repeated;
  remove_repeated(repeated, false);
  CHECK(repeated == std::vector<Point>{{0, 0}, {1, 0}, {0, 0}});
  remove_repeated(closed, true);
  CHECK(closed == std::vector<Point>{{0, 0}, {1, 0}});
}

TEST_CASE("simplified lines stay within the tolerance and keep their ends") {
  using Line = std::vector<Point>;
  const Line bend = {{0, 0}, {10, 1}, {20, -1}, {30, 0}, {30, 40}};
  for (const auto& [tolerance, expected] : {std::pair{0.0, bend},
                                            {0.5, bend},
                                            {1.5, Line{{0, 0}, {30, 0}, {30, 40}}},
                                            {100.0, Line{{0, 0}, {30, 40}}}}) {
    Line line = bend;
    simplify(line, false, tolerance);
    CHECK(line == expected);
  }
  Line ring = {{0, 0}, {50, 1}, {100, 0}, {100, 100}, {0, 100}};
  simplify(ring, true, 5);
  CHECK(ring == Line{{0, 0}, {100, 0}, {100, 100}, {0, 100}});
  simplify(ring, true, 1000);
  CHECK(ring.size() == 3);
  Line straight;
  for (int at = 0; at < 10000; ++at)
    straight.push_back({at, 0});
  simplify(straight, false, 1);
  CHECK(straight.size() <= 6);
  CHECK(straight.back() == Point{9999, 0});
}
