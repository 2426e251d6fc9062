#include "platform/drives.hpp"

#include <linux/magic.h>
#include <sys/statfs.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>

#include "platform/paths.hpp"

namespace ferrowen::platform {
namespace {

std::string read_text(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A partition tells nothing itself: its disk, the folder above, does.
bool device_is_removable(const std::string& device) {
  const std::string folder = "/sys/class/block/" + name_of(device);
  return read_text(folder + "/removable").starts_with('1') ||
         read_text(folder + "/../removable").starts_with('1');
}

}  // namespace

std::vector<Drive> removable_drives() {
  std::vector<Drive> drives;
  for (const Mount& mount : parse_mounts(read_text("/proc/self/mounts"))) {
    if (is_removable_mount(mount, device_is_removable(mount.device)))
      drives.push_back({name_of(mount.folder), mount.folder});
  }
  std::sort(drives.begin(), drives.end(),
            [](const Drive& left, const Drive& right) { return left.path < right.path; });
  return drives;
}

std::optional<std::uint64_t> largest_file(const std::string& path) {
  struct statfs volume {};
  std::string place = path.empty() ? "." : path;
  while (::statfs(place.c_str(), &volume) != 0) {
    const std::string above = folder_of(place);
    if ((errno != ENOENT && errno != ENOTDIR) || above == place || place == ".") return std::nullopt;
    place = above.empty() ? "." : above;
  }
  if (volume.f_type != MSDOS_SUPER_MAGIC) return std::nullopt;
  return largest_file_on_fat;
}

}  // namespace ferrowen::platform
