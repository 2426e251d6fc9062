#include "platform/drives.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "platform/files.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;

TEST_CASE("mounted drives: which are offered, and under which names") {
  const std::vector<Mount> mounts = parse_mounts(
      "/dev/sda2 / ext4 rw,relatime 0 0\n"
      "/dev/sda1 /boot/efi vfat rw 0 0\n"
      "/dev/sdb1 /media/me/GARMIN\\040\\303\\274 vfat rw 0 0\n"
      "tmpfs /run/media/me/x tmpfs rw 0 0\n"
      "/dev/sdc1 /mnt/card exfat rw 0 0\n"
      "/dev/sdd1 /srv ext4 rw 0 0\n"
      "short\n\n/dev/x relative vfat\n"
      "/dev/sde1 /run/media/me/back\\134slash\\9 ext4");
  REQUIRE(mounts.size() == 7);
  CHECK(mounts[2].folder == "/media/me/GARMIN \u00fc");
  CHECK(mounts[6].folder == R"(/run/media/me/back\slash\9)");
  std::vector<std::string> fixed, removable;
  for (const Mount& mount : mounts) {
    if (is_removable_mount(mount, false)) fixed.push_back(mount.device);
    if (is_removable_mount(mount, true)) removable.push_back(mount.device);
  }
  CHECK(fixed == std::vector<std::string>{"/dev/sdb1", "/dev/sde1"});
  CHECK(removable == std::vector<std::string>{"/dev/sda1", "/dev/sdb1", "/dev/sdc1", "/dev/sde1"});
}

TEST_CASE("the drives and limits of this machine can be asked for") {
  for (const Drive& drive : removable_drives())
    CHECK_FALSE((drive.name.empty() || drive.path.empty()));
  const ferrowen::test::TempFolder home;
  const auto limit = largest_file(home / "not/yet/there");
  CHECK(limit == largest_file(home.path()));
}

#ifndef _WIN32
TEST_CASE("a link is a link wherever it leads, with or without a separator at its end") {
  const ferrowen::test::TempFolder home;
  home.write("folder/file", "");
  std::filesystem::create_directory_symlink(home / "folder", home / "link");
  std::filesystem::create_symlink(home / "gone", home / "broken");
  for (const char* name : {"link", "link/", "broken"})
    CHECK(is_link(home / name));
  for (const char* name : {"folder", "folder/file", "link/file", "none"})
    CHECK_FALSE(is_link(home / name));
}
#endif
