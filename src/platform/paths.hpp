// Paths as this system writes them, and the folders that it keeps for its users.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen::platform {

#ifdef _WIN32
inline constexpr char separator = '\\';
#else
inline constexpr char separator = '/';
#endif

// `folder` + separator + `name`, without doubling a separator that is already there.
std::string join(std::string_view folder, std::string_view name);
// Windows: ":\" (or ":/") behind a drive letter, or "\\server"; elsewhere a leading "/".
bool is_absolute(std::string_view path);
std::string absolute(const std::string& path);
// Folder of a path without its trailing separator; the name behind the last separator.
std::string folder_of(std::string_view path);
std::string name_of(std::string_view path);

// Between our UTF-8 text and the standard library's paths. Its own conversion from char is not UTF-8 on
// Windows: std::filesystem must never be given a std::string, nor its .string() be taken.
std::filesystem::path file_system_path(std::string_view path);
std::string path_text(const std::filesystem::path& path);

std::string executable_path();
// The user's home folder; "" when the system tells none.
std::string home_folder();
// Windows %LOCALAPPDATA%; elsewhere $XDG_DATA_HOME, else ~/.local/share.
std::string user_data_folder();
// Windows %APPDATA% (the "roaming" folder); elsewhere the user data folder.
std::string roaming_data_folder();
// Where programs keep files shared by all users: share/ferrowen beside the executable, its own folder, or
// ../share/ferrowen of it. The first of them that holds `name`; "" when none does.
std::string shared_data_file(const std::string& name);

// The 8.3 form of an existing path with blanks where the system has one; otherwise the path itself.
std::string short_path(const std::string& path);

std::optional<std::string> environment(const std::string& name);
// Full path of a program of this name in PATH (Windows: also with ".exe", ".bat", ".cmd"); "" when not found.
std::string find_program(const std::string& name);

}  // namespace ferrowen::platform
