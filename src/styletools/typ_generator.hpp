// The way from a style to a TYP text on the disk: the checks with their messages, reading, writing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "styletools/style_reader.hpp"
#include "styletools/typ_sheet.hpp"

namespace ferrowen {

inline constexpr const char* first_family_id = "12345";  // what the family ID box starts with
inline constexpr const char* sheet_file = "temp.txt";    // in the program folder
inline constexpr const char* icon_subfolder = "bmps";    // in the program folder

struct SheetRequest {
  StyleLocation style;
  std::string family_id = first_family_id;
  // Neutral fills for polygons without a colour; a missing rule file is told and left out, and stops nothing.
  bool complete = false;
  std::string icon_folder;
};

// 1 to 65000, as a whole number; nothing else.
std::optional<int> valid_family_id(const std::string& text);
// "p", "l" and "g" for the rule files points, lines and polygons that the style has.
std::string kinds_present(const StyleLocation& style);

// All that a sheet takes from the disk. What a preview keeps while the family ID is typed.
struct SheetSource {
  std::string kinds;  // kinds_present
  SheetTypes types;
  IconFiles icons;
  std::vector<std::string> problems;  // "lines:12: ...", of the style and of the icons
  std::vector<std::string> files;     // paths of the style's files that were read
};
SheetSource read_sheet_source(const SheetRequest& request);
Sheet make_sheet(const SheetSource& source, const SheetRequest& request);
// "missing lines", "missing points", "missing polygons", in this order, for what kinds_present lacks.
std::vector<std::string> missing_files(const std::string& kinds);

// The sheet of a style, or nothing when a message has told why there is none.
std::optional<Sheet> create_sheet(const SheetRequest& request, Prompts& prompts);
// Writes the sheet in its code page; an existing file is replaced. The error names the path.
Status append_(const std::string& path, const Sheet& sheet);
// Hands a written sheet to the TYP editor of the settings, or tells where the file is.
void open_in_typ_editor(const Workspace& workspace, const std::string& path, Prompts& prompts);

}  // namespace ferrowen
