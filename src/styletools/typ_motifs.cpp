#include "styletools/typ_motifs.hpp"

#include <array>

namespace ferrowen {

namespace {

constexpr int pattern_size = 32;
constexpr int icon_size = 16;

using Rows = std::vector<std::string>;

// A motif repeated until it fills a pattern.
Rows tiled(const Rows& motif) {
  Rows rows;
  for (std::size_t row = 0; row < pattern_size; ++row) {
    const std::string& part = motif[row % motif.size()];
    std::string text;
    while (text.size() < pattern_size)
      text += part;
    rows.push_back(text.substr(0, pattern_size));
  }
  return rows;
}

const Rows trees = {"1111111111111111", "1110111111111111", "1100011111111111", "1000001111111111",
                    "1000001111111111", "1110111111111111", "1110111111111111", "1111111111111111",
                    "1111111111111111", "1111111111101111", "1111111111000111", "1111111110000011",
                    "1111111110000011", "1111111111101111", "1111111111101111", "1111111111111111"};
const Rows shrubs = {"1111111111111111", "1101111111111111", "1000111111111111", "1101111111111111",
                     "1111111111111111", "1111111111011111", "1111111110001111", "1111111111011111"};
const Rows reeds = {"1111111111111111", "1111111111111111", "1011011011111111", "1011011011111111",
                    "0000000000111111", "1111111111111111", "1111111111111111", "1111111111111111",
                    "1111111111111111", "1111111111111111", "1111111110110110", "1111111110110110",
                    "1111110000000000", "1111111111111111", "1111111111111111", "1111111111111111"};
const Rows crosses = {"1111111111111111", "1110111111111111", "1110111111111111", "1000001111111111",
                      "1110111111111111", "1110111111111111", "1110111111111111", "1111111111111111",
                      "1111111111111111", "1111111111101111", "1111111111101111", "1111111110000011",
                      "1111111111101111", "1111111111101111", "1111111111101111", "1111111111111111"};
const Rows flags = {"1111111111111111", "1011111111111111", "1000111111111111", "1000001111111111",
                    "1000111111111111", "1011111111111111", "1011111111111111", "1011111111111111",
                    "1111111111111111", "1111111110111111", "1111111110001111", "1111111110000011",
                    "1111111110001111", "1111111110111111", "1111111110111111", "1111111110111111"};
const Rows stripes = {"01111111", "10111111", "11011111", "11101111",
                      "11110111", "11111011", "11111101", "11111110"};
const Rows pluses = {"1111111111111111", "1111001111111111", "1111001111111111", "1100000011111111",
                     "1100000011111111", "1111001111111111", "1111001111111111", "1111111111111111"};
const Rows bays = {"0111111101111111", "0111111101111111", "0111111101111111", "0111111101111111",
                   "0111111101111111", "0111111101111111", "0000000000000000", "1111111111111111"};

enum class Shape : std::uint8_t { dot, ring, square, diamond, triangle, plus, drop };

bool is_inside(Shape shape, int column, int row) {
  // Counted in half pixels from the middle of the icon.
  const int across = 2 * column - (icon_size - 1);
  const int down = 2 * row - (icon_size - 1);
  const int square_of_distance = across * across + down * down;
  const int far_across = across < 0 ? -across : across;
  const int far_down = down < 0 ? -down : down;
  switch (shape) {
    case Shape::dot:
      return square_of_distance <= 50;
    case Shape::ring:
      return square_of_distance <= 120 && (square_of_distance >= 50 || square_of_distance <= 12);
    case Shape::square:
      return far_across <= 9 && far_down <= 9 &&
             (far_across >= 6 || far_down >= 6 || far_across + far_down <= 4);
    case Shape::diamond:
      return far_across + far_down <= 12;
    case Shape::triangle:
      return down >= -11 && down <= 11 && 2 * far_across <= down + 12;
    case Shape::plus:
      return (far_across <= 4 && far_down <= 12) || (far_down <= 4 && far_across <= 12);
    case Shape::drop:
      return down > -2 ? across * across + (down - 2) * (down - 2) <= 72 : 2 * far_across <= down + 14;
  }
  return false;
}

struct IconRow {
  std::uint32_t first;
  std::uint32_t last;
  Shape shape;
  std::string_view colour;
};

// By the first byte of the type.
constexpr std::array<IconRow, 14> icon_rows{{{0x01, 0x13, Shape::ring, "#3F3F3F"},
                                             {0x1c, 0x1e, Shape::triangle, "#C4136E"},
                                             {0x28, 0x28, Shape::dot, "#4F4F4F"},
                                             {0x2a, 0x2a, Shape::drop, "#FF8040"},
                                             {0x2b, 0x2b, Shape::square, "#0000A0"},
                                             {0x2c, 0x2d, Shape::diamond, "#C4136E"},
                                             {0x2e, 0x2e, Shape::square, "#C4136E"},
                                             {0x2f, 0x2f, Shape::square, "#0080C0"},
                                             {0x30, 0x30, Shape::plus, "#C00000"},
                                             {0x40, 0x4d, Shape::diamond, "#11A868"},
                                             {0x4e, 0x5f, Shape::dot, "#0080C0"},
                                             {0x64, 0x64, Shape::square, "#4F4F4F"},
                                             {0x65, 0x65, Shape::drop, "#0080C0"},
                                             {0x66, 0x66, Shape::triangle, "#804000"}}};

}  // namespace

SheetPattern line_pattern(char letter) {
  const std::string dashes = "00011111000111110001111100011111";
  const std::string whole = "00000000000000000000000000000000";
  switch (letter) {
    case 'A':
      return {pattern_size, {"#000000", "none"}, {dashes, dashes}};
    case 'B':
      return {pattern_size,
              {"#804000", "none"},
              {"0001111100000000001111100011111", "0001111100011111000111110000000",
               "0001111100000000001111100011111"}};
    case 'C':
      return {pattern_size, {"#269329", "none"}, {dashes, dashes}};
    case 'D': {
      const std::string row = "00000111111111110000011111111110";
      return {pattern_size, {"#0000ff", "none"}, {row, row, row}};
    }
    default:
      return {pattern_size,
              {"#000000", "#FFFFFF"},
              {whole, whole, "00000011111110000000001111111000", whole, whole}};
  }
}

SheetPattern polygon_pattern(int number) {
  switch (number) {
    case 1:
      return {pattern_size, {"#7FC060", "#BFFF80"}, tiled(trees)};
    case 2:
      return {pattern_size, {"#A9FF5B", "#DFFFBF"}, tiled(shrubs)};
    case 3:
      return {pattern_size, {"#0080C0", "none"}, tiled(reeds)};
    case 4:
      return {pattern_size, {"#4F4F4F", "#BFFF80"}, tiled(crosses)};
    case 5:
      return {pattern_size, {"#FFFFFF", "#A9FF5B"}, tiled(flags)};
    case 6:
      return {pattern_size, {"#A9FF5B", "#BFFF80"}, tiled(stripes)};
    case 7:
      return {pattern_size, {"#DCA3A3", "#FFFFFF"}, tiled(pluses)};
    default:
      return {pattern_size, {"#3F3F3F", "#DDDDDD"}, tiled(bays)};
  }
}

SheetPattern icon_drawing(std::uint32_t type) {
  // Extended points have their class in the middle byte, plain ones in the upper one.
  const std::uint32_t group = type > 0xFF ? type >> 8 : type;
  Shape shape = Shape::dot;
  std::string_view colour = "#4F4F4F";
  for (const IconRow& row : icon_rows)
    if (group >= row.first && group <= row.last) {
      shape = row.shape;
      colour = row.colour;
    }
  SheetPattern icon{icon_size, {std::string(colour), "none"}, {}};
  for (int row = 0; row < icon_size; ++row) {
    std::string text;
    for (int column = 0; column < icon_size; ++column)
      text += is_inside(shape, column, row) ? '0' : '1';
    icon.rows.push_back(std::move(text));
  }
  return icon;
}

}  // namespace ferrowen
