#include "base/file_set.hpp"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace fs = std::filesystem;
using platform::file_system_path;

namespace {

constexpr std::uint64_t megabyte = 1024ULL * 1024;
constexpr std::string_view unfinished_ending = ".unfinished";

std::string native_name(const std::string& name) {
  return platform::separator == '/' ? name : replace_all(name, "/", "\\");
}

Status check_space(std::uint64_t wanted, const std::string& folder) {
  const std::optional<std::uint64_t> free = platform::free_space(folder);
  if (!free || *free > wanted) return {};
  return {folder + ": not enough space, " + std::to_string(wanted / megabyte + 1) + " MB are needed and " +
          std::to_string(*free / megabyte) + " MB are free"};
}

// A folder that holds nothing but what this copy puts into it, and is gone with it when it fails.
class UnfinishedFolder {
 public:
  explicit UnfinishedFolder(const std::string& folder) : m_path(free_name(folder)) {}
  ~UnfinishedFolder() { remove(); }
  UnfinishedFolder(const UnfinishedFolder&) = delete;
  UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;

  Status make() { return make_part(m_path); }

  // `left` are the bytes of this file and of those behind it: a disk that cannot link has to hold them all.
  Status take(const FileToCopy& file, bool& link, std::uint64_t left) {
    const std::string target = platform::join(m_path, native_name(file.name));
    if (Status made = make_part(platform::folder_of(target)); !made.ok()) return made;
    m_files.push_back(target);
    std::error_code no_link;
    if (link) fs::create_hard_link(file_system_path(file.from), file_system_path(target), no_link);
    if (link && no_link) {
      link = false;
      if (Status enough = check_space(left, m_path); !enough.ok()) return enough;
    }
    if (!link) {
      if (Status copied = copy_file(file.from, target); !copied.ok()) return copied;
    }
    if (file_size(target) == file_size(file.from)) return {};
    return {target + ": the copy has not the size of " + file.from};
  }

  // One step when the folder is new; else file by file, and back again when one of them cannot be moved.
  Status put_in_place(const std::vector<FileToCopy>& files, const std::string& folder) {
    if (!file_exists(folder)) return rename_file(m_path, folder);
    MovedAside older;
    std::vector<std::string> placed;
    for (const FileToCopy& file : files) {
      const std::string target = platform::join(folder, native_name(file.name));
      Status moved = make_folder(platform::folder_of(target));
      if (moved.ok()) moved = older.take(target);
      if (moved.ok()) moved = rename_file(platform::join(m_path, native_name(file.name)), target);
      if (!moved.ok()) {
        const Status back = bring_back(placed, older);
        return back.ok() ? moved : Status{moved.error + "\r\n" + back.error};
      }
      placed.push_back(target);
    }
    return older.drop();
  }

 private:
  static Status bring_back(const std::vector<std::string>& placed, MovedAside& older) {
    Status first;
    for (const std::string& path : placed) {
      const Status removed = remove_file(path);
      if (!removed.ok() && first.ok()) first = removed;
    }
    const Status restored = older.restore();
    return first.ok() ? restored : first;
  }

  // What a run that was killed has left may be somebody's: it is gone around, never deleted.
  static std::string free_name(const std::string& folder) {
    std::string name = folder + std::string(unfinished_ending);
    for (int number = 2; file_exists(name); ++number)
      name = folder + std::string(unfinished_ending) + std::to_string(number);
    return name;
  }

  Status make_part(const std::string& folder) {
    std::vector<std::string> missing;
    // A drive that is not there is above itself.
    for (std::string part = folder; !file_exists(part) && part != platform::folder_of(part);
         part = platform::folder_of(part))
      missing.push_back(part);
    if (Status made = make_folder(folder); !made.ok()) return made;
    const auto is_own = [&](const std::string& part) { return part.starts_with(m_path); };
    std::copy_if(missing.rbegin(), missing.rend(), std::back_inserter(m_folders), is_own);
    return {};
  }

  void remove() {
    std::error_code ignored;
    for (const std::string& file : m_files)
      fs::remove(file_system_path(file), ignored);
    std::for_each(m_folders.rbegin(), m_folders.rend(),
                  [&](const std::string& folder) { fs::remove(file_system_path(folder), ignored); });
  }

  std::string m_path;
  std::vector<std::string> m_folders;  // in the order in which they were made
  std::vector<std::string> m_files;
};

// A file in the place of a folder, or a folder in the place of a file, must not be found half-way.
Status check_targets(const std::vector<FileToCopy>& files, const std::string& folder) {
  if (file_exists(folder) && !folder_exists(folder)) return {folder + ": a file of this name is in the way"};
  for (const FileToCopy& file : files) {
    const std::string target = platform::join(folder, native_name(file.name));
    if (folder_exists(target)) return {target + ": a folder of this name is in the way"};
  }
  return {};
}

}  // namespace

std::uint64_t total_size(const std::vector<FileToCopy>& files) {
  std::uint64_t bytes = 0;
  for (const FileToCopy& file : files)
    bytes += file_size(file.from);
  return bytes;
}

Status copy_file_set(const std::vector<FileToCopy>& files, const std::string& target_folder,
                     const CopyProgress& progress, const std::string& stopped, bool link) {
  // Without a separator at its end, which would make the neighbour a child.
  const std::string folder = platform::folder_of(platform::join(target_folder, "x"));
  const std::uint64_t all_bytes = total_size(files);
  if (Status free = check_targets(files, folder); !free.ok()) return free;
  if (Status enough = check_space(link ? 0 : all_bytes, folder); !enough.ok()) return enough;
  UnfinishedFolder unfinished(folder);
  if (Status made = unfinished.make(); !made.ok()) return made;
  std::uint64_t done = 0;
  for (const FileToCopy& file : files) {
    if (progress &&
        !progress(all_bytes == 0 ? 0 : static_cast<double>(done) / static_cast<double>(all_bytes)))
      return {stopped};
    if (Status taken = unfinished.take(file, link, all_bytes - done); !taken.ok()) return taken;
    done += file_size(file.from);
  }
  return unfinished.put_in_place(files, folder);
}

}  // namespace ferrowen
