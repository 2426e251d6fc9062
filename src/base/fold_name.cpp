#include "base/fold_name.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

namespace ferrowen {

namespace {

// Capital letters first to last, every `step`th of them: `shift` leads to the small one. From the simple case
// mappings of Unicode; letters whose small one is of another length in UTF-8 are left out.
struct Capitals {
  std::uint32_t first, last, step;
  int shift;
};
constexpr std::array<Capitals, 65> capitals = {{
    {0xC0, 0xD6, 1, 32},    {0xD8, 0xDE, 1, 32},    {0x100, 0x12E, 2, 1},    {0x132, 0x136, 2, 1},
    {0x139, 0x147, 2, 1},   {0x14A, 0x176, 2, 1},   {0x178, 0x178, 1, -121}, {0x179, 0x17D, 2, 1},
    {0x181, 0x181, 1, 210}, {0x182, 0x184, 2, 1},   {0x186, 0x186, 1, 206},  {0x187, 0x187, 1, 1},
    {0x189, 0x18A, 1, 205}, {0x18B, 0x18B, 1, 1},   {0x18E, 0x18E, 1, 79},   {0x18F, 0x18F, 1, 202},
    {0x190, 0x190, 1, 203}, {0x191, 0x191, 1, 1},   {0x193, 0x193, 1, 205},  {0x194, 0x194, 1, 207},
    {0x196, 0x196, 1, 211}, {0x197, 0x197, 1, 209}, {0x198, 0x198, 1, 1},    {0x19C, 0x19C, 1, 211},
    {0x19D, 0x19D, 1, 213}, {0x19F, 0x19F, 1, 214}, {0x1A0, 0x1A4, 2, 1},    {0x1A7, 0x1A7, 1, 1},
    {0x1A9, 0x1A9, 1, 218}, {0x1AC, 0x1AC, 1, 1},   {0x1AE, 0x1AE, 1, 218},  {0x1AF, 0x1AF, 1, 1},
    {0x1B1, 0x1B2, 1, 217}, {0x1B3, 0x1B5, 2, 1},   {0x1B7, 0x1B7, 1, 219},  {0x1B8, 0x1B8, 1, 1},
    {0x1BC, 0x1BC, 1, 1},   {0x1C4, 0x1C4, 1, 2},   {0x1C5, 0x1C5, 1, 1},    {0x1C7, 0x1C7, 1, 2},
    {0x1C8, 0x1C8, 1, 1},   {0x1CA, 0x1CA, 1, 2},   {0x1CB, 0x1DB, 2, 1},    {0x1DE, 0x1EE, 2, 1},
    {0x1F1, 0x1F1, 1, 2},   {0x1F2, 0x1F4, 2, 1},   {0x1F8, 0x21E, 2, 1},    {0x222, 0x232, 2, 1},
    {0x23B, 0x23B, 1, 1},   {0x246, 0x24E, 2, 1},   {0x386, 0x386, 1, 38},   {0x388, 0x38A, 1, 37},
    {0x38C, 0x38C, 1, 64},  {0x38E, 0x38F, 1, 63},  {0x391, 0x3AB, 1, 32},   {0x3C2, 0x3C2, 1, 1},
    {0x3D8, 0x3EE, 2, 1},   {0x400, 0x40F, 1, 80},  {0x410, 0x42F, 1, 32},   {0x460, 0x480, 2, 1},
    {0x48A, 0x4BE, 2, 1},   {0x4C0, 0x4C0, 1, 15},  {0x4C1, 0x4CD, 2, 1},    {0x4D0, 0x52E, 2, 1},
    {0x531, 0x556, 1, 48},
}};
// Latin letters with marks below or above, and those of Vietnamese.
constexpr std::array<Capitals, 2> long_capitals = {{{0x1E00, 0x1E94, 2, 1}, {0x1EA0, 0x1EFE, 2, 1}}};

template <std::size_t count>
std::uint32_t small_letter(const std::array<Capitals, count>& table, std::uint32_t letter) {
  const auto row =
      std::lower_bound(table.begin(), table.end(), letter,
                       [](const Capitals& capital, std::uint32_t wanted) { return capital.last < wanted; });
  if (row == table.end() || letter < row->first || (letter - row->first) % row->step != 0) return letter;
  return static_cast<std::uint32_t>(static_cast<int>(letter) + row->shift);
}

char byte_of(std::uint32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); }

std::uint32_t bits_of(char byte, std::uint32_t mask) { return static_cast<unsigned char>(byte) & mask; }

bool is_continuation(char byte) { return bits_of(byte, 0xC0) == 0x80; }

void fold_two(char* at) {
  const std::uint32_t letter = bits_of(at[0], 0x1F) << 6 | bits_of(at[1], 0x3F);
  const std::uint32_t small = small_letter(capitals, letter);
  at[0] = byte_of(0xC0 | small >> 6);
  at[1] = byte_of(0x80 | (small & 0x3F));
}

void fold_three(char* at) {
  const std::uint32_t letter = bits_of(at[0], 0x0F) << 12 | bits_of(at[1], 0x3F) << 6 | bits_of(at[2], 0x3F);
  const std::uint32_t small = small_letter(long_capitals, letter);
  at[1] = byte_of(0x80 | (small >> 6 & 0x3F));
  at[2] = byte_of(0x80 | (small & 0x3F));
}

}  // namespace

std::string fold_name(std::string_view text) {
  std::string folded(text);
  for (std::size_t i = 0; i < folded.size(); ++i) {
    const auto byte = static_cast<unsigned char>(folded[i]);
    if (byte >= 'A' && byte <= 'Z') folded[i] = static_cast<char>(byte - 'A' + 'a');
    if (byte < 0xC2) continue;
    const std::size_t left = folded.size() - i;
    if (byte < 0xE0 && left > 1 && is_continuation(folded[i + 1])) {
      fold_two(&folded[i]);
      i += 1;
    } else if (byte == 0xE1 && left > 2 && is_continuation(folded[i + 1]) && is_continuation(folded[i + 2])) {
      fold_three(&folded[i]);
      i += 2;
    }
  }
  return folded;
}

bool same_name(std::string_view left, std::string_view right) { return fold_name(left) == fold_name(right); }

}  // namespace ferrowen
