#include "elevation/zip_directory.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "elevation/height_cells.hpp"
#include "platform/charset.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t end_record_size = 22;
constexpr std::size_t longest_comment = 0xFFFF;
constexpr std::size_t header_size = 46;
constexpr std::uint64_t largest_directory = 64ULL << 20;
constexpr std::uint64_t in_zip64_field = 0xFFFFFFFF;
constexpr std::uint64_t zip64_field = 1;
constexpr unsigned encrypted_flag = 1;
constexpr unsigned utf8_flag = 1U << 11U;
constexpr int first_code_page = 437;
constexpr unsigned made_on_unix = 3;
constexpr unsigned kind_mask = 0xF000;
constexpr unsigned link_kind = 0xA000;
constexpr std::string_view end_mark = "PK\5\6";
constexpr std::string_view header_mark = "PK\1\2";

using Entries = Result<std::vector<ArchiveItem>>;

// Little-endian number of `width` bytes; beyond the end of the bytes it reads 0.
std::uint64_t number_at(std::string_view bytes, std::size_t at, std::size_t width) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < width && at + i < bytes.size(); ++i)
    number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
  return number;
}

// Sizes of 4 GB and more stand in an extra field; ours is the first number of it.
std::uint64_t zip64_size(std::string_view extra) {
  while (extra.size() >= 4) {
    const std::uint64_t length = number_at(extra, 2, 2);
    if (number_at(extra, 0, 2) == zip64_field) return number_at(extra, 4, 8);
    if (length + 4 > extra.size()) break;
    extra.remove_prefix(static_cast<std::size_t>(length + 4));
  }
  return in_zip64_field;
}

// Names are UTF-8 where a flag says so, and as tools of Unix write them without it; else in the code page of
// the first archivers.
std::string name_text(std::string_view bytes, bool is_utf8) {
  if (is_utf8) return std::string(bytes);
  return platform::decode(bytes, first_code_page).value_or(std::string(bytes));
}

ArchiveItem entry_at(std::string_view header, std::size_t name_size, std::size_t extra_size) {
  ArchiveItem entry;
  const std::string_view name = header.substr(header_size, name_size);
  const std::uint64_t flags = number_at(header, 8, 2);
  const bool has_unix_mode = number_at(header, 5, 1) == made_on_unix;
  entry.name = name_text(name, (flags & utf8_flag) != 0 || (has_unix_mode && is_valid_utf8(name)));
  entry.size = number_at(header, 24, 4);
  if (entry.size == in_zip64_field)
    entry.size = zip64_size(header.substr(header_size + name_size, extra_size));
  entry.method = static_cast<unsigned>(number_at(header, 10, 2));
  entry.checksum = static_cast<std::uint32_t>(number_at(header, 16, 4));
  entry.is_folder = entry.name.ends_with('/') || entry.name.ends_with('\\');
  entry.is_encrypted = (flags & encrypted_flag) != 0;
  entry.is_link = has_unix_mode && ((number_at(header, 38, 4) >> 16) & kind_mask) == link_kind;
  return entry;
}

Entries entries_of(std::string_view directory, std::uint64_t count) {
  Entries entries;
  while (directory.starts_with(header_mark) && directory.size() >= header_size) {
    const auto name_size = static_cast<std::size_t>(number_at(directory, 28, 2));
    const auto extra_size = static_cast<std::size_t>(number_at(directory, 30, 2));
    const auto whole =
        header_size + name_size + extra_size + static_cast<std::size_t>(number_at(directory, 32, 2));
    if (whole > directory.size()) break;
    entries.value.push_back(entry_at(directory.substr(0, whole), name_size, extra_size));
    directory.remove_prefix(whole);
  }
  if (entries.value.size() != count)
    return failed<std::vector<ArchiveItem>>("has a damaged list of contents.");
  return entries;
}

bool leads_out(const std::string& name) {
  const std::string path = replace_all(name, "\\", "/");
  if (path.starts_with('/') || contains(path, ":") || contains(path, std::string_view("\0", 1))) return true;
  const std::vector<std::string> parts = split(path, "/");
  return std::find(parts.begin(), parts.end(), "..") != parts.end();
}

}  // namespace

Entries read_zip_directory(ByteSource& source) {
  const std::uint64_t size = source.size();
  const std::uint64_t tail_size = std::min<std::uint64_t>(size, end_record_size + longest_comment);
  const std::string tail = source.read(size - tail_size, static_cast<std::size_t>(tail_size));
  const std::size_t at = tail.rfind(end_mark);
  if (at == std::string::npos || tail.size() - at < end_record_size)
    return failed<std::vector<ArchiveItem>>("is no complete zip archive.");
  const std::string_view end = std::string_view(tail).substr(at);
  if (end.size() < end_record_size + number_at(end, 20, 2))
    return failed<std::vector<ArchiveItem>>("is no complete zip archive.");
  const std::uint64_t length = number_at(end, 12, 4);
  const std::uint64_t start = number_at(end, 16, 4);
  const std::uint64_t end_place = size - tail_size + at;
  if (length > largest_directory || start + length > end_place)
    return failed<std::vector<ArchiveItem>>(
        "has a damaged list of contents, or is too large to be unpacked here.");
  return entries_of(source.read(start, static_cast<std::size_t>(length)), number_at(end, 10, 2));
}

std::string zip_base_name(std::string_view name) {
  return std::string(name.substr(name.find_last_of("/\\") + 1));
}

std::string cell_of_entry(const ArchiveItem& entry) {
  const std::string base = zip_base_name(entry.name);
  return !entry.is_folder && ends_with_ignoring_case(base, ".hgt") ? cell_of_file(base) : "";
}

std::string zip_entry_problem(const ArchiveItem& entry) {
  const std::string quoted_name = "'" + entry.name + "'";
  if (leads_out(entry.name)) return quoted_name + " leads out of the folder";
  if (entry.is_link) return quoted_name + " is a link";
  // The archiver takes it for a part of the file's own name where that is allowed.
  if (platform::separator == '/' && contains(entry.name, "\\")) return quoted_name + " holds a backslash";
  if (entry.is_folder) return "";
  if (entry.is_encrypted) return quoted_name + " needs a password";
  const std::string base = zip_base_name(entry.name);
  if (base.empty()) return quoted_name + " is no file name";
  if (!cell_of_entry(entry).empty() && !is_height_size(entry.size))
    return quoted_name + " has a wrong size (" + std::to_string(entry.size) + " bytes)";
  return "";
}

}  // namespace ferrowen
