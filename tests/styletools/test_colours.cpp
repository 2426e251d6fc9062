#include "styletools/colours.hpp"

#include <doctest/doctest.h>

using namespace ferrowen;

TEST_CASE("colours: typed digits") {
  CHECK(rgb_of_text("1CA9DE") == Rgb{0x1C, 0xA9, 0xDE});
  CHECK(typed_colour("1CA9DE") == 0xDEA91CU);
  CHECK(rgb_text({0x1C, 0xA9, 0xDE}) == "1CA9DE");
  for (const char* wrong : {"1CA9D", "1CA9DEE", "1CA9DG", ""})
    CHECK_FALSE(rgb_of_text(wrong).has_value());
  CHECK(rev("ABC") == "BC0A00");
  CHECK(rev(rev("1CA9DE")) == "1CA9DE");
  CHECK(accepted_digits("1cg a9#DE7") == "1CA9DE");
  CHECK(CToRGB(0xDEA91C) == Rgb{0x1C, 0xA9, 0xDE});
  CHECK(colour_number({0x1C, 0xA9, 0xDE}) == 0xDEA91C);
}

TEST_CASE("colours: hue, saturation and lightness") {
  struct Case {
    double hue;
    Rgb rgb;
  };
  const Case cases[] = {{0, {255, 0, 0}},   {60, {255, 255, 0}},  {120, {0, 255, 0}}, {180, {0, 255, 255}},
                        {240, {0, 0, 255}}, {300, {255, 0, 255}}, {360, {255, 0, 0}}, {30, {255, 128, 0}}};
  for (const Case& each : cases) {
    CAPTURE(each.hue);
    CHECK(HSLToRGB02(each.hue, 255, 127.5) == each.rgb);
  }
  CHECK(HSLToRGB02(200, 0, 255) == Rgb{255, 255, 255});
  for (const Rgb& cell : palette()) {
    const Hsl hsl = hsl_of(cell);
    CHECK(HSLToRGB02(hsl.hue, hsl.saturation, hsl.lightness) == cell);
  }
}

TEST_CASE("colours: palette and shades") {
  CHECK(palette()[0] == Rgb{0xFF, 0xFF, 0x00});
  CHECK(palette()[19] == palette()[20]);
  CHECK(palette()[23] == Rgb{0, 0, 0});
  CHECK(find_color({0xFC, 0x58, 0x30}).cell == 19);
  CHECK_FALSE(find_color({1, 2, 3}).cell.has_value());
  const auto row = shades({0x1C, 0xA9, 0xDE});
  CHECK(row[shade_count / 2] == Rgb{0x1C, 0xA9, 0xDE});
  for (std::size_t step = 1; step < shade_count; ++step)
    CHECK(hsl_of(row[step]).lightness > hsl_of(row[step - 1]).lightness);
}
