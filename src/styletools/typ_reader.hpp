// Reads compiled TYP files. Never throws and never reads outside its bytes: damaged definitions keep their
// type with the damage named, and reading goes on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"
#include "styletools/typ_file.hpp"

namespace ferrowen {

// The error tells why these bytes are no TYP file at all; everything smaller is a finding.
Result<TypFile> read_typ(std::string_view bytes);
// The file at a path; the error names the path.
Result<TypFile> loadbinary(const std::string& path);

// "byte 12: ..." of what was not as it should be; behind the first 20 how many more there are.
std::vector<std::string> finding_lines(const TypFile& typ);
// The definition of a type by its key (its first one), or null.
const TypDefinition* find_definition(const TypFile& typ, RuleKind kind, std::string_view key);
// Subtypes of one type, in the order of the file.
std::vector<std::uint8_t> subtypes(const TypFile& typ, RuleKind kind, unsigned type);
// What a definition is called: its English label, else its first; "" without labels.
std::string label_text(const TypDefinition& definition);

}  // namespace ferrowen
