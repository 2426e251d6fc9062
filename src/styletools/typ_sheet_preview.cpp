// The drawings of a generated sheet as definitions, for pictures of it.
#include "styletools/colours.hpp"
#include "styletools/typ_sheet.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t colour_digits = 6;
constexpr std::uint32_t largest_plain_type = 0xFF;

TypColour colour_of(std::string_view digits) {
  const Rgb rgb = rgb_of_text(digits.substr(0, colour_digits)).value_or(Rgb{});
  return {rgb.red, rgb.green, rgb.blue, 0};
}

// "#1CA9DE" or "none".
std::optional<TypColour> written_colour(std::string_view text) {
  if (!text.starts_with("#")) return std::nullopt;
  return colour_of(text.substr(1));
}

void set_colours(TypDefinition& definition, const TypColour& first, const std::optional<TypColour>& second) {
  definition.colours = {first, second, false, first, second};
}

void set_pattern(TypDefinition& definition, const SheetPattern& pattern) {
  set_colours(definition, written_colour(pattern.colours[0]).value_or(TypColour{}),
              written_colour(pattern.colours[1]));
  for (const std::string& row : pattern.rows) {
    std::uint32_t bits = 0;
    for (std::size_t column = 0; column < static_cast<std::size_t>(pattern.width); ++column)
      if (column >= row.size() || row[column] == '0') bits |= 1U << column;
    definition.rows.push_back(bits);
  }
}

TypDefinition named(const SheetType& type) {
  TypDefinition definition;
  definition.type = static_cast<std::uint16_t>(type.type > largest_plain_type ? type.type >> 8 : type.type);
  definition.subtype = static_cast<std::uint8_t>(type.type > largest_plain_type ? type.type & 0xFF : 0);
  definition.key = type.key;
  if (!type.label.empty()) definition.labels.push_back({0, type.label});
  return definition;
}

TypDefinition line_definition(const SheetType& type) {
  TypDefinition definition = named(type);
  const LineDrawing drawing = line_drawing(type.type, type.is_motorway);
  if (drawing.pattern) {
    set_pattern(definition, *drawing.pattern);
    return definition;
  }
  const bool bordered = !drawing.border_colour.empty();
  set_colours(definition, colour_of(drawing.colour),
              bordered ? std::optional(colour_of(drawing.border_colour)) : std::nullopt);
  definition.line_width = drawing.width;
  if (bordered) definition.border_width = drawing.border;
  return definition;
}

TypDefinition polygon_definition(const SheetType& type, bool complete) {
  TypDefinition definition = named(type);
  definition.draw_order = 1;
  const PolygonDrawing drawing = polygon_drawing(type.type);
  if (drawing.pattern)
    set_pattern(definition, *drawing.pattern);
  else if (!drawing.colour.empty() || complete)
    set_colours(definition, colour_of(drawing.colour.empty() ? neutral_fill : drawing.colour), std::nullopt);
  else
    definition.damage = "no colour";
  return definition;
}

TypDefinition point_definition(const SheetType& type, const IconFiles& icons) {
  TypDefinition definition = named(type);
  const auto own = icons.find(type.key);
  const SheetPattern icon = own == icons.end() ? icon_drawing(type.type) : own->second;
  TypImage image{icon.width, static_cast<int>(icon.rows.size()), {}, {}, false, false};
  for (const std::string& colour : icon.colours)
    if (const auto read = written_colour(colour)) image.colours.push_back(*read);
  image.has_transparent = image.colours.size() < icon.colours.size();
  const bool first_is_colour = written_colour(icon.colours[0]).has_value();
  for (const std::string& row : icon.rows)
    for (const char pixel : row) {
      const bool is_colour = written_colour(icon.colours[pixel == '0' ? 0 : 1]).has_value();
      const std::size_t index = pixel == '0' || !first_is_colour ? 0 : 1;
      image.pixels.push_back(static_cast<std::uint16_t>(is_colour ? index : image.colours.size()));
    }
  definition.day_image = std::move(image);
  return definition;
}

}  // namespace

TypFile sheet_preview(const Sheet& sheet) {
  TypFile typ;
  typ.code_page = sheet_code_page;
  typ.family_id = sheet.family_id;
  typ.product_code = 1;
  const auto& [polygon_types, line_types, point_types] = sheet.types;
  auto& [polygon_definitions, line_definitions, point_definitions] = typ.definitions;
  for (const SheetType& type : polygon_types)
    polygon_definitions.push_back(polygon_definition(type, sheet.complete));
  for (const SheetType& type : line_types)
    line_definitions.push_back(line_definition(type));
  for (const SheetType& type : point_types)
    point_definitions.push_back(point_definition(type, sheet.icons));
  return typ;
}

}  // namespace ferrowen
