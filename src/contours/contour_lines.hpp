// Contour lines in memory: one pool of points, and for each line its share of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ferrowen {

inline constexpr std::int32_t units_per_degree = 10'000'000;  // the resolution of OSM

struct Point {
  std::int32_t longitude = 0, latitude = 0;  // 1 / units_per_degree
  bool operator==(const Point&) const = default;
};

struct ContourLine {
  std::size_t first = 0, count = 0;  // in the pool
  int elevation = 0;                 // metres
  bool closed = false;               // the first point is not repeated
};

struct ContourLines {
  std::vector<Point> points;  // in the order of the lines, without gaps
  std::vector<ContourLine> lines;
  [[nodiscard]] std::span<const Point> points_of(const ContourLine& line) const {
    return {points.data() + line.first, line.count};
  }
};

}  // namespace ferrowen
