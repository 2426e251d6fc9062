#include <cstdint>

#include "elevation/merge.hpp"
#include "elevation/zip_directory.hpp"
#include "expect.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text_of(data, size);
  MemorySource source(bytes);
  const Result<std::vector<ArchiveItem>> entries = read_zip_directory(source);
  expect(entries.ok() || entries.value.empty(), "a refused archive gives no entries");
  for (const ArchiveItem& entry : entries.value) {
    const std::string base = zip_base_name(entry.name);
    expect(base.find_first_of("/\\") == std::string::npos, "the name of an unpacked file leads nowhere");
    expect(!zip_entry_problem(entry).empty() || base != "..", "no entry leads out");
  }
  for (const std::string& file : parse_merge_list(bytes, Dialect::batch))
    expect(!file.empty() && file.find('/') == std::string::npos, "a listed path is one of this system");
  return 0;
}
