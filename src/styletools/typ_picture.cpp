#include "styletools/typ_picture.hpp"

#include <algorithm>

namespace ferrowen {

namespace {

constexpr int pattern_width = 32;
constexpr std::size_t bytes_per_pixel = 4;
constexpr int opacity_step = 17;  // transparency 15 is invisible
constexpr int opaque = 255;

TypPicture empty_picture(int width, int height) {
  TypPicture picture{std::max(0, width), std::max(0, height), {}};
  picture.pixels.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
                        bytes_per_pixel);
  return picture;
}

void set_pixel(TypPicture& picture, int column, int row, const std::optional<TypColour>& colour) {
  if (!colour || column < 0 || row < 0 || column >= picture.width || row >= picture.height) return;
  const std::size_t at = (static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width) +
                          static_cast<std::size_t>(column)) *
                         bytes_per_pixel;
  picture.pixels[at] = colour->red;
  picture.pixels[at + 1] = colour->green;
  picture.pixels[at + 2] = colour->blue;
  picture.pixels[at + 3] = static_cast<std::uint8_t>(opaque - opacity_step * colour->transparency);
}

struct Pair {
  TypColour foreground;
  std::optional<TypColour> background;
};

Pair colours_by(const TypDefinition& definition, TypLight light) {
  const TypColours& colours = definition.colours;
  if (light == TypLight::day) return {colours.day_foreground, colours.day_background};
  return {colours.night_foreground, colours.night_background};
}

std::optional<TypColour> pattern_pixel(const TypDefinition& definition, const Pair& colours, int column,
                                       int row) {
  const std::uint32_t bits = definition.rows[static_cast<std::size_t>(row)];
  const bool is_foreground = (bits >> (column % pattern_width) & 1) != 0;
  return is_foreground ? colours.foreground : colours.background;
}

void fill_rows(TypPicture& picture, int from, int count, const std::optional<TypColour>& colour) {
  for (int row = from; row < from + count; ++row)
    for (int column = 0; column < picture.width; ++column)
      set_pixel(picture, column, row, colour);
}

void draw_solid_line(TypPicture& picture, const TypDefinition& line, const Pair& colours) {
  const int border = colours.background ? line.border_width.value_or(0) : 0;
  const int total = line.line_width + 2 * border;
  const int top = (picture.height - total) / 2;
  if (border > 0) fill_rows(picture, top, total, colours.background);
  fill_rows(picture, top + border, line.line_width, colours.foreground);
}

void draw_pattern_line(TypPicture& picture, const TypDefinition& line, const Pair& colours) {
  const int rows = static_cast<int>(line.rows.size());
  const int top = (picture.height - rows) / 2;
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < picture.width; ++column)
      set_pixel(picture, column, top + row, pattern_pixel(line, colours, column, row));
}

void place_in_middle(TypPicture& picture, const TypPicture& icon) {
  const int left = (picture.width - icon.width) / 2;
  const int top = (picture.height - icon.height) / 2;
  for (int row = 0; row < icon.height; ++row)
    for (int column = 0; column < icon.width; ++column) {
      if (left + column < 0 || left + column >= picture.width || top + row < 0 || top + row >= picture.height)
        continue;
      const auto from = static_cast<std::size_t>(row * icon.width + column) * bytes_per_pixel;
      const auto to = static_cast<std::size_t>((top + row) * picture.width + left + column) * bytes_per_pixel;
      for (std::size_t byte = 0; byte < bytes_per_pixel; ++byte)
        picture.pixels[to + byte] = icon.pixels[from + byte];
    }
}

}  // namespace

TypPicture point_picture(const TypDefinition& definition, TypLight light) {
  const bool has_own_night = light == TypLight::night && definition.night_image;
  const std::optional<TypImage>& image = has_own_night ? definition.night_image : definition.day_image;
  if (!image) return {};
  TypPicture picture = empty_picture(image->width, image->height);
  std::size_t at = 0;
  for (int row = 0; row < image->height; ++row)
    for (int column = 0; column < image->width; ++column) {
      const std::uint16_t pixel = image->pixels[at++];
      if (pixel < image->colours.size()) set_pixel(picture, column, row, image->colours[pixel]);
    }
  return picture;
}

TypPicture line_picture(const TypDefinition& definition, TypLight light, int width, int height) {
  TypPicture picture = empty_picture(width, height);
  const Pair colours = colours_by(definition, light);
  if (definition.rows.empty())
    draw_solid_line(picture, definition, colours);
  else
    draw_pattern_line(picture, definition, colours);
  return picture;
}

TypPicture polygon_picture(const TypDefinition& definition, TypLight light, int width, int height) {
  TypPicture picture = empty_picture(width, height);
  const Pair colours = colours_by(definition, light);
  if (definition.rows.empty()) {
    fill_rows(picture, 0, picture.height, colours.foreground);
    return picture;
  }
  const int rows = static_cast<int>(definition.rows.size());
  for (int row = 0; row < picture.height; ++row)
    for (int column = 0; column < picture.width; ++column)
      set_pixel(picture, column, row, pattern_pixel(definition, colours, column, row % rows));
  return picture;
}

TypPicture drawbmp(RuleKind kind, const TypDefinition& definition, TypLight light, int width, int height) {
  if (!definition.damage.empty()) return empty_picture(width, height);
  if (kind == RuleKind::lines) return line_picture(definition, light, width, height);
  if (kind == RuleKind::polygons) return polygon_picture(definition, light, width, height);
  TypPicture picture = empty_picture(width, height);
  place_in_middle(picture, point_picture(definition, light));
  return picture;
}

}  // namespace ferrowen
