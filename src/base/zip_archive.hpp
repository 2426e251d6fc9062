// Zip archives as height cells come in them and as mkgmap.jar is one: files that are stored or packed with
// "deflate", below 4 GB. The format is PKWARE's APPNOTE.TXT, sections 4.3 to 4.5.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

struct ZipEntry {
  std::string name;  // as stored, with its folders
  std::uint32_t size = 0, packed_size = 0, checksum = 0;
  std::uint32_t offset = 0;  // of its local header
  std::uint16_t method = 0;
  bool encrypted = false;
};

// The archive's directory. Its entries are claims: only unpacking shows whether they hold.
Result<std::vector<ZipEntry>> list_zip(std::string_view archive);
// The entry's bytes, exactly as many as it claims, with the right checksum. An entry that claims more than
// `limit` bytes is refused before anything is unpacked.
Result<std::string> unpack_zip_entry(std::string_view archive, const ZipEntry& entry, std::size_t limit);

}  // namespace ferrowen
