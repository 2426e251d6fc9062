// The bitmaps of TYP definitions as XPM lines.
#pragma once

#include <string>
#include <vector>

#include "styletools/typ_file.hpp"

namespace ferrowen {

// From "Xpm=" to the last row.
std::vector<std::string> xpm_lines(RuleKind kind, const TypDefinition& definition);
// A point's image behind "Xpm=" or "NightXpm=".
std::vector<std::string> xpm_lines(const std::string& key, const TypImage& image);

}  // namespace ferrowen
