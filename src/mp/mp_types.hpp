// Types of MP objects: what a person may type, how a line's type is shortened, which types mkgmap takes, and
// the names that people know them by.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

enum class MpKind : unsigned char { point, line, polygon };

// Without blanks at its ends and without a "0x" in front.
std::string typed_type(std::string_view text);
// True for a hexadecimal number of at least 1.
bool is_valid_type(std::string_view text);
// The message for a type that is not.
std::string invalid_type_message(std::string_view text);

// Type of a line or polygon as it is written: leading zeros removed; of exactly four characters only the
// first two stay.
struct LineType {
  std::string type;
  bool was_shortened = false;
};
LineType line_type(std::string_view text);
std::string shortened_type_message(std::string_view new_type);

// mkgmap gives up without a reason at a type that it does not take: a warning that says so, "" for a good
// one.
std::string refused_type_warning(MpKind kind, std::string_view type);

struct NamedType {
  std::string_view type;  // hexadecimal, lower case
  std::string_view name;
};
// The types that devices have signs for, in the order of their numbers.
const std::vector<NamedType>& named_types(MpKind kind);

}  // namespace ferrowen
