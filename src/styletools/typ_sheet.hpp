// TYP sheets: a first TYP text for a style, that draws every type the style uses.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "styletools/style_rules.hpp"
#include "styletools/typ_drawings.hpp"
#include "styletools/typ_file.hpp"

namespace ferrowen {

inline constexpr int smallest_family_id = 1;
inline constexpr int largest_family_id = 65000;
inline constexpr int sheet_code_page = 1252;

struct SheetType {
  std::uint32_t type = 0;  // as the style writes it
  std::string key;
  std::string label;  // of its rule; "": none
  bool is_motorway = false;
};

using SheetTypes = std::array<std::vector<SheetType>, 3>;  // by rule kind, in the order of the style

struct Sheet {
  int family_id = 0;
  bool complete = false;  // polygons without a colour get a neutral fill, so that mkgmap accepts the text
  SheetTypes types;
  IconFiles icons;
};

// The distinct types of a rule file, each with the label of its first rule.
std::vector<SheetType> get_types(const StyleRules& rules);
// The value after the last "=" of a condition; "" when it is none that can be a label.
std::string rule_label(std::string_view condition);

// The sections, lines joined by CR LF, in UTF-8.
std::string createheader(int family_id);
std::string lines(const std::vector<SheetType>& types);
std::string polygons(const std::vector<SheetType>& types, bool complete);
std::string pois(const std::vector<SheetType>& types, const IconFiles& icons);
std::string draworder(const std::vector<SheetType>& polygon_types);
// Header, lines, polygons, points, draw order.
std::string sheet_text(const Sheet& sheet);
// How many polygons of the sheet have no colour of their own.
std::size_t count_without_colour(const Sheet& sheet);

// What the sheet draws, for a picture of it; the same types in the same order.
TypFile sheet_preview(const Sheet& sheet);

}  // namespace ferrowen
