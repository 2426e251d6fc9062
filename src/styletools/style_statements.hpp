// Cuts the lines of one file of a style into statements.
#pragma once

#include <vector>

#include "styletools/style_rules.hpp"

namespace ferrowen {

// Appends the statements of one file; brackets that are never closed are problems.
void read_statements(const StyleText& style, const StyleFile& file, std::vector<StyleStatement>& statements,
                     std::vector<StyleProblem>& problems);

}  // namespace ferrowen
