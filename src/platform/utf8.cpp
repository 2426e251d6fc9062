#include "platform/utf8.hpp"

#include <cstdint>

namespace ferrowen::platform {
namespace {

struct LeadByte {
  std::size_t length = 0;
  unsigned char second_low = 0x80;  // overlong forms, surrogates and too large values show in the second byte
  unsigned char second_high = 0xBF;
};

LeadByte lead_byte(unsigned char byte) {
  if (byte < 0x80) return {1};
  if (byte < 0xC2) return {};
  if (byte < 0xE0) return {2};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte < 0xF0) return {3};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte < 0xF4) return {4};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {};
}

}  // namespace

std::size_t character_length(std::string_view text, std::size_t at) {
  const LeadByte lead = lead_byte(static_cast<unsigned char>(text[at]));
  if (lead.length == 0 || lead.length > text.size() - at) return 0;
  for (std::size_t i = 1; i < lead.length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    const unsigned char low = i == 1 ? lead.second_low : 0x80;
    const unsigned char high = i == 1 ? lead.second_high : 0xBF;
    if (byte < low || byte > high) return 0;
  }
  return lead.length;
}

bool is_utf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = character_length(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

}  // namespace ferrowen::platform
