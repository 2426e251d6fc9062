// A compiled TYP file as plain data: what it draws for which Garmin type, in which order.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "styletools/type_key.hpp"

namespace ferrowen {

struct TypColour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t transparency = 0;  // 0 opaque .. 15 invisible; above 0 in point images alone
  bool operator==(const TypColour&) const = default;
};

struct TypLabel {
  std::uint8_t language = 0;  // 0 unspecified, 1 French, 2 German, 4 English, ...
  std::string text;           // UTF-8
  bool operator==(const TypLabel&) const = default;
};

// How the label of an object is written on the map.
struct TypFont {
  std::uint8_t style = 0;  // 0 default, 1 no label, 2 small, 3 normal, 4 large
  std::optional<TypColour> day;
  std::optional<TypColour> night;
};

// Lines and polygons: one or two colours by day and by night; no background: transparent, or no border.
struct TypColours {
  TypColour day_foreground;
  std::optional<TypColour> day_background;
  bool own_night = false;  // else the night colours are those of the day
  TypColour night_foreground;
  std::optional<TypColour> night_background;
};

// An image of a point: one index per pixel, rows from the top; an index that is the number of colours is
// transparent.
struct TypImage {
  int width = 0;
  int height = 0;
  std::vector<TypColour> colours;
  std::vector<std::uint16_t> pixels;
  bool has_transparent = false;  // one more colour than the table holds, fully transparent
  bool true_colour = false;      // stored without a table; `colours` are those met
};

struct TypDefinition {
  std::uint16_t type = 0;
  std::uint8_t subtype = 0;
  std::string key;             // type_key
  std::size_t offset = 0;      // where the definition begins in the file
  std::string damage;          // why the drawing could not be read; empty: it could
  std::uint8_t scheme = 0;     // lines and polygons: the raw colour-scheme bits
  std::size_t draw_order = 0;  // polygons: level from 1 (drawn lowest); 0: no entry
  std::vector<TypLabel> labels;
  std::optional<TypFont> font;  // set when there is an extended label block
  // Lines and polygons.
  TypColours colours;
  std::vector<std::uint32_t> rows;  // bitmap, 32 pixels each; lowest bit is leftmost; set: foreground
  // Lines.
  int line_width = 0;               // of a solid line
  std::optional<int> border_width;  // set when the file stores a total width
  bool follows_direction = false;   // UseOrientation=Y
  // Points.
  std::optional<TypImage> day_image;
  std::optional<TypImage> night_image;
};

struct TypOrderEntry {
  std::uint16_t type = 0;
  std::uint8_t subtype = 0;
  bool operator==(const TypOrderEntry&) const = default;
};

// Something that was not as it should be; reading went on.
struct TypFinding {
  std::size_t offset = 0;  // in the file
  std::string text;
};

struct TypFile {
  int code_page = 0;  // of the labels; 0: none given
  int family_id = 0;
  int product_code = 0;
  std::array<std::vector<TypDefinition>, 3> definitions;  // by rule kind, in index order
  std::vector<std::vector<TypOrderEntry>> draw_order;     // [0] is level 1, drawn lowest
  std::vector<TypFinding> findings;

  [[nodiscard]] const std::vector<TypDefinition>& of(RuleKind kind) const {
    return definitions.at(static_cast<std::size_t>(kind));
  }
};

}  // namespace ferrowen
