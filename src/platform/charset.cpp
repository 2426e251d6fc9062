#include "platform/charset.hpp"

#include "platform/code_page.hpp"
#include "platform/utf8.hpp"

namespace ferrowen::platform {
namespace {

constexpr int utf8_code_page = 65001;

Encoded encode_utf8(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = character_length(text, at);
    if (length == 0) return {std::string(text.substr(0, at)), at};
    at += length;
  }
  return {std::string(text), std::nullopt};
}

// Converters put look-alikes in some places (a yen sign becomes a backslash): only a character that comes
// back as itself has a place in the code page.
std::optional<std::string> encode_character(std::string_view character, const CodePage& page) {
  std::optional<std::string> bytes = page.from_utf8(character);
  if (!bytes || bytes->empty() || page.to_utf8(*bytes) != character) return std::nullopt;
  return bytes;
}

}  // namespace

Encoded encode(std::string_view utf8, int code_page) {
  if (code_page == utf8_code_page) return encode_utf8(utf8);
  const CodePage page(code_page);
  Encoded result;
  if (!page.is_known()) {
    result.failed_at = 0;
    return result;
  }
  result.bytes.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t length = character_length(utf8, at);
    if (length == 1) {
      result.bytes += utf8[at];
    } else {
      const auto bytes = length == 0 ? std::nullopt : encode_character(utf8.substr(at, length), page);
      if (!bytes) {
        result.failed_at = at;
        return result;
      }
      result.bytes += *bytes;
    }
    at += length;
  }
  return result;
}

std::optional<std::string> decode(std::string_view bytes, int code_page) {
  if (code_page == utf8_code_page) {
    if (!is_utf8(bytes)) return std::nullopt;
    return std::string(bytes);
  }
  const CodePage page(code_page);
  if (!page.is_known()) return std::nullopt;
  return page.to_utf8(bytes);
}

}  // namespace ferrowen::platform
