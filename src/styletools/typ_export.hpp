// TYP definitions as files for other programs: a table (csv) and one TYP text per kind for TYP editors.
#pragma once

#include <string>
#include <vector>

#include "base/prompts.hpp"
#include "base/status.hpp"
#include "styletools/typ_file.hpp"

namespace ferrowen {

// A heading line and one line per definition, separated by commas, CR LF, UTF-8.
std::string typ_csv(const TypFile& typ);

// The three files of an export "mine.tvkx": "mine_polygons.tvkx", "mine_lines.tvkx" and "mine_points.tvkx".
std::vector<std::string> editor_file_paths(const std::string& path);
// A path as a person typed it: with this ending where the name has none.
std::string with_ending(const std::string& path, const std::string& ending);
// Each holds the header and the definitions of its kind (the polygons also the draw order) as TYP text in the
// code page of the file. When one of them exists, "Overwrite?" is asked first; "No data" tells that there is
// nothing to write. True when all three were written.
bool export_editor_files(const TypFile& typ, const std::string& path, Prompts& prompts);

}  // namespace ferrowen
