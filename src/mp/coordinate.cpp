#include "mp/coordinate.hpp"

#include <charconv>
#include <cmath>

#include "base/text.hpp"

namespace ferrowen {

namespace {

std::optional<double> whole_number_text(std::string_view text) {
  double number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size() || !std::isfinite(number))
    return std::nullopt;
  return number;
}

// Digits with at most a sign and a decimal point: what every reader of MP files understands.
bool is_plain(std::string_view text) {
  return text.find_first_of("eExXpP") == std::string_view::npos && !text.empty();
}

std::string not_a_number(std::string_view name, std::string_view text) {
  constexpr std::size_t longest_shown = 40;
  std::string shown(text.substr(0, longest_shown));
  shown.resize(shown.size() - unfinished_utf8_tail(shown));
  return std::string(name) + " '" + shown + "' is no number; the point is left out";
}

// "" for a number from -largest to largest.
std::string check_value(std::string_view name, std::string_view& text, double largest,
                        RewrittenTexts& rewritten) {
  const std::optional<std::string_view> plain = plain_number(text, rewritten);
  if (!plain) return not_a_number(name, text);
  text = *plain;
  const double value = whole_number_text(text).value_or(largest + 1);
  if (value >= -largest && value <= largest) return "";
  return std::string(name) + " " + std::string(text) + " is not between -" + number_text(largest) + " and " +
         number_text(largest) + "; the point is left out";
}

}  // namespace

std::optional<std::string_view> plain_number(std::string_view text, RewrittenTexts& rewritten) {
  const std::optional<double> number = whole_number_text(text);
  if (number && is_plain(text)) return text;
  if (number) return rewritten.emplace_back(number_text(*number));
  std::string other = replace_all(text, ",", ".");
  if (other.starts_with('+')) other.erase(0, 1);
  if (other == text || other.starts_with('+') || !whole_number_text(other)) return std::nullopt;
  return is_plain(other) ? rewritten.emplace_back(other)
                         : rewritten.emplace_back(number_text(*whole_number_text(other)));
}

std::string check_coordinate(Coordinate& coordinate, RewrittenTexts& rewritten) {
  std::string problem = check_value("latitude", coordinate.latitude, largest_latitude, rewritten);
  if (!problem.empty()) return problem;
  return check_value("longitude", coordinate.longitude, largest_longitude, rewritten);
}

Position position_of(const Coordinate& coordinate) {
  return {whole_number_text(coordinate.latitude).value_or(0),
          whole_number_text(coordinate.longitude).value_or(0)};
}

bool needs_padding(std::string_view value) {
  constexpr std::size_t padded_size = 7;
  return value.size() == padded_size && value.find('.') != std::string_view::npos;
}

}  // namespace ferrowen
