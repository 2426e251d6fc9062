#include <cstdint>

#include "expect.hpp"
#include "platform/utf8.hpp"
#include "styletools/typ_reader.hpp"

using namespace ferrowen;
using fuzz::expect;

namespace {

void check_image(const std::optional<TypImage>& image) {
  if (!image) return;
  const auto pixels = static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height);
  expect(image->pixels.size() == pixels, "an image has all its pixels");
  for (const std::uint16_t pixel : image->pixels)
    expect(pixel <= image->colours.size(), "a pixel is a colour or transparent");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Result<TypFile> typ = read_typ(fuzz::text_of(data, size));
  if (!typ.ok()) return 0;
  for (const RuleKind kind : rule_kinds)
    for (const TypDefinition& definition : typ.value.of(kind)) {
      expect(definition.key.size() == 5, "a key has five characters");
      expect(definition.draw_order <= typ.value.draw_order.size(), "a level is one of the table's");
      for (const TypLabel& label : definition.labels)
        expect(platform::is_utf8(label.text), "labels are UTF-8");
      check_image(definition.day_image);
      check_image(definition.night_image);
    }
  return 0;
}
