// Zip archives as bytes, with every claim of their directory free to be wrong.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ferrowen::test {

struct ZipFile {
  std::string name, packed;
  std::uint16_t method;
  std::uint32_t size, checksum;
  std::uint16_t flags;
};

inline std::string little(std::uint32_t number, int bytes) {
  std::string text;
  for (int at = 0; at < bytes; ++at, number >>= 8U)
    text += static_cast<char>(number & 0xFFU);
  return text;
}

inline std::string zip_bytes(const std::vector<ZipFile>& files, const std::string& comment = "") {
  std::string archive, directory;
  for (const ZipFile& file : files) {
    const auto packed = static_cast<std::uint32_t>(file.packed.size());
    const auto name = static_cast<std::uint32_t>(file.name.size());
    const std::string common = little(20, 2) + little(file.flags, 2) + little(file.method, 2) + little(0, 4) +
                               little(file.checksum, 4) + little(packed, 4) + little(file.size, 4) +
                               little(name, 2) + little(0, 2);
    directory += "PK\x01\x02" + little(20, 2) + common + little(0, 10) +
                 little(static_cast<std::uint32_t>(archive.size()), 4) + file.name;
    archive += "PK\x03\x04" + common + file.name + file.packed;
  }
  const auto count = static_cast<std::uint32_t>(files.size());
  const auto begin = static_cast<std::uint32_t>(archive.size());
  return archive + directory + "PK\x05\x06" + little(0, 4) + little(count, 2) + little(count, 2) +
         little(static_cast<std::uint32_t>(directory.size()), 4) + little(begin, 4) +
         little(static_cast<std::uint32_t>(comment.size()), 2) + comment;
}

}  // namespace ferrowen::test
