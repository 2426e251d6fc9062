#include "platform/flushed_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/error_text.hpp"

namespace ferrowen::platform {

FlushedFile::~FlushedFile() {
  if (m_handle >= 0) ::close(static_cast<int>(m_handle));
}

std::string FlushedFile::open(const std::string& path) {
  constexpr mode_t readable_by_all = 0666;  // less what the user's mask takes away
  m_handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, readable_by_all);
  return m_handle < 0 ? last_error_text() : "";
}

std::string FlushedFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(static_cast<int>(m_handle), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return last_error_text();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return "";
}

std::string FlushedFile::finish() {
  const int number = static_cast<int>(m_handle);
  int result = 0;
  do {
    result = ::fsync(number);
  } while (result != 0 && errno == EINTR);
  const bool has_nothing_to_flush = errno == EINVAL || errno == ENOTSUP;
  if (result != 0 && !has_nothing_to_flush) return last_error_text();
  static_cast<void>(::posix_fadvise(number, 0, 0, POSIX_FADV_DONTNEED));
  // Late errors of the file system come with the close.
  m_handle = -1;
  return ::close(number) == 0 || errno == EINTR ? "" : last_error_text();
}

}  // namespace ferrowen::platform
