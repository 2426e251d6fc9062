#include "platform/paths.hpp"

#include <windows.h>
// windows.h comes first.
#include <shlobj.h>

#include <algorithm>
#include <array>

#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

bool is_separator(char character) { return character == '\\' || character == '/'; }

bool is_letter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// By the variable that a user can change, else as the system knows it.
std::string known_folder(const char* variable, int number) {
  if (auto value = environment(variable); value && !value->empty()) return *value;
  std::array<char, MAX_PATH> path = {};
  if (SHGetFolderPathA(nullptr, number, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK) return "";
  return path.data();
}

// Calls the system with a growing buffer until the text fits.
template <typename Call>
std::wstring text_of(const Call& call) {
  std::wstring buffer(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = call(buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length < buffer.size()) return buffer.substr(0, length);
    buffer.resize(std::max<std::size_t>(length, buffer.size() * 2));
  }
}

}  // namespace

bool is_absolute(std::string_view path) {
  if (path.size() >= 3 && is_letter(path[0]) && path[1] == ':' && is_separator(path[2])) return true;
  return path.size() >= 3 && is_separator(path[0]) && path[1] == path[0] && !is_separator(path[2]);
}

std::string absolute(const std::string& path) {
  if (path.empty()) return path;
  const std::wstring given = wide(path);
  const std::wstring full = text_of(
      [&](wchar_t* buffer, DWORD size) { return GetFullPathNameW(given.c_str(), size, buffer, nullptr); });
  return full.empty() ? path : narrow(full);
}

// The standard library's own conversion throws on bytes that are no UTF-8.
std::filesystem::path file_system_path(std::string_view path) { return wide(path); }

std::string path_text(const std::filesystem::path& path) { return narrow(path.native()); }

std::string executable_path() {
  return narrow(
      text_of([](wchar_t* buffer, DWORD size) { return GetModuleFileNameW(nullptr, buffer, size); }));
}

std::string home_folder() { return known_folder("USERPROFILE", CSIDL_PROFILE); }

std::string user_data_folder() { return known_folder("LOCALAPPDATA", CSIDL_LOCAL_APPDATA); }

std::string roaming_data_folder() { return known_folder("APPDATA", CSIDL_APPDATA); }

std::string short_path(const std::string& path) {
  if (path.find(' ') == std::string::npos) return path;
  const std::wstring given = wide(path);
  // Nothing for a file that does not exist; volumes without short names give the long one back.
  const std::string result = narrow(
      text_of([&](wchar_t* buffer, DWORD size) { return GetShortPathNameW(given.c_str(), buffer, size); }));
  return result.empty() || result.find(' ') != std::string::npos ? path : result;
}

}  // namespace ferrowen::platform
