#include "styletools/colours.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/text.hpp"
#include "styletools/type_key.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t digits = 6;
constexpr double sector = 60, full_circle = 360, full_value = 255;
constexpr int hexadecimal_base = 16;

// Four colours each; fc5830 stands twice.
constexpr std::array<std::string_view, 6> palette_texts{
    "ffff00,ff00ff,0000ff,ffffff,", "e2202c,e62565,9b2fae,673fb4,", "4054b2,587bf8,1eaaf1,1fbcd2,",
    "159588,2c992d,8cc152,cdda49,", "fee94e,fdc02f,fd9727,fc5830,", "fc5830,9e9e9e,785549,000000"};

bool is_hexadecimal(char digit) {
  return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f') || (digit >= 'A' && digit <= 'F');
}

std::optional<std::uint32_t> hexadecimal_number(std::string_view text) {
  std::uint32_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal_base);
  if (end.ec != std::errc() || end.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

std::array<Rgb, palette_size> parsed_palette() {
  std::array<Rgb, palette_size> cells;
  std::size_t cell = 0;
  for (const std::string_view row : palette_texts)
    for (const std::string& text : split(row, ","))
      if (!text.empty()) cells.at(cell++) = rgb_of_text(text).value_or(Rgb{});
  return cells;
}

std::uint8_t byte_of(double part) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0, 1.0) * full_value));
}

}  // namespace

Rgb CToRGB(std::uint32_t colour) {
  return {static_cast<std::uint8_t>(colour & 255), static_cast<std::uint8_t>(colour / 256 & 255),
          static_cast<std::uint8_t>(colour / 65536 & 255)};
}

std::uint32_t colour_number(const Rgb& rgb) {
  return static_cast<std::uint32_t>(rgb.red) + static_cast<std::uint32_t>(rgb.green) * 256 +
         static_cast<std::uint32_t>(rgb.blue) * 65536;
}

std::string rgb_text(const Rgb& rgb) {
  return f_mat(hexadecimal_text(rgb.red)) + f_mat(hexadecimal_text(rgb.green)) +
         f_mat(hexadecimal_text(rgb.blue));
}

std::optional<Rgb> rgb_of_text(std::string_view text) {
  const std::optional<std::uint32_t> colour = typed_colour(text);
  if (!colour) return std::nullopt;
  return CToRGB(*colour);
}

std::string rev(std::string_view text) {
  std::string padded(text);
  if (padded.size() < digits) padded.insert(0, digits - padded.size(), '0');
  return padded.substr(padded.size() - 2) + padded.substr(2, 2) + padded.substr(0, 2);
}

std::optional<std::uint32_t> typed_colour(std::string_view text) {
  if (text.size() != digits || !std::all_of(text.begin(), text.end(), is_hexadecimal)) return std::nullopt;
  return hexadecimal_number(rev(text));
}

std::string accepted_digits(std::string_view typed) {
  std::string kept;
  std::copy_if(typed.begin(), typed.end(), std::back_inserter(kept), is_hexadecimal);
  return upper_ascii(kept.substr(0, digits));
}

Rgb HSLToRGB02(double hue, double saturation, double lightness) {
  const double light = lightness / full_value;
  const double chroma = (1 - std::abs(2 * light - 1)) * saturation / full_value;
  const double angle = std::fmod(std::fmod(hue, full_circle) + full_circle, full_circle) / sector;
  const double middle = chroma * (1 - std::abs(std::fmod(angle, 2) - 1));
  const std::array<std::array<double, 3>, 6> sectors{{{chroma, middle, 0},
                                                      {middle, chroma, 0},
                                                      {0, chroma, middle},
                                                      {0, middle, chroma},
                                                      {middle, 0, chroma},
                                                      {chroma, 0, middle}}};
  const auto& parts = sectors.at(std::min<std::size_t>(static_cast<std::size_t>(angle), sectors.size() - 1));
  const double least = light - chroma / 2;
  return {byte_of(parts[0] + least), byte_of(parts[1] + least), byte_of(parts[2] + least)};
}

Hsl hsl_of(const Rgb& rgb) {
  const double red = rgb.red / full_value;
  const double green = rgb.green / full_value;
  const double blue = rgb.blue / full_value;
  const double most = std::max({red, green, blue});
  const double least = std::min({red, green, blue});
  const double chroma = most - least;
  Hsl hsl{0, 0, (most + least) / 2 * full_value};
  if (chroma <= 0) return hsl;
  hsl.saturation = chroma / (1 - std::abs(most + least - 1)) * full_value;
  if (most == red)
    hsl.hue = std::fmod((green - blue) / chroma + 6, 6) * sector;
  else if (most == green)
    hsl.hue = ((blue - red) / chroma + 2) * sector;
  else
    hsl.hue = ((red - green) / chroma + 4) * sector;
  return hsl;
}

const std::array<Rgb, palette_size>& palette() {
  static const std::array<Rgb, palette_size> cells = parsed_palette();
  return cells;
}

std::array<Rgb, shade_count> shades(const Rgb& colour) {
  const Hsl hsl = hsl_of(colour);
  std::array<Rgb, shade_count> row;
  constexpr std::size_t middle = shade_count / 2;
  for (std::size_t step = 0; step < shade_count; ++step) {
    // Even steps from black to the colour, and from it to white; the two ends themselves are left out.
    const double part = static_cast<double>(step + 1) / (middle + 1);
    const double lightness =
        part <= 1 ? hsl.lightness * part : hsl.lightness + (full_value - hsl.lightness) * (part - 1);
    row.at(step) = step == middle ? colour : HSLToRGB02(hsl.hue, hsl.saturation, lightness);
  }
  return row;
}

FoundColour find_color(const Rgb& colour) {
  const auto& cells = palette();
  const auto* const found = std::find(cells.begin(), cells.end(), colour);
  FoundColour result{std::nullopt, hsl_of(colour)};
  if (found != cells.end()) result.cell = static_cast<std::size_t>(found - cells.begin());
  return result;
}

}  // namespace ferrowen
