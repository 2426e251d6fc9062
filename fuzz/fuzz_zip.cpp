#include <cstdint>

#include "base/inflate.hpp"
#include "base/zip_archive.hpp"
#include "contours/cell_file.hpp"
#include "expect.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t limit = 1U << 20U;
  const std::string_view bytes = fuzz::text_of(data, size);
  expect(inflate(bytes, limit).value.size() <= limit, "nothing larger than the limit is unpacked");
  const Result<std::vector<ZipEntry>> entries = list_zip(bytes);
  expect(entries.ok() || entries.value.empty(), "a damaged directory gives no entries");
  for (const ZipEntry& entry : entries.value) {
    const Result<std::string> unpacked = unpack_zip_entry(bytes, entry, limit);
    if (!unpacked.ok()) continue;
    expect(unpacked.value.size() == entry.size, "as many bytes as the entry claims");
    expect(crc32(unpacked.value) == entry.checksum, "the checksum fits");
  }
  static_cast<void>(cell_in_archive(bytes, {46, -7}));
  return 0;
}
