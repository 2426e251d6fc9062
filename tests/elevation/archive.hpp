// Zip archives for tests: stored entries without their data, which is all that a look into the list needs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen::test {

struct ArchiveEntry {
  std::string name;
  std::uint32_t size = 2884802;
  std::uint32_t unix_mode = 0;
  unsigned flags = 0;
};

inline std::string little_endian(std::uint64_t number, std::size_t width) {
  std::string bytes;
  for (; width > 0; --width, number >>= 8)
    bytes += static_cast<char>(number & 0xFF);
  return bytes;
}

inline std::string archive_of(const std::vector<ArchiveEntry>& entries, std::string_view comment = "") {
  std::string directory;
  for (const ArchiveEntry& entry : entries) {
    directory += "PK\1\2" + little_endian(0x031E, 2) + little_endian(20, 2) + little_endian(entry.flags, 2) +
                 std::string(14, '\0') + little_endian(entry.size, 4) + little_endian(entry.name.size(), 2) +
                 std::string(8, '\0') + little_endian(std::uint64_t{entry.unix_mode} << 16, 4) +
                 std::string(4, '\0') + entry.name;
  }
  const std::string data = "local parts";
  return data + directory + "PK\5\6" + std::string(4, '\0') + little_endian(entries.size(), 2) +
         little_endian(entries.size(), 2) + little_endian(directory.size(), 4) +
         little_endian(data.size(), 4) + little_endian(comment.size(), 2) + std::string(comment);
}

}  // namespace ferrowen::test
