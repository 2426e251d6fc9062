#include "base/text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace ferrowen {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Bytes of the UTF-8 character that a byte begins; 0 for a byte that begins none.
std::size_t utf8_length(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  if (first >= 0xF0 && first <= 0xF4) return 4;
  return 0;
}

bool is_continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// Second bytes that would spell an overlong form, a surrogate or a number above U+10FFFF.
bool second_byte_is_wrong(unsigned char first, unsigned char second) {
  return (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
         (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
}

template <typename Number>
std::string shortest_text(Number number) {
  char buffer[512];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed);
  if (error != std::errc{} || !std::isfinite(number)) return "0";
  return {buffer, end};
}

}  // namespace

std::vector<std::string> split_lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.emplace_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::vector<std::string> split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (std::size_t start = 0;;) {
    const std::size_t end = separator.empty() ? std::string_view::npos : text.find(separator, start);
    parts.emplace_back(text.substr(start, end == std::string_view::npos ? end : end - start));
    if (end == std::string_view::npos) return parts;
    start = end + separator.size();
  }
}

std::string join_texts(const std::vector<std::string>& parts, std::string_view separator) {
  std::string joined;
  for (const std::string& part : parts) {
    if (&part != parts.data()) joined += separator;
    joined += part;
  }
  return joined;
}

std::string replace_all(std::string_view text, std::string_view from, std::string_view to) {
  return join_texts(split(text, from), to);
}

std::string collapse_blanks(std::string_view text) {
  std::string collapsed;
  for (const char c : text) {
    if (c != ' ' || !collapsed.ends_with(' ')) collapsed += c;
  }
  return collapsed;
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && is_blank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back()))
    text.remove_suffix(1);
  return text;
}

std::string lower_ascii(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

std::string upper_ascii(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upper);
  return result;
}

bool equal_ignoring_case(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lower(a) == lower(b); });
}

bool ends_with_ignoring_case(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() &&
         equal_ignoring_case(text.substr(text.size() - ending.size()), ending);
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool contains_ignoring_case(std::string_view text, std::string_view part) {
  return contains(lower_ascii(text), lower_ascii(part));
}

bool is_digits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string with_crlf(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\n' && !result.ends_with('\r')) result += '\r';
    result += c;
  }
  return result;
}

bool is_valid_utf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto first = static_cast<unsigned char>(text[i]);
    const std::size_t length = utf8_length(first);
    if (length == 0 || i + length > text.size()) return false;
    if (length > 1 && second_byte_is_wrong(first, static_cast<unsigned char>(text[i + 1]))) return false;
    for (std::size_t k = 1; k < length; ++k) {
      if (!is_continuation(text[i + k])) return false;
    }
    i += length;
  }
  return true;
}

std::size_t unfinished_utf8_tail(std::string_view text) {
  for (std::size_t back = 1; back <= 3 && back <= text.size(); ++back) {
    const char c = text[text.size() - back];
    if (is_continuation(c)) continue;
    return utf8_length(static_cast<unsigned char>(c)) > back ? back : 0;
  }
  return 0;
}

double lenient_number(std::string_view text) {
  text = trim(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && std::isfinite(number) ? number : 0;
}

long lenient_whole_number(std::string_view text) {
  const double number = lenient_number(text);
  constexpr double limit = 2147483647.0;
  return static_cast<long>(std::clamp(number, -limit, limit));
}

std::optional<double> exact_number(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<long> exact_whole_number(std::string_view text) {
  long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string number_text(double number) { return shortest_text(number); }
std::string number_text(float number) { return shortest_text(number); }

std::string fixed_text(double number, int decimals) {
  char buffer[512];
  if (!std::isfinite(number)) number = 0;
  const auto [end, error] =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed, decimals);
  return error == std::errc{} ? std::string(buffer, end) : "0";
}

bool comma_list_holds(std::string_view list, std::string_view value) {
  return contains(list, "," + std::string(value) + ",");
}

void comma_list_add(std::string& list, std::string_view value) {
  if (list.empty()) list = ",";
  list += value;
  list += ',';
}

}  // namespace ferrowen
