// A whole compiled TYP file of 484 bytes: code page 1252, FID 4660, product 7; three polygons (solid, with
// labels and their colours, with a bitmap), two lines (with a border, with a bitmap), one point; three
// levels.
#pragma once

#include <string>
#include <string_view>

namespace ferrowen::test {

inline std::string bytes_of_hex(std::string_view hex) {
  std::string bytes;
  unsigned value = 0;
  int digits = 0;
  for (const char digit : hex) {
    if (digit == ' ') continue;
    value = value * 16 + static_cast<unsigned>(digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10);
    if (++digits % 2 == 0) {
      bytes += static_cast<char>(value);
      value = 0;
    }
  }
  return bytes;
}

inline std::string typ_file_bytes() {
  return bytes_of_hex(
      "9c004741524d494e20545950010000000000000000e40476010000520000004b010000250000009c000000a600000034"
      "120700c80100000300030000007001000003000600000042010000030009000000cb0100000500190000000000000000"
      "0000000000130000000000000000000000000000000000000000000000001b0000000000000000000000000000001b00"
      "000000000000000000000000063322113780ffbf1040201f04466f726573740001466f72ea74001a00307b4080ff0ecc"
      "bbaa0300008000ff00005555555555555555555555555555555555555555555555555555555555555555555555555555"
      "555555555555555555555555555555555555555555555555555555555555555555555555555555555555555555555555"
      "55555555555555555555555555555555555555555555555555555555555555555555200000000a04e421220003dea91c"
      "a0000005070d00526f6164001800000000ffffffffffffff3fc03fc0ffffff7f20000080021105101002100000ffc080"
      "00a4aaaaaaaaaaaa2aaa0055aaaa0055aaaa0055aaaa0055aaaa0055aaaa0055aaaa0055aaaa0055aaaa0055aaaa0055"
      "aaaa0055aaaa0055aaaa0055aaaaaaaaaa0d044675656c00ec0500010000000000000000000f11000000000000000050"
      "00000000");
}

inline void set_number(std::string& bytes, std::size_t at, std::size_t value, int width) {
  for (int index = 0; index < width; ++index)
    bytes[at + static_cast<std::size_t>(index)] = static_cast<char>(value >> (8 * index) & 0xFF);
}

}  // namespace ferrowen::test
