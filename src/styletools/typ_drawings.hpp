// What a generated TYP sheet draws for each Garmin type: the tables of widths, colours, patterns and icons.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

// A two-colour bitmap; '0' is the first colour. Rows may be shorter than the width: they are padded with "0".
struct SheetPattern {
  int width = 0;
  std::vector<std::string> colours;  // as written behind " c ": "#000000" or "none"
  std::vector<std::string> rows;
};

struct LineDrawing {
  int width = 0;
  int border = 0;
  std::string_view colour;         // six digits
  std::string_view border_colour;  // "": none
  std::optional<SheetPattern> pattern;
};

// One that has neither gets no "Xpm=".
struct PolygonDrawing {
  std::string_view colour;
  std::optional<SheetPattern> pattern;
};

// Types as styles write them: 0x01, 0x10f04.
LineDrawing line_drawing(std::uint32_t type, bool is_motorway);
PolygonDrawing polygon_drawing(std::uint32_t type);
// The fill for polygons without one, so that mkgmap accepts the sheet.
inline constexpr std::string_view neutral_fill = "E6E6E6";

// Icons of 16 x 16 pixels in two colours, by type key.
using IconFiles = std::map<std::string, SheetPattern>;
SheetPattern icon_drawing(std::uint32_t type);
// An icon as its file holds it: XPM lines, quoted or not; nothing when it is no 16 x 16 icon in two colours.
std::optional<SheetPattern> parse_icon(std::string_view text);

struct IconFolder {
  IconFiles icons;
  std::vector<std::string> problems;  // files that hold no such icon, or whose name is no type
};
// The icons of a folder: files named by their type ("2f0c.txt"). A missing folder holds none.
IconFolder bmp(const std::string& folder);

}  // namespace ferrowen
