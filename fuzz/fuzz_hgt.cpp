// Heights from any bytes: the first two choose interval, tolerance and which samples count as higher.
#include <algorithm>
#include <cstdint>

#include "contours/osm_writer.hpp"
#include "contours/trace.hpp"
#include "expect.hpp"

using namespace ferrowen;
using fuzz::expect;

namespace {

constexpr Cell cell{-46, -7};

void check_line(const ContourLines& contours, const ContourLine& line, int interval) {
  expect(line.elevation % interval == 0, "lines lie at multiples of the interval");
  expect(line.count >= 2 && line.first + line.count <= contours.points.size(),
         "a line has its points in the pool");
  for (const Point& point : contours.points_of(line)) {
    expect(point.longitude >= -7 * units_per_degree && point.longitude <= -6 * units_per_degree &&
               point.latitude >= -46 * units_per_degree && point.latitude <= -45 * units_per_degree,
           "points lie in the cell");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text_of(data, size);
  expect(parse_hgt(bytes).ok() == is_hgt_size(size), "a cell is known by its size");
  if (size < 2) return 0;
  // Wide intervals: noise would have millions of crossings in every run.
  const Levels levels{1000 - 3 * data[0], data[1] % 2 == 0 ? -0.5 : least_fake_distance};
  const LineRules rules{static_cast<std::size_t>(data[1] / 2 % 5), data[1] * 1000, data[1] * 10000.0};
  int side = 0;
  while (2 * (side + 1) * (side + 1) <= static_cast<int>(std::min<std::size_t>(size - 2, 288)))
    ++side;
  const std::size_t used = 2 * static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
  const HeightGrid grid = grid_of_samples(bytes.substr(2, used), side);
  const Result<ContourLines> contours = trace_contours(grid, cell, levels, rules);
  if (!contours.ok()) return 0;
  std::size_t points = 0;
  for (const ContourLine& line : contours.value.lines) {
    check_line(contours.value, line, levels.interval);
    expect(line.first == points, "lines lie one behind the other");
    points += line.count;
  }
  expect(points == contours.value.points.size(), "every point belongs to a line");
  std::size_t written = 0;
  const auto count = [&](std::string_view block) {
    written += block.size();
    return std::string();
  };
  expect(write_osm(contours.value, cell, {}, count).ok() && written > 100, "the lines can be written");
  return 0;
}
