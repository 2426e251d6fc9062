#include <windows.h>

#include <cwchar>
#include <map>

#include "platform/paths.hpp"
#include "platform/win32/command_line.hpp"
#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

struct IgnoringCase {
  bool operator()(const std::wstring& left, const std::wstring& right) const {
    return _wcsicmp(left.c_str(), right.c_str()) < 0;
  }
};
using Variables = std::map<std::wstring, std::wstring, IgnoringCase>;

Variables inherited_variables() {
  Variables variables;
  wchar_t* const block = GetEnvironmentStringsW();
  if (block == nullptr) return variables;
  for (const wchar_t* entry = block; *entry != L'\0'; entry += std::wcslen(entry) + 1) {
    const std::wstring text = entry;
    // The current folders of the drives are kept as variables whose names start with "=".
    const std::size_t equals = text.find(L'=', 1);
    if (equals != std::wstring::npos) variables[text.substr(0, equals)] = text.substr(equals + 1);
  }
  FreeEnvironmentStringsW(block);
  return variables;
}

bool is_file(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::string with_extension(const std::string& path) {
  const bool has_one = name_of(path).find('.') != std::string::npos;
  if (has_one && is_file(path)) return path;
  for (const char* extension : {".com", ".exe", ".bat", ".cmd"})
    if (is_file(path + extension)) return path + extension;
  return "";
}

}  // namespace

std::wstring environment_block(const std::vector<std::pair<std::string, std::string>>& changes) {
  Variables variables = inherited_variables();
  for (const auto& [name, value] : changes)
    variables.insert_or_assign(wide(name), wide(value));
  std::wstring block;
  for (const auto& [name, value] : variables)
    block.append(name + L'=' + value).push_back(L'\0');
  block.push_back(L'\0');
  return block;
}

std::string locate_program(const std::string& name, const std::string& search_path,
                           const std::string& folder) {
  if (name.find_first_of("\\/:") != std::string::npos) {
    const std::string from_here = is_absolute(name) || folder.empty() ? name : join(folder, name);
    return with_extension(absolute(from_here));
  }
  for (std::size_t at = 0; !name.empty() && at < search_path.size();) {
    const std::size_t end = std::min(search_path.find(';', at), search_path.size());
    std::string entry = search_path.substr(at, end - at);
    std::erase(entry, '"');
    const std::string found = entry.empty() ? "" : with_extension(join(entry, name));
    if (!found.empty()) return absolute(found);
    at = end + 1;
  }
  return "";
}

std::optional<std::string> environment(const std::string& name) {
  // Asked in UTF-16: the size that the 8-bit call tells need not be that of the UTF-8 text.
  const std::wstring wide_name = wide(name);
  for (;;) {
    SetLastError(ERROR_SUCCESS);
    const DWORD size = GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0);
    if (size == 0) {
      if (GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
      return "";
    }
    std::wstring value(size, L'\0');
    const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), value.data(), size);
    if (length < size) return narrow(std::wstring_view(value.data(), length));
  }
}

std::string find_program(const std::string& name) {
  return locate_program(name, environment("PATH").value_or(""), "");
}

}  // namespace ferrowen::platform
