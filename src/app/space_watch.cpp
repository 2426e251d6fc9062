#include "app/space_watch.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::uint64_t least_free_bytes = 64000;
constexpr double patience = 5;  // seconds

bool is_full(const std::string& folder) {
  const auto free = platform::free_space(folder);
  return free && *free < least_free_bytes;
}

}  // namespace

std::string full_folder(const std::vector<std::string>& folders) {
  const auto found = std::find_if(folders.begin(), folders.end(), is_full);
  return found == folders.end() ? "" : *found;
}

std::uint64_t bytes_in(const std::vector<std::string>& folders) {
  std::uint64_t bytes = 0;
  for (const std::string& folder : folders) {
    for (const std::string& name : list_files(folder, {""}))
      bytes += file_size(platform::join(folder, name));
  }
  return bytes;
}

bool SpaceWatch::is_stuck(double now, const std::string& full, std::uint64_t left) {
  if (full.empty() || full != m_full || left != m_left) {
    m_full = full;
    m_left = left;
    m_since = now;
  }
  return !full.empty() && now - m_since >= patience;
}

}  // namespace ferrowen
