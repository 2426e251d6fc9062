#include "platform/drives.hpp"

#include <algorithm>
#include <array>

namespace ferrowen::platform {
namespace {

// Where desktops put what is plugged in.
constexpr std::array<std::string_view, 2> media_folders = {"/media/", "/run/media/"};
constexpr std::array<std::string_view, 3> device_types = {"vfat", "exfat", "msdos"};

constexpr std::size_t octal_digits = 3;

bool is_octal(char c) { return c >= '0' && c <= '7'; }

bool is_octal_number(std::string_view text) {
  return text.size() == octal_digits && text[0] <= '3' && std::all_of(text.begin(), text.end(), is_octal);
}

// Blanks and backslashes stand as "\040" and "\134".
std::string without_escapes(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view digits = text.substr(at + 1, octal_digits);
    if (text[at] == '\\' && is_octal_number(digits)) {
      plain += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
      at += octal_digits;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

// The next field of a line; takes it away from the line.
std::string next_field(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  std::string field = without_escapes(line.substr(0, end));
  line.remove_prefix(std::min(end + 1, line.size()));
  return field;
}

}  // namespace

std::vector<Mount> parse_mounts(std::string_view text) {
  std::vector<Mount> mounts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    Mount mount;
    mount.device = next_field(line);
    mount.folder = next_field(line);
    mount.type = next_field(line);
    if (mount.folder.starts_with('/') && !mount.type.empty()) mounts.push_back(std::move(mount));
  }
  return mounts;
}

bool is_removable_mount(const Mount& mount, bool device_is_removable) {
  if (!mount.device.starts_with("/dev/")) return false;
  const auto is_inside = [&](std::string_view folder) { return mount.folder.starts_with(folder); };
  if (std::any_of(media_folders.begin(), media_folders.end(), is_inside)) return true;
  const bool is_device_type =
      std::find(device_types.begin(), device_types.end(), mount.type) != device_types.end();
  return is_device_type && device_is_removable;
}

}  // namespace ferrowen::platform
