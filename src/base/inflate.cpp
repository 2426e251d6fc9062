#include "base/inflate.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

namespace ferrowen {

namespace {

constexpr int longest_code = 15;
constexpr unsigned symbols_of_lengths = 288, symbols_of_distances = 30;
constexpr unsigned end_of_block = 256;

struct Range {
  std::uint16_t base;
  std::uint8_t extra_bits;
};
constexpr std::array<Range, 29> lengths = {
    {{3, 0},  {4, 0},  {5, 0},  {6, 0},   {7, 0},   {8, 0},   {9, 0},   {10, 0},  {11, 1}, {13, 1},
     {15, 1}, {17, 1}, {19, 2}, {23, 2},  {27, 2},  {31, 2},  {35, 3},  {43, 3},  {51, 3}, {59, 3},
     {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}};
constexpr std::array<Range, symbols_of_distances> distances = {
    {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},     {9, 2},     {13, 2},
     {17, 3},    {25, 3},    {33, 4},    {49, 4},     {65, 5},     {97, 5},    {129, 6},   {193, 6},
     {257, 7},   {385, 7},   {513, 8},   {769, 8},    {1025, 9},   {1537, 9},  {2049, 10}, {3073, 10},
     {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}}};

// The packed data as a row of bits, the lowest of each byte first. Behind the end come zeros; overrun() tells
// when one of them was taken.
class Bits {
 public:
  explicit Bits(std::string_view bytes) : m_bytes(bytes) {}

  void fill() {
    while (m_count <= 56) {
      if (m_at < m_bytes.size())
        m_held |= static_cast<std::uint64_t>(static_cast<unsigned char>(m_bytes[m_at])) << m_count;
      ++m_at;
      m_count += 8;
    }
  }
  [[nodiscard]] std::uint64_t held() const { return m_held; }
  void drop(unsigned count) {
    m_held >>= count;
    m_count -= count;
  }
  // At most 32 of them.
  unsigned take(unsigned count) {
    fill();
    const auto taken = static_cast<unsigned>(m_held & ((1ULL << count) - 1));
    drop(count);
    return taken;
  }
  // The bytes from the next whole byte on; nothing when there are fewer.
  std::optional<std::string_view> take_bytes(std::size_t count) {
    drop(m_count % 8);
    const std::size_t begin = m_at - m_count / 8;
    if (begin > m_bytes.size() || count > m_bytes.size() - begin) return std::nullopt;
    m_at = begin + count;
    m_held = 0;
    m_count = 0;
    return m_bytes.substr(begin, count);
  }
  [[nodiscard]] bool overrun() const { return m_at - m_count / 8 > m_bytes.size(); }

 private:
  std::string_view m_bytes;
  std::size_t m_at = 0;  // of the next byte to be held
  std::uint64_t m_held = 0;
  unsigned m_count = 0;
};

unsigned reversed(unsigned code, unsigned length) {
  unsigned result = 0;
  for (unsigned bit = 0; bit < length; ++bit)
    result |= (code >> bit & 1U) << (length - 1 - bit);
  return result;
}

// A prefix code: short codes are looked up at once, longer ones bit by bit.
class Code {
 public:
  // Lengths in bits by symbol, 0 for unused ones. False when they are too many for their lengths.
  bool build(const std::uint8_t* code_lengths, unsigned symbols);
  // The next symbol; nothing when no code has these bits. The bits must be filled.
  std::optional<unsigned> next(Bits& bits) const {
    const Entry entry = m_quick[bits.held() & (quick_size - 1)];
    if (entry.length == 0) return next_long(bits);
    bits.drop(entry.length);
    return entry.symbol;
  }

 private:
  static constexpr unsigned quick_bits = 10;
  static constexpr unsigned quick_size = 1U << quick_bits;
  struct Entry {
    std::uint16_t symbol = 0;
    std::uint8_t length = 0;
  };
  std::optional<unsigned> next_long(Bits& bits) const;

  std::array<Entry, quick_size> m_quick;
  std::array<std::uint16_t, longest_code + 1> m_count{};  // codes of each length
  std::vector<std::uint16_t> m_symbols;                   // ordered by their codes
};

bool Code::build(const std::uint8_t* code_lengths, unsigned symbols) {
  m_quick.fill({});
  m_count.fill(0);
  for (unsigned symbol = 0; symbol < symbols; ++symbol)
    ++m_count[code_lengths[symbol]];
  m_count[0] = 0;
  std::array<std::uint16_t, longest_code + 2> place{};
  std::array<unsigned, longest_code + 2> code{};
  for (unsigned length = 1; length <= longest_code; ++length) {
    if (code[length] + m_count[length] > 1U << length) return false;
    code[length + 1] = (code[length] + m_count[length]) << 1U;
    place[length + 1] = static_cast<std::uint16_t>(place[length] + m_count[length]);
  }
  m_symbols.assign(place[longest_code + 1], 0);
  for (unsigned symbol = 0; symbol < symbols; ++symbol) {
    const std::uint8_t length = code_lengths[symbol];
    if (length == 0) continue;
    m_symbols[place[length]++] = static_cast<std::uint16_t>(symbol);
    const unsigned bits = reversed(code[length]++, length);
    if (length > quick_bits) continue;
    for (unsigned entry = bits; entry < quick_size; entry += 1U << length)
      m_quick[entry] = {static_cast<std::uint16_t>(symbol), length};
  }
  return true;
}

std::optional<unsigned> Code::next_long(Bits& bits) const {
  unsigned code = 0, first = 0, place = 0;
  for (unsigned length = 1; length <= longest_code; ++length) {
    code = code << 1U | static_cast<unsigned>(bits.held() >> (length - 1) & 1U);
    if (code - first < m_count[length]) {
      bits.drop(length);
      return m_symbols[place + code - first];
    }
    place += m_count[length];
    first = (first + m_count[length]) << 1U;
  }
  return std::nullopt;
}

class Inflater {
 public:
  Inflater(std::string_view packed, std::size_t limit) : m_bits(packed), m_limit(limit) {}

  Result<std::string> run() {
    bool last = false;
    while (!last && m_error.empty()) {
      last = m_bits.take(1) != 0;
      read_block(m_bits.take(2));
      if (m_bits.overrun()) m_error = "the packed data ends early";
    }
    if (!m_error.empty()) return failed<std::string>(m_error);
    m_out.resize(m_size);
    return {std::move(m_out), ""};
  }

 private:
  void read_block(unsigned kind) {
    if (kind == 0) return read_stored();
    if (kind == 1 && use_fixed_codes()) return read_packed();
    if (kind == 2 && read_codes()) return read_packed();
    damaged();
  }
  void damaged() {
    if (m_error.empty()) m_error = "the packed data is damaged";
  }
  // Room for more bytes; false when the limit forbids them.
  bool make_room(std::size_t count) {
    if (count > m_limit - m_size) {
      m_error = "unpacks to more than " + std::to_string(m_limit) + " bytes";
      return false;
    }
    if (m_size + count > m_out.size())
      m_out.resize(std::min(m_limit, std::max<std::size_t>(2 * m_out.size(), m_size + count + 65536)));
    return true;
  }
  void read_stored();
  bool use_fixed_codes();
  bool read_codes();
  bool read_lengths(const Code& code, std::uint8_t* code_lengths, unsigned count);
  void read_packed();
  bool copy_earlier(unsigned length_symbol);

  Bits m_bits;
  std::size_t m_limit;
  std::string m_out;  // longer than what is in use
  std::size_t m_size = 0;
  Code m_lengths, m_distances;
  std::string m_error;
};

void Inflater::read_stored() {
  m_bits.drop(0);
  const std::optional<std::string_view> header = m_bits.take_bytes(4);
  if (!header) return damaged();
  const auto byte = [&](std::size_t at) {
    return static_cast<unsigned>(static_cast<unsigned char>((*header)[at]));
  };
  const unsigned length = byte(0) | byte(1) << 8U;
  if ((length ^ 0xFFFFU) != (byte(2) | byte(3) << 8U)) return damaged();
  const std::optional<std::string_view> bytes = m_bits.take_bytes(length);
  if (!bytes) {
    m_error = "the packed data ends early";
    return;
  }
  if (!make_room(length)) return;
  std::memcpy(m_out.data() + m_size, bytes->data(), length);
  m_size += length;
}

bool Inflater::use_fixed_codes() {
  std::array<std::uint8_t, symbols_of_lengths> code_lengths{};
  for (unsigned symbol = 0; symbol < symbols_of_lengths; ++symbol)
    code_lengths[symbol] = symbol < 144 ? 8 : symbol < 256 ? 9 : symbol < 280 ? 7 : 8;
  std::array<std::uint8_t, symbols_of_distances> distance_lengths{};
  distance_lengths.fill(5);
  return m_lengths.build(code_lengths.data(), symbols_of_lengths) &&
         m_distances.build(distance_lengths.data(), symbols_of_distances);
}

bool Inflater::read_codes() {
  static constexpr std::array<std::uint8_t, 19> order = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                         11, 4,  12, 3, 13, 2, 14, 1, 15};
  const unsigned length_count = m_bits.take(5) + 257;
  const unsigned distance_count = m_bits.take(5) + 1;
  const unsigned order_count = m_bits.take(4) + 4;
  if (length_count > symbols_of_lengths - 2 || distance_count > symbols_of_distances) return false;
  std::array<std::uint8_t, 19> order_lengths{};
  for (unsigned at = 0; at < order_count; ++at)
    order_lengths[order[at]] = static_cast<std::uint8_t>(m_bits.take(3));
  Code code;
  std::array<std::uint8_t, symbols_of_lengths + symbols_of_distances> code_lengths{};
  if (!code.build(order_lengths.data(), 19) ||
      !read_lengths(code, code_lengths.data(), length_count + distance_count))
    return false;
  return code_lengths[end_of_block] != 0 && m_lengths.build(code_lengths.data(), length_count) &&
         m_distances.build(code_lengths.data() + length_count, distance_count);
}

// Lengths of codes, themselves coded: 16 repeats the one before, 17 and 18 stand for runs of zeros.
bool Inflater::read_lengths(const Code& code, std::uint8_t* code_lengths, unsigned count) {
  for (unsigned at = 0; at < count;) {
    m_bits.fill();
    const std::optional<unsigned> symbol = code.next(m_bits);
    if (!symbol || m_bits.overrun()) return false;
    if (*symbol < 16) {
      code_lengths[at++] = static_cast<std::uint8_t>(*symbol);
      continue;
    }
    if (*symbol == 16 && at == 0) return false;
    const std::uint8_t repeated = *symbol == 16 ? code_lengths[at - 1] : std::uint8_t{0};
    const unsigned times = *symbol == 16   ? 3 + m_bits.take(2)
                           : *symbol == 17 ? 3 + m_bits.take(3)
                                           : 11 + m_bits.take(7);
    if (times > count - at) return false;
    std::fill_n(code_lengths + at, times, repeated);
    at += times;
  }
  return true;
}

void Inflater::read_packed() {
  while (true) {
    m_bits.fill();
    const std::optional<unsigned> symbol = m_lengths.next(m_bits);
    if (!symbol || m_bits.overrun()) return damaged();
    if (*symbol == end_of_block) return;
    if (*symbol > end_of_block) {
      if (!copy_earlier(*symbol - end_of_block - 1)) return damaged();
      continue;
    }
    if (!make_room(1)) return;
    m_out[m_size++] = static_cast<char>(*symbol);
  }
}

bool Inflater::copy_earlier(unsigned length_symbol) {
  if (length_symbol >= lengths.size()) return false;
  const unsigned length = lengths[length_symbol].base + m_bits.take(lengths[length_symbol].extra_bits);
  m_bits.fill();
  const std::optional<unsigned> symbol = m_distances.next(m_bits);
  if (!symbol || *symbol >= distances.size()) return false;
  const unsigned distance = distances[*symbol].base + m_bits.take(distances[*symbol].extra_bits);
  if (distance > m_size || !make_room(length)) return false;
  // Source and target may overlap: that repeats what was just written.
  char* target = m_out.data() + m_size;
  const char* source = target - distance;
  for (unsigned at = 0; at < length; ++at)
    target[at] = source[at];
  m_size += length;
  return true;
}

using CrcTables = std::array<std::array<std::uint32_t, 256>, 8>;

// One table per byte of a word, so that eight bytes are taken at once.
constexpr CrcTables make_crc_tables() {
  CrcTables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit)
      value = (value & 1U) != 0 ? value >> 1U ^ 0xEDB88320U : value >> 1U;
    tables[0][byte] = value;
  }
  for (std::size_t table = 1; table < tables.size(); ++table)
    for (std::size_t byte = 0; byte < 256; ++byte)
      tables[table][byte] = tables[table - 1][byte] >> 8U ^ tables[0][tables[table - 1][byte] & 0xFFU];
  return tables;
}
constexpr CrcTables crc_tables = make_crc_tables();

}  // namespace

Result<std::string> inflate(std::string_view packed, std::size_t limit) {
  return Inflater(packed, limit).run();
}

std::uint32_t crc32(std::string_view bytes, std::uint32_t before) {
  std::uint32_t value = ~before;
  const auto byte = [&](std::size_t at) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at]));
  };
  for (; bytes.size() >= 8; bytes.remove_prefix(8)) {
    const std::uint32_t low = value ^ (byte(0) | byte(1) << 8U | byte(2) << 16U | byte(3) << 24U);
    value = crc_tables[7][low & 0xFFU] ^ crc_tables[6][low >> 8U & 0xFFU] ^
            crc_tables[5][low >> 16U & 0xFFU] ^ crc_tables[4][low >> 24U] ^ crc_tables[3][byte(4)] ^
            crc_tables[2][byte(5)] ^ crc_tables[1][byte(6)] ^ crc_tables[0][byte(7)];
  }
  for (std::size_t at = 0; at < bytes.size(); ++at)
    value = value >> 8U ^ crc_tables[0][(value ^ byte(at)) & 0xFFU];
  return ~value;
}

}  // namespace ferrowen
