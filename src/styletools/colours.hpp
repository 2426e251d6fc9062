// Colours for TYP work: the fixed palette, hue and lightness, shades, and the six-digit text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const Rgb&) const = default;
};

// The platform's colour number: red in the low byte, then green, then blue.
Rgb CToRGB(std::uint32_t colour);
std::uint32_t colour_number(const Rgb& rgb);
// "1CA9DE"; and back, nothing unless there are exactly six hexadecimal digits.
std::string rgb_text(const Rgb& rgb);
std::optional<Rgb> rgb_of_text(std::string_view text);
// First and last byte of a six-digit text swapped; a shorter one is padded with "0" on the left first.
std::string rev(std::string_view text);
// The colour number that a text of six digits shows, by way of `rev`; nothing for any other length.
std::optional<std::uint32_t> typed_colour(std::string_view text);
// What typing this text leaves in the box: hexadecimal digits alone, upper case, at most six.
std::string accepted_digits(std::string_view typed);

// Hue in degrees; saturation and lightness from 0 to 255.
Rgb HSLToRGB02(double hue, double saturation, double lightness);
struct Hsl {
  double hue = 0, saturation = 0, lightness = 0;
};
Hsl hsl_of(const Rgb& rgb);

inline constexpr std::size_t palette_size = 24;
const std::array<Rgb, palette_size>& palette();
// From nearly black over the colour itself to nearly white.
inline constexpr std::size_t shade_count = 11;
std::array<Rgb, shade_count> shades(const Rgb& colour);

// The palette cell that holds this colour (the first one), or where the picker shows it.
struct FoundColour {
  std::optional<std::size_t> cell;
  Hsl position;
};
FoundColour find_color(const Rgb& colour);

}  // namespace ferrowen
