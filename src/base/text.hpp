// Text helpers: bytes in, bytes out. Case and character classes are ASCII only, so UTF-8 passes unharmed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

inline constexpr std::string_view crlf = "\r\n";

// Lines of a text that ends its lines with CR LF or LF; the text behind the last line end is a line too,
// unless it is empty.
std::vector<std::string> split_lines(std::string_view text);
std::vector<std::string> split(std::string_view text, std::string_view separator);
std::string join_texts(const std::vector<std::string>& parts, std::string_view separator);
std::string replace_all(std::string_view text, std::string_view from, std::string_view to);
// Runs of two or more blanks become one.
std::string collapse_blanks(std::string_view text);
// Without blanks, tabs, CR and LF at both ends.
std::string_view trim(std::string_view text);
std::string lower_ascii(std::string_view text);
std::string upper_ascii(std::string_view text);
bool equal_ignoring_case(std::string_view left, std::string_view right);
bool ends_with_ignoring_case(std::string_view text, std::string_view ending);
bool contains(std::string_view text, std::string_view part);
bool contains_ignoring_case(std::string_view text, std::string_view part);
bool is_digits(std::string_view text);
// LF alone becomes CR LF; CR LF stays.
std::string with_crlf(std::string_view text);
bool is_valid_utf8(std::string_view text);
// Number of bytes at the end of `text` that begin a UTF-8 character without finishing it.
std::size_t unfinished_utf8_tail(std::string_view text);

// Leading number of a text, leniently: blanks before it are skipped, what follows it is ignored, no number
// reads as 0. Decimal point only.
double lenient_number(std::string_view text);
long lenient_whole_number(std::string_view text);
// The whole text as a number, or nothing.
std::optional<double> exact_number(std::string_view text);
std::optional<long> exact_whole_number(std::string_view text);
// Shortest decimal text that reads back as the same number; never scientific, point as separator.
std::string number_text(double number);
std::string number_text(float number);
std::string fixed_text(double number, int decimals);

// A comma list is one text that starts and ends with a comma; "," is the empty list.
bool comma_list_holds(std::string_view list, std::string_view value);
void comma_list_add(std::string& list, std::string_view value);

}  // namespace ferrowen
