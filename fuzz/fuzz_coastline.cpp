#include <cmath>
#include <cstdint>

#include "app/coastline.hpp"
#include "expect.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const Shoreline& line : parse_coastline(fuzz::text_of(data, size))) {
    expect(line.points.size() > 1, "a line has two ends");
    for (const Corner& point : line.points) {
      expect(std::abs(point.latitude) <= 90 && std::abs(point.longitude) <= 180, "points lie on the earth");
      expect(point.latitude >= line.lower_left.latitude && point.longitude <= line.upper_right.longitude,
             "points lie inside the bounds of their line");
    }
  }
  return 0;
}
