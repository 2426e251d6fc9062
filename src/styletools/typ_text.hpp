// A TYP file as TYP text: the lines that describe each definition, and whole texts that mkgmap compiles
// again.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"
#include "styletools/typ_file.hpp"

namespace ferrowen {

// "1CA9DE".
std::string colour_text(const TypColour& colour);
// "0x2f0c": the type as styles and TYP texts write it.
std::string type_code(unsigned type, unsigned subtype);
// "[_polygon]", "[_line]", "[_point]".
std::string_view section_name(RuleKind kind);
// "Default", "Nolabel", "SmallFont", "Normal", "Large"; the number for a style without a name.
std::string font_style_name(unsigned style);

// "Type=" to the last row of "Xpm=", without the section lines.
std::vector<std::string> definition_lines(RuleKind kind, const TypDefinition& definition);

// The whole file, or one kind of it (polygons with the draw order), as UTF-8 with CR LF. What could not be
// read stands in it as a comment.
std::string typ_text(const TypFile& typ);
std::string typ_text(const TypFile& typ, RuleKind kind);
// The code page that the text of a file names: its own, or UTF-8 where this system does not know that.
int text_code_page(const TypFile& typ);

// What of the labels is lost or changed in the text of a file, a line each; a label that could not be read
// has "?" in its text and a comment above its section.
std::vector<std::string> text_losses(const TypFile& typ);

// The bytes of a TYP text in the code page that it names; the error tells the line and the character.
Result<std::string> encode_typ_text(std::string_view text, int code_page);

}  // namespace ferrowen
