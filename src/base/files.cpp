#include "base/files.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace fs = std::filesystem;
using platform::file_system_path;
using platform::path_text;

namespace {

constexpr std::string_view aside_ending = ".before";
// Small files are copied by way of the memory: the reason of a failure is then the system's own.
constexpr std::uint64_t largest_copied_at_once = 32ULL << 20U;

// The file behind a link, so that a safe write renews the file and keeps the link.
std::string write_target(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(file_system_path(path), error)) return path;
  const fs::path target = fs::weakly_canonical(file_system_path(path), error);
  return error ? path : path_text(target);
}

bool ending_matches(std::string_view name, std::string_view ending) {
  return platform::names_ignore_case ? ends_with_ignoring_case(name, ending) : name.ends_with(ending);
}

// A device, a pipe or a folder would be lost if a file took its place (as root even /dev/null).
std::string not_replaceable(const std::string& path) {
  std::error_code error;
  const bool free =
      !fs::exists(file_system_path(path), error) || fs::is_regular_file(file_system_path(path), error);
  return free ? "" : "is no regular file";
}

std::string reason(const std::error_code& error) { return error.message(); }

template <typename Wanted>
std::vector<std::string> list_entries(const std::string& folder, Wanted wanted) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(file_system_path(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    if (wanted(*entry)) names.push_back(path_text(entry->path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

bool file_exists(const std::string& path) {
  std::error_code error;
  return !path.empty() && fs::exists(file_system_path(path), error);
}

bool folder_exists(const std::string& path) {
  std::error_code error;
  return !path.empty() && fs::is_directory(file_system_path(path), error);
}

bool same_file(const std::string& one, const std::string& other) {
  std::error_code error;
  return fs::equivalent(platform::file_system_path(one), platform::file_system_path(other), error);
}

std::uint64_t file_size(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(file_system_path(path), error)) return 0;
  const std::uintmax_t size = fs::file_size(file_system_path(path), error);
  return error ? 0 : size;
}

bool file_has_content(const std::string& path) { return file_size(path) > 0; }

std::string read_whole_file(const std::string& path) { return read_file(path).value; }

Result<std::string> read_file(const std::string& path, std::uint64_t limit) {
  std::error_code error;
  if (!fs::exists(file_system_path(path), error)) return failed<std::string>(path + ": no such file");
  if (fs::is_directory(file_system_path(path), error)) return failed<std::string>(path + ": is a folder");
  // To open a pipe would wait for somebody who writes into it.
  if (fs::is_fifo(file_system_path(path), error) || fs::is_socket(file_system_path(path), error))
    return failed<std::string>(path + ": is no regular file");
  const std::uint64_t size = file_size(path);
  if (size > limit) return failed<std::string>(path + ": too large (" + std::to_string(size) + " bytes)");
  std::ifstream file(file_system_path(path), std::ios::binary);
  if (!file) return failed<std::string>(path + ": cannot be opened");
  std::string bytes(static_cast<std::size_t>(size), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(size));
  if (file.bad()) return failed<std::string>(path + ": cannot be read");
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return {std::move(bytes), ""};
}

Status safe_write(const std::string& path, std::string_view bytes) {
  const std::string target = write_target(path);
  const std::string neighbour = target + ".new";
  std::string problem = not_replaceable(target);
  if (!problem.empty()) return {path + ": " + problem};
  problem = platform::write_flushed(neighbour, bytes);
  if (problem.empty()) problem = platform::replace_file(neighbour, target);
  if (problem.empty()) return {};
  std::error_code ignored;
  fs::remove(file_system_path(neighbour), ignored);
  return {path + ": " + problem};
}

Status make_folder(const std::string& path) {
  std::error_code error;
  fs::create_directories(file_system_path(path), error);
  if (folder_exists(path)) return {};
  return {path + ": " + (error ? reason(error) : "a file of this name is in the way")};
}

Status remove_file(const std::string& path) {
  std::error_code error;
  fs::remove(file_system_path(path), error);
  return {error ? path + ": " + reason(error) : ""};
}

Status rename_file(const std::string& from, const std::string& to) {
  const std::string problem = platform::replace_file(from, to);
  return {problem.empty() ? "" : from + ": " + problem};
}

Status copy_file(const std::string& from, const std::string& to) {
  if (const std::string problem = not_replaceable(to); !problem.empty()) return {to + ": " + problem};
  const std::string neighbour = to + ".new";
  if (file_size(from) <= largest_copied_at_once) {
    const Result<std::string> bytes = read_file(from);
    return bytes.ok() ? safe_write(to, bytes.value) : Status{bytes.error};
  }
  std::error_code error;
  fs::copy_file(file_system_path(from), file_system_path(neighbour), fs::copy_options::overwrite_existing,
                error);
  std::string problem = error ? reason(error) : platform::replace_file(neighbour, to);
  if (problem.empty()) return {};
  std::error_code ignored;
  fs::remove(file_system_path(neighbour), ignored);
  return {to + ": " + problem};
}

Status break_hard_link(const std::string& path) {
  return platform::link_count(path) > 1 ? copy_file(path, path) : Status{};
}

std::vector<std::string> list_files(const std::string& folder, const std::vector<std::string>& endings) {
  return list_entries(folder, [&](const fs::directory_entry& entry) {
    std::error_code error;
    if (!entry.is_regular_file(error)) return false;
    const std::string name = path_text(entry.path().filename());
    return std::any_of(endings.begin(), endings.end(),
                       [&](const std::string& ending) { return ending_matches(name, ending); });
  });
}

std::vector<std::string> list_folders(const std::string& folder) {
  return list_entries(folder, [](const fs::directory_entry& entry) {
    std::error_code error;
    return entry.is_directory(error);
  });
}

MovedAside::~MovedAside() { static_cast<void>(restore()); }

Status MovedAside::take(const std::string& path) {
  const std::string aside = path + std::string(aside_ending);
  for (const std::string& place : {path, aside}) {
    if (folder_exists(place)) return {place + " is a folder."};
  }
  // A run that was killed has left its old file aside: that one is whole, what lies in its place is not.
  if (file_exists(aside)) {
    if (Status removed = remove_file(path); !removed.ok()) return removed;
    m_paths.push_back(path);
    return {};
  }
  if (!file_exists(path)) return {};
  Status moved = rename_file(path, aside);
  // What fails behind the move itself does not undo it.
  if (moved.ok() || (!file_exists(path) && file_exists(aside))) m_paths.push_back(path);
  return moved;
}

Status MovedAside::restore() {
  Status first;
  for (const std::string& path : m_paths) {
    const Status moved = rename_file(path + std::string(aside_ending), path);
    if (!moved.ok() && first.ok()) first = moved;
  }
  m_paths.clear();
  return first;
}

Status MovedAside::drop() {
  Status first;
  for (const std::string& path : m_paths) {
    const Status removed = remove_file(path + std::string(aside_ending));
    if (!removed.ok() && first.ok()) first = removed;
  }
  m_paths.clear();
  return first;
}

}  // namespace ferrowen
