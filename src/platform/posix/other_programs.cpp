#include "platform/other_programs.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/error_text.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/spawn.hpp"

namespace ferrowen::platform {

// A file can be replaced here while others read it.
bool is_held_by_other(const std::string& /*path*/) { return false; }

int close_windows_titled(const std::vector<std::string>& /*parts*/) { return 0; }

bool wine_server_runs(const std::string& prefix) {
  struct stat status {};
  if (::stat(prefix.c_str(), &status) != 0) return false;
  // The server works in a folder that is named after the prefix's place on the disk.
  std::array<char, 64> folder = {};
  std::snprintf(folder.data(), folder.size(), "server-%lx-%lx", static_cast<unsigned long>(status.st_dev),
                static_cast<unsigned long>(status.st_ino));
  std::error_code error;
  for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code not_ours;
    const std::filesystem::path works_in = std::filesystem::read_symlink(entry->path() / "cwd", not_ours);
    if (!not_ours && works_in.filename() == folder.data()) return true;
  }
  return false;
}

std::string run_elevated(const std::string& program, const std::string& /*parameters*/,
                         const std::string& /*folder*/, const std::function<void()>& /*tick*/) {
  return program + ": this system has no such way to start a program";
}

std::string start_detached(const std::vector<std::string>& words, const std::string& folder,
                           const std::vector<std::pair<std::string, std::string>>& environment) {
  const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (!nowhere.is_open()) return last_error_text();
  SpawnPlan plan;
  plan.words = words;
  plan.environment = changed_environment(environment);
  plan.folder = folder;
  plan.output = nowhere.get();
  plan.detached = true;
  return spawn(plan).error;
}

}  // namespace ferrowen::platform
