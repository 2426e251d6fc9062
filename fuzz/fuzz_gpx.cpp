#include <cstdint>

#include "expect.hpp"
#include "mp/distance.hpp"
#include "mp/gpx_reader.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const GpxFile file = read_gpx(fuzz::text_of(data, size));
  std::size_t points = 0;
  for (const GpxSegment& segment : file.segments) {
    expect(segment.first == points, "segments follow each other");
    points += segment.count;
    LineLength length;
    for (std::size_t i = segment.first; i < points; ++i) {
      const Coordinate& point = file.points.at(i);
      expect(point.latitude.find_first_not_of("0123456789.-") == std::string_view::npos &&
                 point.longitude.find_first_not_of("0123456789.-") == std::string_view::npos,
             "coordinates are plain numbers");
      const Position position = position_of(point);
      expect(position.latitude >= -90 && position.latitude <= 90 && position.longitude >= -180 &&
                 position.longitude <= 180,
             "coordinates are within their ranges");
      length.add(position);
    }
    expect(length.total() >= 0, "a length is a number");
    expect(length.half_way().value_or(0) < segment.count || segment.count == 0, "half way is on the line");
  }
  expect(points == file.points.size(), "every point belongs to a segment");
  if (file.name) expect(file.name->find_first_of("\r\n") == std::string::npos, "a name is one line");
  return 0;
}
