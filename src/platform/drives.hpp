// Drives that a person plugs in, and what the file system that holds a path cannot do.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen::platform {

struct Drive {
  std::string name;  // as the desktop shows it: its label, or its letter
  std::string path;  // its top folder
};

// Sticks, cards and devices that are in place now, in the order of their paths.
std::vector<Drive> removable_drives();

// Bytes of the largest file that the file system at `path` (or at the nearest folder above it) holds;
// nothing when it knows no limit that a map could reach.
std::optional<std::uint64_t> largest_file(const std::string& path);

inline constexpr std::uint64_t largest_file_on_fat = 0xFFFF'FFFF;

struct Mount {
  std::string device, folder, type;
};

// Lines of /proc/self/mounts. Lines with too few fields are left out.
std::vector<Mount> parse_mounts(std::string_view text);
// `device_is_removable`: what the system says about the disk of a device, by the name of that device.
bool is_removable_mount(const Mount& mount, bool device_is_removable);

}  // namespace ferrowen::platform
