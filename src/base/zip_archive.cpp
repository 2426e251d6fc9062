#include "base/zip_archive.hpp"

#include <optional>

#include "base/inflate.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view end_mark("PK\x05\x06", 4);
constexpr std::string_view entry_mark("PK\x01\x02", 4);
constexpr std::string_view file_mark("PK\x03\x04", 4);
constexpr std::size_t end_size = 22, entry_size = 46, file_size = 30;
constexpr std::size_t longest_comment = 65535;
constexpr std::uint16_t stored = 0, deflated = 8;

// Little-endian numbers; `at` must lie inside.
std::uint16_t short_at(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[at]) |
                                    static_cast<unsigned char>(bytes[at + 1]) << 8);
}
std::uint32_t long_at(std::string_view bytes, std::size_t at) {
  return short_at(bytes, at) | static_cast<std::uint32_t>(short_at(bytes, at + 2)) << 16U;
}

// A header of fixed size at an offset; nothing when it is cut off or has another mark.
std::optional<std::string_view> header_at(std::string_view archive, std::size_t offset, std::size_t size,
                                          std::string_view mark) {
  if (offset > archive.size() || size > archive.size() - offset) return std::nullopt;
  const std::string_view header = archive.substr(offset, size);
  return header.starts_with(mark) ? std::optional(header) : std::nullopt;
}

// The end record stands at the end, with only a comment of stated length behind it.
std::optional<std::size_t> find_end(std::string_view archive) {
  if (archive.size() < end_size) return std::nullopt;
  const std::size_t last = archive.size() - end_size;
  const std::size_t first = last > longest_comment ? last - longest_comment : 0;
  for (std::size_t at = last + 1; at-- > first;) {
    if (header_at(archive, at, end_size, end_mark) && short_at(archive, at + 20) == last - at) return at;
  }
  return std::nullopt;
}

ZipEntry parse_entry(std::string_view header) {
  ZipEntry entry;
  entry.encrypted = (short_at(header, 8) & 1U) != 0;
  entry.method = short_at(header, 10);
  entry.checksum = long_at(header, 16);
  entry.packed_size = long_at(header, 20);
  entry.size = long_at(header, 24);
  entry.offset = long_at(header, 42);
  return entry;
}

// The packed bytes behind the entry's local header, whose name and extra field have lengths of their own.
std::optional<std::string_view> packed_bytes(std::string_view archive, const ZipEntry& entry) {
  const std::optional<std::string_view> header = header_at(archive, entry.offset, file_size, file_mark);
  if (!header) return std::nullopt;
  const std::size_t begin = entry.offset + file_size + short_at(*header, 26) + short_at(*header, 28);
  if (begin > archive.size() || entry.packed_size > archive.size() - begin) return std::nullopt;
  return archive.substr(begin, entry.packed_size);
}

}  // namespace

Result<std::vector<ZipEntry>> list_zip(std::string_view archive) {
  using Entries = std::vector<ZipEntry>;
  const std::optional<std::size_t> end = find_end(archive);
  if (!end) return failed<Entries>("is no whole zip archive");
  const std::size_t count = short_at(archive, *end + 10);
  std::size_t at = long_at(archive, *end + 16);
  Entries entries;
  for (std::size_t number = 0; number < count; ++number) {
    const std::optional<std::string_view> header = header_at(archive, at, entry_size, entry_mark);
    if (!header) return failed<Entries>("the directory of the zip archive is damaged");
    const std::size_t name_size = short_at(*header, 28);
    if (name_size > archive.size() - at - entry_size)
      return failed<Entries>("the directory of the zip archive is damaged");
    entries.push_back(parse_entry(*header));
    entries.back().name = archive.substr(at + entry_size, name_size);
    at += entry_size + name_size + short_at(*header, 30) + short_at(*header, 32);
  }
  return {std::move(entries), ""};
}

Result<std::string> unpack_zip_entry(std::string_view archive, const ZipEntry& entry, std::size_t limit) {
  const auto fail = [&](const std::string& reason) {
    return failed<std::string>(entry.name + ": " + reason);
  };
  if (entry.encrypted) return fail("is encrypted");
  if (entry.method != stored && entry.method != deflated)
    return fail("is packed with method " + std::to_string(entry.method) + ", not with deflate");
  if (entry.size > limit) return fail("too large (" + std::to_string(entry.size) + " bytes)");
  const std::optional<std::string_view> packed = packed_bytes(archive, entry);
  if (!packed) return fail("the zip archive is cut off or damaged");
  Result<std::string> bytes =
      entry.method == stored ? Result<std::string>{std::string(*packed), ""} : inflate(*packed, entry.size);
  if (!bytes.ok()) return fail(bytes.error);
  if (bytes.value.size() != entry.size) return fail("the packed data ends early");
  if (crc32(bytes.value) != entry.checksum) return fail("the checksum does not fit: the data is damaged");
  return bytes;
}

}  // namespace ferrowen
