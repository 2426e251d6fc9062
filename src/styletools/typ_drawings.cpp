#include "styletools/typ_drawings.hpp"

#include <algorithm>
#include <array>

#include "styletools/typ_motifs.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view water = "B7F7FF";

struct LineRow {
  std::uint32_t first;
  std::uint32_t last;
  int width;
  int border;
  std::string_view colour;
  std::string_view border_colour;
  char pattern;  // ' ': none
};

constexpr LineRow motorway{0x01, 0x01, 5, 1, "1CA9DE", "0000A0", ' '};
// For types that the table does not know.
constexpr LineRow plain_line{0, 0, 1, 0, "808080", "", ' '};

constexpr std::array<LineRow, 21> line_rows{{motorway,
                                             {0x02, 0x02, 4, 1, "11A868", "", ' '},
                                             {0x03, 0x03, 4, 1, "C4136E", "", ' '},
                                             {0x04, 0x04, 4, 1, "ECC508", "", ' '},
                                             {0x05, 0x05, 3, 1, "FFFF00", "", ' '},
                                             {0x06, 0x06, 3, 1, "FFFFFF", "", ' '},
                                             {0x07, 0x07, 2, 1, "a0a0a0", "", ' '},
                                             {0x0a, 0x0a, 0, 0, "", "", 'A'},
                                             {0x0e, 0x0e, 0, 0, "", "", 'A'},
                                             {0x0f, 0x0f, 0, 0, "", "", 'B'},
                                             {0x16, 0x16, 0, 0, "", "", 'C'},
                                             {0x10, 0x10, 0, 0, "", "", 'D'},
                                             {0x0d, 0x0d, 0, 0, "", "", 'D'},
                                             {0x14, 0x14, 0, 0, "", "", 'E'},
                                             {0x20, 0x20, 1, 0, "FF8040", "", ' '},
                                             {0x21, 0x21, 1, 0, "FFBD9D", "", ' '},
                                             {0x22, 0x25, 2, 0, "FFBD9D", "", ' '},
                                             {0x27, 0x27, 14, 0, "0c0c0c", "", ' '},
                                             {0x18, 0x18, 4, 0, water, "", ' '},
                                             {0x1f, 0x1f, 8, 1, water, "", ' '},
                                             {0x26, 0x26, 8, 1, water, "", ' '}}};

struct FillRow {
  std::uint32_t first;
  std::uint32_t last;
  std::string_view colour;
  int pattern;  // 1 to 8; 0: none
};

constexpr std::array<FillRow, 21> fill_rows{{{0x01, 0x03, "DDDDDD", 0},
                                             {0x08, 0x08, "DCA3A3", 0},
                                             {0x0c, 0x0c, "BCA9A9", 0},
                                             {0x13, 0x13, "DFD1D6", 0},
                                             {0x14, 0x16, "BFFF80", 0},
                                             {0x17, 0x17, "8AD3AF", 0},
                                             {0x1e, 0x1f, "8AD3AF", 0},
                                             {0x0a, 0x0a, "FAFD86", 0},
                                             {0x28, 0x28, water, 0},
                                             {0x3b, 0x49, water, 0},
                                             {0x4c, 0x4c, water, 0},
                                             {0x0e, 0x0e, "CCCCCC", 0},
                                             // Eight digits: the last two are the opacity.
                                             {0x4b, 0x4b, "FFFFFFFF", 0},
                                             {0x50, 0x50, "", 1},
                                             {0x4f, 0x4f, "", 2},
                                             {0x51, 0x51, "", 3},
                                             {0x1a, 0x1a, "", 4},
                                             {0x18, 0x18, "", 5},
                                             {0x19, 0x19, "", 6},
                                             {0x0b, 0x0b, "", 7},
                                             {0x05, 0x06, "", 8}}};

template <typename Rows>
auto find_row(const Rows& rows, std::uint32_t type) {
  return std::find_if(rows.begin(), rows.end(),
                      [&](const auto& row) { return type >= row.first && type <= row.last; });
}

}  // namespace

LineDrawing line_drawing(std::uint32_t type, bool is_motorway) {
  const auto found = find_row(line_rows, type);
  const LineRow& row = is_motorway ? motorway : found == line_rows.end() ? plain_line : *found;
  LineDrawing drawing{row.width, row.border, row.colour, row.border_colour, std::nullopt};
  if (row.pattern != ' ') drawing.pattern = line_pattern(row.pattern);
  return drawing;
}

PolygonDrawing polygon_drawing(std::uint32_t type) {
  const auto row = find_row(fill_rows, type);
  if (row == fill_rows.end()) return {};
  PolygonDrawing drawing{row->colour, std::nullopt};
  if (row->pattern != 0) drawing.pattern = polygon_pattern(row->pattern);
  return drawing;
}

}  // namespace ferrowen
