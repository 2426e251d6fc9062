#include "base/encoding.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "platform/charset.hpp"

namespace ferrowen {

namespace {

constexpr int utf8_code_page = 65001;
constexpr int ascii_code_page = 20127;

// Java reads argument files in its default charset.
int java_code_page() {
#ifdef _WIN32
  return platform::ansi_code_page();
#else
  return utf8_code_page;
#endif
}

int code_page_of(Consumer consumer) {
  switch (consumer) {
    case Consumer::java_arguments:
      return java_code_page();
    case Consumer::batch_script:
      return platform::oem_code_page();
    case Consumer::regedit4:
      return platform::ansi_code_page();
    case Consumer::ascii:
      return ascii_code_page;
    case Consumer::shell_script:
      break;
  }
  return utf8_code_page;
}

// The whole UTF-8 character at an offset, or the byte's number when it cannot be shown.
std::string character_at(std::string_view text, std::size_t offset) {
  const auto first = static_cast<unsigned char>(text[offset]);
  const bool is_control = first < ' ';  // not to be shown as it is
  for (std::size_t length = 1; !is_control && length <= 4 && offset + length <= text.size(); ++length) {
    if (is_valid_utf8(text.substr(offset, length)))
      return "'" + std::string(text.substr(offset, length)) + "'";
  }
  return "byte " + std::to_string(first);
}

std::string cannot_write(std::string_view text, std::size_t offset, int code_page, std::string_view what) {
  const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n');
  return std::string(what) + ": the character " + character_at(text, offset) + " in line " +
         std::to_string(line) + " cannot be written in code page " + std::to_string(code_page) + ".";
}

std::optional<std::size_t> first_not_ascii(std::string_view text) {
  const auto found = std::find_if(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
  if (found == text.end()) return std::nullopt;
  return static_cast<std::size_t>(found - text.begin());
}

}  // namespace

Result<std::string> encode_for(Consumer consumer, std::string_view text, std::string_view what) {
  const int code_page = code_page_of(consumer);
  if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos)
    return failed<std::string>(cannot_write(text, nul, code_page, what));
  const std::optional<std::size_t> high = first_not_ascii(text);
  if (!high) return {std::string(text), ""};
  if (consumer == Consumer::ascii) return failed<std::string>(cannot_write(text, *high, code_page, what));
  platform::Encoded encoded = platform::encode(text, code_page);
  if (encoded.failed_at) return failed<std::string>(cannot_write(text, *encoded.failed_at, code_page, what));
  return {std::move(encoded.bytes), ""};
}

std::string decode_tool_text(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  if (is_valid_utf8(bytes)) return std::string(bytes);
  return platform::decode(bytes, platform::ansi_code_page()).value_or(std::string(bytes));
}

std::string utf8_or_latin1(std::string_view line) {
  if (is_valid_utf8(line)) return std::string(line);
  std::string text;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

}  // namespace ferrowen
