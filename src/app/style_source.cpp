#include "app/style_source.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::uint64_t largest_style_file = 64ULL << 20;
constexpr std::uint64_t largest_archive = 256ULL << 20;
constexpr std::string_view styles_in_archive = "styles/";
constexpr std::string_view own_styles[] = {
    "contours_ft", "control",     "default",     "empty",          "floodblocker", "landuse",
    "marine",      "noname",      "routes",      "routes-bicycle", "routes-bus",   "routes-ferry",
    "routes-foot", "routes-rail", "routes-road", "routes-ski",     "waters",
};

}  // namespace

std::string StyleSource::entry_name(const std::string& path) const {
  if (m_jar.empty() || path.size() <= m_jar.size() + 1 || !path.starts_with(m_jar)) return "";
  if (path[m_jar.size()] != platform::separator) return "";
  std::string name = path.substr(m_jar.size() + 1);
  std::replace(name.begin(), name.end(), platform::separator, '/');
  return name;
}

const std::map<std::string, ZipEntry>& StyleSource::entries() {
  if (m_entries) return *m_entries;
  m_entries.emplace();
  if (m_jar.empty() || folder_exists(m_jar) || !file_exists(m_jar)) return *m_entries;
  Result<std::string> bytes = read_file(m_jar, largest_archive);
  m_problem = bytes.error;
  m_bytes = std::move(bytes.value);
  if (!m_problem.empty()) return *m_entries;
  Result<std::vector<ZipEntry>> found = list_zip(m_bytes);
  if (!found.ok()) m_problem = m_jar + ": " + found.error;
  for (ZipEntry& entry : found.value) {
    std::string name = entry.name;
    if (name.starts_with(styles_in_archive)) m_entries->emplace(std::move(name), std::move(entry));
  }
  return *m_entries;
}

bool StyleSource::has_file(const std::string& path) {
  const std::string name = entry_name(path);
  if (name.empty()) return file_exists(path) && !folder_exists(path);
  return !name.ends_with('/') && entries().contains(name);
}

bool StyleSource::has_folder(const std::string& path) {
  const std::string name = entry_name(path);
  if (name.empty()) return folder_exists(path);
  const auto first = entries().lower_bound(name + "/");
  return first != entries().end() && first->first.starts_with(name + "/");
}

Result<std::string> StyleSource::read(const std::string& path) {
  const std::string name = entry_name(path);
  if (name.empty()) return read_file(path, largest_style_file);
  const auto entry = entries().find(name);
  if (entry == entries().end()) return {"", path + ": no such file"};
  Result<std::string> bytes = unpack_zip_entry(m_bytes, entry->second, largest_style_file);
  if (!bytes.ok()) bytes.error = path + ": " + bytes.error;
  return bytes;
}

std::string StyleSource::built_in(const std::string& style) {
  if (m_jar.empty() || style.empty()) return "";
  std::string folder = platform::join(platform::join(m_jar, "styles"), style);
  return has_folder(folder) ? folder : "";
}

bool StyleSource::is_closed_book(const std::string& style) {
  return entries().empty() &&
         std::find(std::begin(own_styles), std::end(own_styles), style) != std::end(own_styles);
}

}  // namespace ferrowen
