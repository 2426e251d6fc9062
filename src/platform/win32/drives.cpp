#include "platform/drives.hpp"

#include <windows.h>

#include <array>

#include "platform/paths.hpp"

namespace ferrowen::platform {
namespace {

constexpr int letters = 26;

struct Volume {
  bool known = false;
  std::string label, type;
};

Volume volume_of(const std::string& top) {
  std::array<char, MAX_PATH + 1> label = {};
  std::array<char, MAX_PATH + 1> type = {};
  const bool known = GetVolumeInformationA(top.c_str(), label.data(), label.size(), nullptr, nullptr, nullptr,
                                           type.data(), type.size()) != 0;
  return {known, label.data(), type.data()};
}

}  // namespace

std::vector<Drive> removable_drives() {
  std::vector<Drive> drives;
  const DWORD present = GetLogicalDrives();
  // A and B are disk drives: asking them would only make them rattle.
  for (int number = 2; number < letters; ++number) {
    if ((present & (1UL << static_cast<unsigned>(number))) == 0) continue;
    const std::string letter = std::string(1, static_cast<char>('A' + number)) + ":";
    const std::string top = letter + "\\";
    if (GetDriveTypeA(top.c_str()) != DRIVE_REMOVABLE) continue;
    // A card reader without a card is a drive too.
    const Volume volume = volume_of(top);
    if (volume.known) drives.push_back({volume.label.empty() ? letter : volume.label, top});
  }
  return drives;
}

std::optional<std::uint64_t> largest_file(const std::string& path) {
  std::array<char, MAX_PATH + 1> top = {};
  const std::string whole = absolute(path);
  if (GetVolumePathNameA(whole.c_str(), top.data(), top.size()) == 0) return std::nullopt;
  const Volume volume = volume_of(top.data());
  if (volume.type != "FAT32" && volume.type != "FAT") return std::nullopt;
  return largest_file_on_fat;
}

}  // namespace ferrowen::platform
