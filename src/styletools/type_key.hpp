// The three rule kinds and the key by which styles and TYP files name the same Garmin type.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ferrowen {

// Also the order of the rule files "polygons", "lines" and "points" wherever the three are walked.
enum class RuleKind : std::uint8_t { polygons, lines, points };
inline constexpr std::array<RuleKind, 3> rule_kinds{RuleKind::polygons, RuleKind::lines, RuleKind::points};

// "polygons", "lines", "points": the name of the rule file.
std::string_view rule_file_name(RuleKind kind);
// "Polygons", "Lines", "Points".
std::string_view kind_title(RuleKind kind);

// A hexadecimal text of one character with "0" in front; any other unchanged.
std::string f_mat(std::string_view hexadecimal);
// Upper-case hexadecimal digits without leading zeros.
std::string hexadecimal_text(std::uint32_t number);
// Five characters: type 0x01 is 00100, type 0x2f with subtype 0x0c is 02F0C, 0x10f with subtype 4 is 10F04.
std::string type_key(unsigned type, unsigned subtype);

}  // namespace ferrowen
