// Whether a style draws contour lines at all. Most public styles do not, and the map compiler says nothing.
#pragma once

#include <string>

#include "app/settings.hpp"

namespace ferrowen {

// True when the rules of the style, of the files that they include or of a style that it is based on speak of
// contours outside a comment. The built-in style does.
bool draws_contours(const Settings& settings);

}  // namespace ferrowen
