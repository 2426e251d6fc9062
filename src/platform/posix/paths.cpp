#include "platform/paths.hpp"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "platform/posix/spawn.hpp"

namespace ferrowen::platform {

bool is_absolute(std::string_view path) { return path.starts_with('/'); }

std::string absolute(const std::string& path) {
  if (path.empty() || is_absolute(path)) return path;
  std::error_code error;
  const std::string here = path_text(std::filesystem::current_path(error));
  if (error) return path;
  std::string_view rest = path;
  while (rest.starts_with("./"))
    rest.remove_prefix(2);
  return rest.empty() || rest == "." ? here : join(here, rest);
}

std::string executable_path() {
  std::error_code error;
  return path_text(std::filesystem::read_symlink("/proc/self/exe", error));
}

std::string home_folder() {
  if (const auto home = environment("HOME"); home && is_absolute(*home)) return *home;
  std::array<char, 4096> buffer = {};
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
    return "";
  return found->pw_dir;
}

std::filesystem::path file_system_path(std::string_view path) { return std::string(path); }

std::string path_text(const std::filesystem::path& path) { return path.native(); }

std::string user_data_folder() {
  // A relative path is to be ignored by the rules for this variable.
  if (const auto data = environment("XDG_DATA_HOME"); data && is_absolute(*data)) return *data;
  const std::string home = home_folder();
  return home.empty() ? "" : join(home, ".local/share");
}

std::string roaming_data_folder() { return user_data_folder(); }

std::string short_path(const std::string& path) { return path; }

std::optional<std::string> environment(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (value == nullptr) return std::nullopt;
  return value;
}

std::string find_program(const std::string& name) {
  return absolute(locate_program(name, search_path_of(changed_environment({})), ""));
}

}  // namespace ferrowen::platform
