#include "platform/files.hpp"

#include <algorithm>

#include "platform/error_text.hpp"
#include "platform/paths.hpp"
#include "platform/win32/handle.hpp"

namespace ferrowen::platform {
namespace {

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool write_all(const Handle& file, std::string_view bytes) {
  constexpr std::size_t most_at_once = 64U << 20U;
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), most_at_once));
    DWORD count = 0;
    if (WriteFile(file.get(), bytes.data(), wanted, &count, nullptr) == 0) return false;
    bytes.remove_prefix(count);
  }
  return true;
}

bool close_file(Handle& file) { return CloseHandle(file.release()) != 0; }

// Virus scanners and indexers hold a new file for a moment. A file that they hold while it is being removed
// denies access; so does a folder that nobody may write, which is why that is not always worth waiting for.
bool is_held(DWORD error) { return error == ERROR_SHARING_VIOLATION; }
bool may_be_held(DWORD error) { return is_held(error) || error == ERROR_ACCESS_DENIED; }

// `attempt` again after a pause while `may_pass` holds for what it fails with; whether it succeeded.
template <typename Attempt>
bool try_patiently(const Attempt& attempt, bool (*may_pass)(DWORD)) {
  constexpr int attempts = 5;
  constexpr DWORD pause_milliseconds = 50;
  for (int count = 1;; ++count) {
    if (attempt()) return true;
    const DWORD reason = GetLastError();
    if (count == attempts || !may_pass(reason)) {
      SetLastError(reason);
      return false;
    }
    Sleep(pause_milliseconds);
  }
}

}  // namespace

std::string write_flushed(const std::string& path, std::string_view bytes) {
  Handle file;
  // Opened, then emptied: making it anew would reset its attributes and fail for a hidden file.
  const auto open = [&] {
    file = Handle(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    return file.is_open();
  };
  if (!try_patiently(open, is_held)) return last_error_text();
  if (SetEndOfFile(file.get()) == 0 || !write_all(file, bytes) || FlushFileBuffers(file.get()) == 0 ||
      !close_file(file))
    return last_error_text();
  return "";
}

std::string replace_file(const std::string& from, const std::string& to) {
  const auto move = [&] {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  };
  return try_patiently(move, may_be_held) ? "" : last_error_text();
}

std::optional<double> change_time(const std::string& path) {
  constexpr std::uint64_t ticks_per_second = 10'000'000;
  constexpr double seconds_1601_to_1970 = 11'644'473'600.0;
  const Handle file(CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, share_all, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  FILETIME changed = {};
  if (!file.is_open() || GetFileTime(file.get(), nullptr, nullptr, &changed) == 0) return std::nullopt;
  const std::uint64_t ticks = (std::uint64_t{changed.dwHighDateTime} << 32U) | changed.dwLowDateTime;
  const double fraction = static_cast<double>(ticks % ticks_per_second) / ticks_per_second;
  return static_cast<double>(ticks / ticks_per_second) - seconds_1601_to_1970 + fraction;
}

bool folder_is_writable(const std::string& folder) {
  constexpr int attempts = 20;
  for (int i = 0; i < attempts; ++i) {
    const std::string name =
        "ferrowen-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(i) + ".tmp";
    const Handle probe(CreateFileA(join(folder, name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                   FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (probe.is_open()) return true;
    if (GetLastError() != ERROR_FILE_EXISTS) return false;
  }
  return false;
}

std::optional<std::uint64_t> free_space(const std::string& path) {
  std::string place = absolute(path.empty() ? "." : path);
  ULARGE_INTEGER available = {};
  // The call wants a folder; one that is not made yet will lie on the volume of the nearest that exists.
  while (GetDiskFreeSpaceExA(join(place, "").c_str(), &available, nullptr, nullptr) == 0) {
    const std::string above = folder_of(place);
    if (above.empty() || above == place) return std::nullopt;
    place = above;
  }
  return available.QuadPart;
}

std::uint64_t link_count(const std::string& path) {
  const Handle file(CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, share_all, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  BY_HANDLE_FILE_INFORMATION found = {};
  if (!file.is_open() || GetFileInformationByHandle(file.get(), &found) == 0) return 0;
  return found.nNumberOfLinks;
}

bool is_link(const std::string& path) {
  std::string name = path;
  while (name.ends_with('\\') || name.ends_with('/'))
    name.pop_back();
  WIN32_FIND_DATAA found = {};
  const HANDLE search = FindFirstFileA(name.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  FindClose(search);
  // Other reparse points (files that a cloud service keeps) are no links.
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

std::tm local_time(std::time_t seconds) {
  std::tm result{};
  if (localtime_s(&result, &seconds) != 0) return std::tm{};
  return result;
}

}  // namespace ferrowen::platform
