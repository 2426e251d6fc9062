#include "app/handed_over.hpp"

#include <atomic>
#include <thread>

#include "base/files.hpp"
#include "platform/paths.hpp"
#include "platform/process.hpp"

namespace ferrowen {

namespace {

constexpr std::chrono::milliseconds pause(50);

// Several files opened at once come as several starts: each leaves a file of its own.
std::string own_path(const ProgramFolder& folder) {
  static std::atomic<unsigned> count = 0;
  return folder / (std::string(file_name::handed_over) + "." + std::to_string(platform::own_process_id()) +
                   "-" + std::to_string(count++));
}

}  // namespace

bool hand_over(const ProgramFolder& folder, const std::string& file, std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const std::string path = own_path(folder);
  if (!safe_write(path, platform::absolute(file)).ok()) return false;
  while (file_exists(path)) {
    if (std::chrono::steady_clock::now() >= deadline) {
      static_cast<void>(remove_file(path));
      return false;
    }
    std::this_thread::sleep_for(pause);
  }
  return true;
}

std::string take_handed_over(const ProgramFolder& folder) {
  const std::string start = folder / file_name::handed_over;
  const std::string place = platform::folder_of(start);
  for (const std::string& name : list_files(place, {""})) {
    // What ends so is only being written.
    if (!name.starts_with(platform::name_of(start)) || name.ends_with(".new")) continue;
    const std::string path = platform::join(place, name);
    Result<std::string> file = read_file(path);
    if (file.ok() && remove_file(path).ok()) return file.value;
  }
  return "";
}

}  // namespace ferrowen
