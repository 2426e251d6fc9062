#include <cstdint>

#include "expect.hpp"
#include "mp/mp_shapes.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const MpShape& shape : read_mp_shapes(fuzz::text_of(data, size))) {
    expect(!shape.points.empty(), "a shape has points");
    for (const Position& point : shape.points)
      expect(
          point.latitude >= -90 && point.latitude <= 90 && point.longitude >= -180 && point.longitude <= 180,
          "coordinates are within their ranges");
  }
  return 0;
}
