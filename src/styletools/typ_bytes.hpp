// The bytes of a TYP file by their offset: little-endian numbers, 0 where the file has ended.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ferrowen {

class TypBytes {
 public:
  explicit TypBytes(std::string_view bytes) : m_bytes(bytes) {}
  [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
  [[nodiscard]] std::uint32_t dt(std::size_t at) const { return number(at, 1); }
  [[nodiscard]] std::uint32_t bit2(std::size_t at) const { return number(at, 2); }
  [[nodiscard]] std::uint32_t bit3(std::size_t at) const { return number(at, 3); }
  [[nodiscard]] std::uint32_t bit4(std::size_t at) const { return number(at, 4); }
  [[nodiscard]] std::uint32_t number(std::size_t at, unsigned width) const {
    std::uint32_t value = 0;
    for (unsigned index = 0; index < width && at + index < m_bytes.size(); ++index)
      value |= static_cast<std::uint32_t>(static_cast<unsigned char>(m_bytes[at + index])) << (8 * index);
    return value;
  }
  [[nodiscard]] std::string_view part(std::size_t from, std::size_t length) const {
    return from >= m_bytes.size() ? std::string_view{} : m_bytes.substr(from, length);
  }

 private:
  std::string_view m_bytes;
};

// Reads one definition from its start; past its end everything is 0 and `ran_out` is set.
class TypCursor {
 public:
  TypCursor(const TypBytes& bytes, std::size_t at, std::size_t end)
      : m_bytes(bytes), m_at(at), m_end(std::min(end, bytes.size())) {}
  [[nodiscard]] std::size_t at() const { return m_at; }
  [[nodiscard]] bool ran_out() const { return m_ran_out; }
  std::uint32_t number(unsigned width) {
    if (!take(width)) return 0;
    return m_bytes.number(m_at - width, width);
  }
  // The next bytes, or as many as are left.
  std::string_view part(std::size_t length) {
    const std::size_t from = m_at;
    const std::size_t there = std::min(length, m_end - std::min(m_at, m_end));
    take(length);
    return m_bytes.part(from, there);
  }

 private:
  bool take(std::size_t length) {
    if (m_at > m_end || length > m_end - m_at) {
      m_ran_out = true;
      m_at = m_end;
      return false;
    }
    m_at += length;
    return true;
  }
  const TypBytes& m_bytes;
  std::size_t m_at;
  std::size_t m_end;
  bool m_ran_out = false;
};

}  // namespace ferrowen
