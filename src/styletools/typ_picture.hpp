// TYP drawings as pixels: point icons, line patterns and polygon fills, by day and by night.
#pragma once

#include <cstdint>
#include <vector>

#include "styletools/typ_file.hpp"

namespace ferrowen {

enum class TypLight : std::uint8_t { day, night };

// Rows from the top, four bytes per pixel: red, green, blue, opacity (0 shows what lies beneath).
struct TypPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;
};

// A point's icon in its own size; the day's where there is none for the night. Empty without an image.
TypPicture point_picture(const TypDefinition& definition, TypLight light);
// A straight line through the middle of the picture, with its border or its pattern repeated.
TypPicture line_picture(const TypDefinition& definition, TypLight light, int width, int height);
// An area filled with the polygon's colour or pattern.
TypPicture polygon_picture(const TypDefinition& definition, TypLight light, int width, int height);

// Any of the three; a point's icon stands in the middle. Nothing but transparent pixels for a definition
// that could not be read.
TypPicture drawbmp(RuleKind kind, const TypDefinition& definition, TypLight light, int width, int height);

}  // namespace ferrowen
