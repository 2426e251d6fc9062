#include "mp/mp_label.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "mp/markup.hpp"
#include "platform/charset.hpp"
#include "platform/utf8.hpp"

namespace ferrowen {

namespace {

constexpr int label_code_page = 1251;

std::string on_one_line(std::string_view label) {
  std::string line;
  for (const char c : label) {
    if (!is_blank(c))
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  if (line.ends_with(' ')) line.pop_back();
  return line;
}

bool is_ascii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) >= 0x80U; });
}

}  // namespace

EncodedLabel encode_label(std::string_view label) {
  const std::string line = on_one_line(label);
  if (is_ascii(line) || !is_valid_utf8(line)) return {line, ""};
  EncodedLabel result;
  std::string_view rest = line;
  while (!rest.empty()) {
    const platform::Encoded encoded = platform::encode(rest, label_code_page);
    result.bytes += encoded.bytes;
    if (!encoded.failed_at) break;
    const std::size_t length = platform::character_length(rest, *encoded.failed_at);
    const std::string_view letter = rest.substr(*encoded.failed_at, length);
    if (!contains(result.unencodable, letter)) result.unencodable += letter;
    result.bytes += '?';
    rest.remove_prefix(*encoded.failed_at + length);
  }
  return result;
}

}  // namespace ferrowen
