#include "app/handed_over.hpp"

#include <thread>

#include "base/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::chrono::milliseconds pause(50);

// False when it is still there at the deadline.
bool wait_until_gone(const std::string& path, std::chrono::steady_clock::time_point deadline) {
  while (file_exists(path)) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace

bool hand_over(const ProgramFolder& folder, const std::string& file, std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const std::string path = folder / file_name::handed_over;
  // Several files opened at once come as several starts, one behind the other.
  if (!wait_until_gone(path, deadline)) return false;
  if (!safe_write(path, platform::absolute(file)).ok()) return false;
  if (wait_until_gone(path, deadline)) return true;
  static_cast<void>(remove_file(path));
  return false;
}

std::string take_handed_over(const ProgramFolder& folder) {
  const std::string path = folder / file_name::handed_over;
  if (!file_exists(path)) return "";
  std::string file = read_whole_file(path);
  return remove_file(path).ok() ? file : "";
}

}  // namespace ferrowen
