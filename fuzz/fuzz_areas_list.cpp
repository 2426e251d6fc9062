#include <cmath>
#include <cstdint>

#include "expect.hpp"
#include "pipeline/tiles/areas_list.hpp"
#include "pipeline/tiles/tile_list.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::text_of(data, size);
  const AreasList list = parse_areas_list(text);
  for (const Area& area : list.areas) {
    expect(area.number.size() == 8, "a tile number has eight digits");
    expect(std::abs(lower_left(area).latitude) <= 90 && std::abs(upper_right(area).longitude) <= 180,
           "corners lie on the earth");
  }
  // The same bytes as areas.list and as template.args.
  expect(join_tiles(text, text).size() == list.areas.size(), "every area is a tile");
  return 0;
}
