#include "base/utf16.hpp"

#include <cstdint>

#include "platform/utf8.hpp"

namespace ferrowen {

namespace {

constexpr std::uint32_t replacement = 0xFFFD;
constexpr std::uint32_t first_high = 0xD800, first_low = 0xDC00, behind_low = 0xE000;
constexpr std::uint32_t first_paired = 0x10000;
constexpr int half_bits = 10;
constexpr std::uint32_t half_mask = 0x3FF;

void append_utf8(std::string& text, std::uint32_t character) {
  const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += tail(0);
  } else if (character < first_paired) {
    text += static_cast<char>(0xE0 | (character >> 12));
    text += tail(6);
    text += tail(0);
  } else {
    text += static_cast<char>(0xF0 | (character >> 18));
    text += tail(12);
    text += tail(6);
    text += tail(0);
  }
}

std::uint32_t character_of(std::string_view utf8) {
  constexpr std::uint32_t lead_masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  std::uint32_t character = static_cast<unsigned char>(utf8[0]) & lead_masks[utf8.size()];
  for (const char c : utf8.substr(1))
    character = (character << 6) | (static_cast<unsigned char>(c) & 0x3FU);
  return character;
}

void append_unit(std::string& bytes, std::uint32_t unit) {
  bytes += static_cast<char>(unit & 0xFF);
  bytes += static_cast<char>((unit >> 8) & 0xFF);
}

}  // namespace

std::string utf8_of_utf16(std::string_view bytes) {
  const auto unit_at = [&](std::size_t at) -> std::uint32_t {
    if (at + 1 >= bytes.size()) return 0;
    return static_cast<unsigned char>(bytes[at]) |
           (static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8);
  };
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    std::uint32_t unit = unit_at(at);
    if (unit >= first_high && unit < first_low) {
      const std::uint32_t low = unit_at(at + 2);
      const bool paired = low >= first_low && low < behind_low;
      if (paired) at += 2;
      unit = paired ? first_paired + (((unit - first_high) << half_bits) | (low - first_low)) : replacement;
    } else if (unit >= first_low && unit < behind_low) {
      unit = replacement;
    }
    append_utf8(text, unit);
  }
  if (bytes.size() % 2 != 0) append_utf8(text, replacement);
  return text;
}

std::string utf16_of_utf8(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = platform::character_length(text, at);
    const std::uint32_t character = length == 0 ? replacement : character_of(text.substr(at, length));
    at += length == 0 ? 1 : length;
    if (character < first_paired) {
      append_unit(bytes, character);
    } else {
      append_unit(bytes, first_high + ((character - first_paired) >> half_bits));
      append_unit(bytes, first_low + ((character - first_paired) & half_mask));
    }
  }
  return bytes;
}

}  // namespace ferrowen
