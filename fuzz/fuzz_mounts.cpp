#include <cstdint>

#include "expect.hpp"
#include "platform/drives.hpp"

using namespace ferrowen::platform;
using ferrowen::fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const Mount& mount : parse_mounts(ferrowen::fuzz::text_of(data, size))) {
    expect(mount.folder.starts_with('/') && !mount.type.empty(), "a mount has a folder and a type");
    expect(!is_removable_mount(mount, false) || mount.device.starts_with("/dev/"), "a drive is a device");
  }
  return 0;
}
