// File work that the standard library cannot do or cannot do safely: flushed writes, atomic replace, times.
// Every routine that returns text returns the system's reason for a failure and "" for success.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen::platform {

// Writes `bytes` to a new or emptied file and flushes it to the disk. The file's old mode is kept.
std::string write_flushed(const std::string& path, std::string_view bytes);
// Puts `from` in the place of `to` in one step; `to` may exist. Follows no link at `to`.
std::string replace_file(const std::string& from, const std::string& to);
// Time of the last change in seconds since 1970 with fractions; nothing when there is no such file.
std::optional<double> change_time(const std::string& path);
// True when a file can be made in the folder (tried out, not guessed from mode bits).
bool folder_is_writable(const std::string& folder);
// Bytes free for this user on the volume that holds `path`.
std::optional<std::uint64_t> free_space(const std::string& path);
// A symbolic link or, on Windows, a junction: a name whose content lies elsewhere. Wherever it leads.
bool is_link(const std::string& path);
// Number of names (hard links) that share the bytes of this file; 0 when there is none.
std::uint64_t link_count(const std::string& path);
// Local calendar time, without the shared buffer of std::localtime.
std::tm local_time(std::time_t seconds);

// Case of names as the file system of this system compares them.
#ifdef _WIN32
inline constexpr bool names_ignore_case = true;
#else
inline constexpr bool names_ignore_case = false;
#endif

}  // namespace ferrowen::platform
