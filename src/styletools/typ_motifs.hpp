// The bitmaps of generated sheets: line patterns A to E, polygon patterns 1 to 8, shapes of icons.
#pragma once

#include <cstdint>

#include "styletools/typ_drawings.hpp"

namespace ferrowen {

SheetPattern line_pattern(char letter);
SheetPattern polygon_pattern(int number);

}  // namespace ferrowen
