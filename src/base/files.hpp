// Whole files: read at once, written safely (neighbour file, flush, rename over the old one), moved aside.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

bool file_exists(const std::string& path);    // anything there, a file or a folder
bool folder_exists(const std::string& path);  // a folder, or a link to one
// True when both paths lead to the same existing file or folder, by whatever links and spellings.
bool same_file(const std::string& one, const std::string& other);
// Bytes of a regular file; nothing there, or a folder, counts as 0.
std::uint64_t file_size(const std::string& path);
bool file_has_content(const std::string& path);

// The file's bytes; a missing file, a blank path or a folder reads as "".
std::string read_whole_file(const std::string& path);
// The same, but tells why nothing could be read. Files above `limit` bytes are refused.
Result<std::string> read_file(const std::string& path, std::uint64_t limit = 1ULL << 30);

// Writes the whole file so that a crash or a full disk leaves the old one. The error names path and reason.
Status safe_write(const std::string& path, std::string_view bytes);
Status make_folder(const std::string& path);  // with its parents
Status remove_file(const std::string& path);  // a missing file is fine
Status rename_file(const std::string& from, const std::string& to);
Status copy_file(const std::string& from, const std::string& to);  // replaces `to` in one step

// Gives the file bytes of its own where it shares them with another name (a hard link): what is written into
// it in place then changes nothing elsewhere.
Status break_hard_link(const std::string& path);

// Names (not paths) of the files in a folder that match one of the endings, in byte order.
// Endings are written with their dot: {".pbf", ".o5m"}; their case counts where the file system's does.
std::vector<std::string> list_files(const std::string& folder, const std::vector<std::string>& endings);
std::vector<std::string> list_folders(const std::string& folder);

// Files put out of the way before a run and brought back when it fails.
class MovedAside {
 public:
  MovedAside() = default;
  ~MovedAside();  // brings back what was neither restored nor dropped
  MovedAside(const MovedAside&) = delete;
  MovedAside& operator=(const MovedAside&) = delete;
  // A file that does not exist is no error and is not restored. Folders are refused.
  Status take(const std::string& path);
  // Brings the files back over whatever lies in their places now.
  Status restore();
  // The run was good: the old files are deleted.
  Status drop();
  [[nodiscard]] std::size_t count() const { return m_paths.size(); }

 private:
  std::vector<std::string> m_paths;
};

}  // namespace ferrowen
