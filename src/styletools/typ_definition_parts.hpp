// What the three kinds of definitions share.
#pragma once

#include "styletools/typ_definitions.hpp"

namespace ferrowen {

// Three bytes: blue, green, red.
TypColour read_colour(TypCursor& cursor);
void read_labels_and_font(DefinitionReader& reader, bool has_labels, bool has_font);

}  // namespace ferrowen
