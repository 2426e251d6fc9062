#include "styletools/typ_xpm.hpp"

#include "styletools/typ_text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view pixel_characters =
    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view transparent = "none";
constexpr unsigned bitmap_width = 32;

std::string quoted_line(const std::string& text) { return "\"" + text + "\""; }

std::string header(std::size_t width, std::size_t height, std::size_t colours, std::size_t characters) {
  return quoted_line(std::to_string(width) + " " + std::to_string(height) + " " + std::to_string(colours) +
                     " " + std::to_string(characters));
}

std::string pixel_name(std::size_t index, std::size_t characters) {
  const std::size_t base = pixel_characters.size();
  if (characters == 1) return {pixel_characters[index]};
  return {pixel_characters[index / base % base], pixel_characters[index % base]};
}

std::string colour_line(const std::string& name, const std::optional<TypColour>& colour) {
  const std::string value = colour ? "#" + colour_text(*colour) : std::string(transparent);
  std::string line = quoted_line(name + " c " + value);
  if (colour && colour->transparency > 0) line += " alpha=" + std::to_string(colour->transparency);
  return line;
}

using ColourList = std::vector<std::optional<TypColour>>;

// The colours of a bitmap: two, or four where the night has its own.
ColourList bitmap_colours(const TypColours& colours) {
  if (!colours.own_night) return {colours.day_foreground, colours.day_background};
  return {colours.day_foreground, colours.day_background, colours.night_foreground, colours.night_background};
}

// A second colour of a solid drawing is the night's, or the border's where a border has a width.
ColourList solid_colours(RuleKind kind, const TypDefinition& definition) {
  const TypColours& colours = definition.colours;
  if (colours.own_night) {
    if (colours.day_background || colours.night_background) return bitmap_colours(colours);
    return {colours.day_foreground, colours.night_foreground};
  }
  const bool has_border =
      kind == RuleKind::lines && colours.day_background && definition.border_width.value_or(0) > 0;
  if (has_border) return {colours.day_foreground, colours.day_background};
  return {colours.day_foreground};
}

void add_colours(std::vector<std::string>& lines, const ColourList& colours) {
  for (std::size_t index = 0; index < colours.size(); ++index)
    lines.push_back(colour_line(pixel_name(index, 1), colours[index]));
}

std::string bitmap_row(std::uint32_t row) {
  std::string text;
  for (unsigned column = 0; column < bitmap_width; ++column)
    text += (row >> column & 1) ? '0' : '1';
  return text;
}

std::vector<std::string> true_colour_lines(const std::string& key, const TypImage& image) {
  std::vector<std::string> lines{
      key + header(static_cast<std::size_t>(image.width), static_cast<std::size_t>(image.height), 0, 0)};
  for (std::size_t at = 0; at < image.pixels.size();) {
    std::string row;
    for (int column = 0; column < image.width; ++column, ++at) {
      const std::uint16_t pixel = image.pixels[at];
      const bool is_colour = pixel < image.colours.size();
      const TypColour colour = is_colour ? image.colours[pixel] : TypColour{};
      row += "#" + colour_text(colour);
      const auto opacity = static_cast<std::uint32_t>(is_colour ? 255 - 17 * colour.transparency : 0);
      if (opacity < 255) row += f_mat(hexadecimal_text(opacity));
    }
    lines.push_back(quoted_line(row));
  }
  return lines;
}

}  // namespace

std::vector<std::string> xpm_lines(RuleKind kind, const TypDefinition& definition) {
  const bool solid = definition.rows.empty();
  const ColourList colours = solid ? solid_colours(kind, definition) : bitmap_colours(definition.colours);
  std::vector<std::string> lines{"Xpm=" +
                                 (solid ? header(0, 0, colours.size(), 0)
                                        : header(bitmap_width, definition.rows.size(), colours.size(), 1))};
  add_colours(lines, colours);
  for (const std::uint32_t row : definition.rows)
    lines.push_back(quoted_line(bitmap_row(row)));
  return lines;
}

std::vector<std::string> xpm_lines(const std::string& key, const TypImage& image) {
  if (image.true_colour) return true_colour_lines(key, image);
  const std::size_t colours = image.colours.size() + (image.has_transparent ? 1 : 0);
  const std::size_t characters = colours > pixel_characters.size() ? 2 : 1;
  std::vector<std::string> lines{key + header(static_cast<std::size_t>(image.width),
                                              static_cast<std::size_t>(image.height), colours, characters)};
  for (std::size_t index = 0; index < image.colours.size(); ++index)
    lines.push_back(colour_line(pixel_name(index, characters), image.colours[index]));
  if (image.has_transparent) lines.push_back(colour_line(pixel_name(image.colours.size(), characters), {}));
  for (std::size_t at = 0; at < image.pixels.size();) {
    std::string row;
    for (int column = 0; column < image.width; ++column, ++at)
      row += pixel_name(image.pixels[at], characters);
    lines.push_back(quoted_line(row));
  }
  return lines;
}

}  // namespace ferrowen
