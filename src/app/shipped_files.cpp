#include "app/shipped_files.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/inflate.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view between = "\t";
constexpr std::size_t parts_of_entry = 3;

// Tells one shipped file from another without reading it.
std::string stamp_of(const std::string& path) {
  const double time = platform::change_time(path).value_or(0);
  return std::to_string(file_size(path)) + " " + number_text(time);
}

std::string checksum_of(std::string_view bytes) {
  return std::to_string(bytes.size()) + " " + std::to_string(crc32(bytes));
}

// "" when the size alone tells that the file is not the one of `wanted`: nothing is read then.
std::string checksum_like(const std::string& path, std::string_view wanted) {
  if (!wanted.starts_with(std::to_string(file_size(path)) + " ")) return "";
  return checksum_of(read_whole_file(path));
}

}  // namespace

ShippedFiles::ShippedFiles(std::string list_path)
    : m_path(std::move(list_path)), m_saved(read_whole_file(m_path)) {
  for (const std::string& line : split_lines(m_saved)) {
    const std::vector<std::string> parts = split(line, between);
    if (parts.size() == parts_of_entry) m_entries.push_back({parts[0], parts[1], parts[2]});
  }
}

ShippedFiles::Entry& ShippedFiles::entry_of(const std::string& name) {
  const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const Entry& entry) { return entry.name == name; });
  if (found != m_entries.end()) return *found;
  m_entries.push_back({name, "", ""});
  return m_entries.back();
}

Status ShippedFiles::update(const std::string& name, const std::string& source, const std::string& target) {
  Entry& entry = entry_of(name);
  const std::string stamp = stamp_of(source);
  const bool is_missing = !file_exists(target);
  if (!is_missing && entry.stamp == stamp) return {};
  const std::string shipped = checksum_of(read_whole_file(source));
  const bool is_as_copied =
      !entry.checksum.empty() && checksum_like(target, entry.checksum) == entry.checksum;
  if (is_missing || (is_as_copied && entry.checksum != shipped)) {
    const Status copied = copy_file(source, target);
    if (!copied.ok()) return is_missing ? copied : Status{};
    entry.checksum = shipped;
  } else if (checksum_like(target, shipped) == shipped) {
    entry.checksum = shipped;
  }
  entry.stamp = stamp;
  return {};
}

void ShippedFiles::save() const {
  std::string text;
  for (const Entry& entry : m_entries)
    text += entry.name + std::string(between) + entry.stamp + std::string(between) + entry.checksum + "\n";
  if (text != m_saved) static_cast<void>(safe_write(m_path, text));
}

}  // namespace ferrowen
