#include "platform/files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/error_text.hpp"
#include "platform/paths.hpp"
#include "platform/posix/descriptor.hpp"

namespace ferrowen::platform {
namespace {

bool write_all(const Descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// Pipes, devices and some network file systems have nothing to flush.
bool flush(const Descriptor& file) {
  int result = 0;
  do {
    result = ::fsync(file.get());
  } while (result != 0 && errno == EINTR);
  return result == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

// Late errors of the file system come with the close.
bool close_file(Descriptor& file) { return ::close(file.release()) == 0 || errno == EINTR; }

}  // namespace

std::string write_flushed(const std::string& path, std::string_view bytes) {
  constexpr mode_t readable_by_all = 0666;  // less what the user's mask takes away
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable_by_all));
  if (!file.is_open()) return last_error_text();
  if (!write_all(file, bytes) || !flush(file) || !close_file(file)) return last_error_text();
  return "";
}

std::string replace_file(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0) return last_error_text();
  const std::string folder = folder_of(to);
  const Descriptor opened(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // A folder that may be changed but not read cannot be flushed; the new file is in its place all the same.
  if (!opened.is_open() || flush(opened)) return "";
  return last_error_text();
}

std::optional<double> change_time(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return static_cast<double>(status.st_mtim.tv_sec) + static_cast<double>(status.st_mtim.tv_nsec) * 1e-9;
}

bool folder_is_writable(const std::string& folder) {
  std::string name = join(folder, ".ferrowen-XXXXXX");
  const Descriptor probe(::mkostemp(name.data(), O_CLOEXEC));
  if (!probe.is_open()) return false;
  return ::unlink(name.c_str()) == 0;
}

std::optional<std::uint64_t> free_space(const std::string& path) {
  struct statvfs volume {};
  std::string place = path.empty() ? "." : path;
  // A folder that is not made yet will lie on the volume of the nearest one that exists.
  while (::statvfs(place.c_str(), &volume) != 0) {
    const std::string above = folder_of(place);
    if ((errno != ENOENT && errno != ENOTDIR) || above == place || place == ".") return std::nullopt;
    place = above.empty() ? "." : above;
  }
  return static_cast<std::uint64_t>(volume.f_bavail) * volume.f_frsize;
}

bool is_link(const std::string& path) {
  std::string name = path;
  // With a separator at its end the name would be that of the folder behind the link.
  while (name.size() > 1 && name.ends_with('/'))
    name.pop_back();
  struct stat status {};
  return ::lstat(name.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

std::uint64_t link_count(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_nlink : 0;
}

std::tm local_time(std::time_t seconds) {
  std::tm result{};
  if (::localtime_r(&seconds, &result) == nullptr) return std::tm{};
  return result;
}

}  // namespace ferrowen::platform
