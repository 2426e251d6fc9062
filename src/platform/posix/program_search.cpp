#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "platform/paths.hpp"
#include "platform/posix/spawn.hpp"

namespace ferrowen::platform {
namespace {

constexpr std::string_view default_search_path = "/usr/local/bin:/usr/bin:/bin";

// 0, or the reason why this path cannot be run.
int runnable_error(const std::string& path, const std::string& folder) {
  const std::string from_here = is_absolute(path) || folder.empty() ? path : join(folder, path);
  struct stat status {};
  if (::stat(from_here.c_str(), &status) != 0) return errno;
  if (!S_ISREG(status.st_mode)) return EACCES;
  return ::access(from_here.c_str(), X_OK) == 0 ? 0 : errno;
}

bool has_name(const std::string& entry, std::string_view name) {
  return entry.size() > name.size() && entry[name.size()] == '=' && entry.starts_with(name);
}

}  // namespace

std::vector<std::string> changed_environment(
    const std::vector<std::pair<std::string, std::string>>& changes) {
  std::vector<std::string> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
    entries.emplace_back(*entry);
  for (const auto& [name, value] : changes) {
    const auto is_old = [&name = name](const std::string& entry) { return has_name(entry, name); };
    entries.erase(std::remove_if(entries.begin(), entries.end(), is_old), entries.end());
    entries.emplace_back(name).append("=").append(value);
  }
  return entries;
}

std::string search_path_of(const std::vector<std::string>& environment) {
  constexpr std::string_view name = "PATH";
  for (const std::string& entry : environment)
    if (has_name(entry, name)) return entry.substr(name.size() + 1);
  return std::string(default_search_path);
}

std::string locate_program(const std::string& name, const std::string& search_path,
                           const std::string& folder) {
  int reason = ENOENT;
  if (name.find('/') != std::string::npos) {
    reason = runnable_error(name, folder);
    errno = reason;
    return reason == 0 ? name : "";
  }
  for (std::size_t at = 0; !name.empty() && at <= search_path.size();) {
    const std::size_t end = std::min(search_path.find(':', at), search_path.size());
    const std::string entry = end == at ? "." : search_path.substr(at, end - at);
    std::string candidate = join(entry, name);
    const int error = runnable_error(candidate, folder);
    if (error == 0) return candidate;
    if (error == EACCES) reason = error;
    at = end + 1;
  }
  errno = reason;
  return "";
}

}  // namespace ferrowen::platform
