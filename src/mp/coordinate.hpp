// A coordinate pair as text, the way a converter found it, and as numbers. The text is what is written: no
// digit of the source is lost or added on the way.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen {

struct Coordinate {
  std::string_view latitude, longitude;
};

struct Position {
  double latitude = 0, longitude = 0;  // degrees
};

inline constexpr double largest_latitude = 90;
inline constexpr double largest_longitude = 180;

// Texts that had to be rewritten (a decimal comma, a leading "+", an exponent); their addresses stay.
using RewrittenTexts = std::deque<std::string>;

// A number as the MP format can hold it: the text itself, or its rewritten form. Nothing when it is no finite
// number.
std::optional<std::string_view> plain_number(std::string_view text, RewrittenTexts& rewritten);
// What is wrong with a pair, for a person; "" when both are numbers within their ranges. A good pair is in
// its plain form afterwards.
std::string check_coordinate(Coordinate& coordinate, RewrittenTexts& rewritten);
// The numbers of a pair that was found good.
Position position_of(const Coordinate& coordinate);

// The deliberate padding: a value of exactly seven characters gets a "0" at its end ("12.3456" becomes
// "12.34560"). A value without a decimal point would become another number and stays.
bool needs_padding(std::string_view value);

}  // namespace ferrowen
