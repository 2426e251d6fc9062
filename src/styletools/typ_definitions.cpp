// Definitions of lines and polygons: colour scheme, bitmap, widths.
#include "styletools/typ_definitions.hpp"

#include "styletools/typ_definition_parts.hpp"

namespace ferrowen {

namespace {

// Colour-scheme bits.
constexpr std::uint32_t own_night_colours = 1;
constexpr std::uint32_t no_day_background = 2;
constexpr std::uint32_t no_night_background = 4;
constexpr std::uint32_t polygon_bitmap = 8;

// Flags of a polygon's first byte, of a line's second byte.
constexpr std::uint32_t polygon_labels = 0x10;
constexpr std::uint32_t polygon_font = 0x20;
constexpr std::uint32_t line_labels = 1;
constexpr std::uint32_t line_ignores_direction = 2;
constexpr std::uint32_t line_font = 4;
constexpr unsigned line_scheme_mask = 7;
constexpr unsigned line_rows_shift = 3;
constexpr std::size_t polygon_rows = 32;
constexpr unsigned bytes_per_row = 4;

TypColours read_colours(TypCursor& cursor, std::uint32_t scheme) {
  TypColours colours;
  colours.day_foreground = read_colour(cursor);
  if (!(scheme & no_day_background)) colours.day_background = read_colour(cursor);
  colours.own_night = (scheme & own_night_colours) != 0;
  if (!colours.own_night) {
    colours.night_foreground = colours.day_foreground;
    colours.night_background = colours.day_background;
    return colours;
  }
  colours.night_foreground = read_colour(cursor);
  if (!(scheme & no_night_background)) colours.night_background = read_colour(cursor);
  return colours;
}

std::vector<std::uint32_t> read_rows(TypCursor& cursor, std::size_t count) {
  std::vector<std::uint32_t> rows;
  for (std::size_t row = 0; row < count && !cursor.ran_out(); ++row)
    rows.push_back(cursor.number(bytes_per_row));
  return rows;
}

// A bitmap that was cut off is no drawing; its labels would be read from the wrong place.
bool has_ended(DefinitionReader& reader) {
  if (!reader.cursor.ran_out()) return false;
  reader.definition.damage = "the drawing goes beyond the end of its definition";
  reader.definition.rows.clear();
  return true;
}

void read_widths(DefinitionReader& reader, std::uint32_t scheme) {
  TypDefinition& line = reader.definition;
  line.line_width = static_cast<int>(reader.cursor.number(1));
  if ((scheme & ~own_night_colours) == (no_day_background | no_night_background)) return;
  const int total = static_cast<int>(reader.cursor.number(1));
  line.border_width = std::max(0, total - line.line_width) / 2;
}

}  // namespace

void polygon_bmp(DefinitionReader& reader, std::uint32_t flags, std::uint8_t scheme) {
  reader.definition.scheme = scheme;
  reader.cursor.number(1);
  reader.definition.colours = read_colours(reader.cursor, scheme);
  if (scheme & polygon_bitmap) reader.definition.rows = read_rows(reader.cursor, polygon_rows);
  if (has_ended(reader)) return;
  read_labels_and_font(reader, (flags & polygon_labels) != 0, (flags & polygon_font) != 0);
}

void line_bmp(DefinitionReader& reader) {
  const std::uint32_t first = reader.cursor.number(1);
  const std::uint32_t flags = reader.cursor.number(1);
  const std::uint32_t scheme = first & line_scheme_mask;
  reader.definition.scheme = static_cast<std::uint8_t>(scheme);
  reader.definition.follows_direction = !(flags & line_ignores_direction);
  reader.definition.colours = read_colours(reader.cursor, scheme);
  reader.definition.rows = read_rows(reader.cursor, first >> line_rows_shift);
  if (first >> line_rows_shift == 0) read_widths(reader, scheme);
  if (has_ended(reader)) return;
  read_labels_and_font(reader, (flags & line_labels) != 0, (flags & line_font) != 0);
}

}  // namespace ferrowen
