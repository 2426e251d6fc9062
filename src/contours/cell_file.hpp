// Files of height cells: where a cell's file is, and its heights out of it.
#pragma once

#include <string>
#include <string_view>

#include "base/status.hpp"
#include "contours/cell.hpp"
#include "contours/height_grid.hpp"

namespace ferrowen {

// Full path of the cell's file in the folder: N46W007.hgt, else N46W007.zip, else N46W007.hgt.zip; then the
// same names in other letter case. "" when there is none.
std::string find_cell_file(const std::string& folder, Cell cell);

// The heights in a cell's file. An archive must hold this very cell. The error begins with the path.
Result<HeightGrid> load_cell(const std::string& path, Cell cell);
// The same from the bytes of an archive.
Result<std::string> cell_in_archive(std::string_view archive, Cell cell);

}  // namespace ferrowen
