#include "base/date_text.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "platform/files.hpp"

namespace ferrowen {

namespace {

constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::string_view stamp_format = "yyyy-mm-dd hh-nn-ss";
constexpr int first_year = 1900;

std::string padded(int number, std::size_t digits) {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return text;
}

std::string year_text(int year, std::size_t letters) {
  const std::string text = padded(year, 4);
  return letters > 2 ? text : text.substr(text.size() - 2);
}

std::string month_text(int month, std::size_t letters) {
  if (letters < 3) return padded(month + 1, letters);
  return std::string(months.at(static_cast<std::size_t>(std::clamp(month, 0, 11))));
}

// One run of the same letter; "" for a letter that stands for itself.
std::string part_text(const std::tm& date, char letter, std::size_t letters) {
  switch (letter) {
    case 'y':
      return year_text(date.tm_year + first_year, letters);
    case 'm':
      return month_text(date.tm_mon, letters);
    case 'd':
      return padded(date.tm_mday, letters);
    case 'h':
      return padded(date.tm_hour, letters);
    case 'n':
      return padded(date.tm_min, letters);
    case 's':
      return padded(date.tm_sec, letters);
    default:
      return "";
  }
}

std::size_t longest_part(char letter) { return letter == 'y' ? 4 : letter == 'm' ? 3 : 2; }

bool cannot_stand_in_name(char c) {
  constexpr std::string_view forbidden = "\\/:*?\"<>|";
  return static_cast<unsigned char>(c) < ' ' || c == '\x7f' || forbidden.find(c) != std::string_view::npos;
}

}  // namespace

std::string date_text(const std::tm& date, std::string_view format) {
  const std::string letters = lower_ascii(format);
  std::string text;
  for (std::size_t at = 0; at < letters.size();) {
    std::size_t end = at + 1;
    while (end < letters.size() && letters[end] == letters[at] && end - at < longest_part(letters[at]))
      ++end;
    const std::string part = part_text(date, letters[at], end - at);
    text += part.empty() ? std::string(format.substr(at, end - at)) : part;
    at = end;
  }
  return text;
}

std::string time_stamp(std::time_t seconds) { return date_text(platform::local_time(seconds), stamp_format); }

bool is_time_stamp(std::string_view text) {
  if (text.size() != stamp_format.size()) return false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool is_digit = text[at] >= '0' && text[at] <= '9';
    const bool is_mark = stamp_format[at] == '-' || stamp_format[at] == ' ';
    if (is_mark ? text[at] != stamp_format[at] : !is_digit) return false;
  }
  return true;
}

std::string as_file_name(std::string_view text) {
  std::string name(trim(text));
  std::replace_if(name.begin(), name.end(), cannot_stand_in_name, '-');
  while (name.ends_with('.') || name.ends_with(' '))
    name.pop_back();
  return name.empty() ? "-" : name;
}

}  // namespace ferrowen
