// Small map files made by hand.
#pragma once

#include <string>
#include <string_view>

namespace ferrowen::test {

// A block of a PBF file: length, BlobHeader with type and data size, data.
inline std::string pbf_block(std::string_view type, std::string_view data) {
  std::string head = "\x0A";
  head += static_cast<char>(type.size());
  head += type;
  head += '\x18';
  head += static_cast<char>(data.size());  // below 128: one byte
  return std::string(3, '\0') + static_cast<char>(head.size()) + head + std::string(data);
}

inline std::string small_pbf() {
  return pbf_block("OSMHeader", "head") + pbf_block("OSMData", "first data") + pbf_block("OSMData", "second");
}

inline std::string small_o5m() {
  using namespace std::string_literals;
  // start mark, reset, a bounding box of 2 bytes, a node of 3 bytes, end mark
  return "\xFF\xE0\x04o5m2\xFF\xDB\x02zz\x10\x03nod\xFE"s;
}

}  // namespace ferrowen::test
