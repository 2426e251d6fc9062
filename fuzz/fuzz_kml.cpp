#include <cstdint>

#include "expect.hpp"
#include "mp/kml_reader.hpp"
#include "mp/mp_label.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const KmlFile file = read_kml(fuzz::text_of(data, size));
  for (const KmlPlacemark& placemark : file.placemarks) {
    RewrittenTexts rewritten;
    std::string_view rest = placemark.coordinates;
    for (std::string_view tuple = next_tuple(rest); !tuple.empty(); tuple = next_tuple(rest)) {
      Coordinate point;
      if (!read_tuple(tuple, point, rewritten).empty()) continue;
      const Position position = position_of(point);
      expect(position.latitude >= -90 && position.latitude <= 90 && position.longitude >= -180 &&
                 position.longitude <= 180,
             "coordinates are within their ranges");
    }
    const EncodedLabel label = encode_label(placemark.label);
    expect(label.bytes.find_first_of("\r\n") == std::string::npos, "a label is one line");
  }
  expect(file.has_placemarks || file.placemarks.empty(), "placemarks come from placemarks");
  return 0;
}
