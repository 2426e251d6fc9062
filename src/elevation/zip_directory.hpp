// What a zip archive holds, from its central directory alone: nothing is unpacked.
// Format: https://pkware.cachefly.net/webdocs/casestudies/APPNOTE.TXT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"
#include "pipeline/tiles/byte_source.hpp"

namespace ferrowen {

struct ArchiveItem {
  std::string name;            // as stored, folders included, in UTF-8
  std::uint64_t size = 0;      // unpacked
  std::uint32_t checksum = 0;  // of the unpacked bytes, CRC-32
  unsigned method = 0;         // how it is packed: 0 not at all, 8 deflate
  bool is_folder = false;
  bool is_link = false;
  bool is_encrypted = false;
};

// The error is the end of a sentence that begins with the archive's name.
Result<std::vector<ArchiveItem>> read_zip_directory(ByteSource& source);

// Name behind the last separator of either kind.
std::string zip_base_name(std::string_view name);
// "N46W007.hgt" when the entry holds the heights of that cell, "" otherwise.
std::string cell_of_entry(const ArchiveItem& entry);
// Why an archive with this entry is not to be unpacked; "" when nothing speaks against it: a name that leads
// out of the folder, a link, a password, heights of a wrong size.
std::string zip_entry_problem(const ArchiveItem& entry);

}  // namespace ferrowen
