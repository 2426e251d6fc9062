#include "pipeline/registry_turn.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <thread>

#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr auto pause_between_looks = std::chrono::milliseconds(50);

// Folders for temporary files are shared by all users; a file of somebody else could not be locked.
std::string lock_path() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) return "";
  const std::size_t user = std::hash<std::string>{}(platform::home_folder());
  return platform::join(platform::path_text(folder), "ferrowen-registry-" + std::to_string(user));
}

}  // namespace

Status RegistryTurn::take(Progress& progress, std::chrono::milliseconds longest) {
  using Result = platform::InstanceLock::Result;
  const std::string path = lock_path();
  const auto end = std::chrono::steady_clock::now() + longest;
  while (true) {
    const Result result = m_lock.acquire(path);
    if (result == Result::held) return {};
    if (result == Result::failed) return {path + ": " + m_lock.error()};
    progress.process_events();
    if (progress.stop_requested()) return {"Stopped while another program changes the registry."};
    if (std::chrono::steady_clock::now() > end)
      return {"Another run of this program has been changing the registry for too long."};
    std::this_thread::sleep_for(pause_between_looks);
  }
}

}  // namespace ferrowen
