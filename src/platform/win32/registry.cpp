#include "platform/registry.hpp"

#include <windows.h>

#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

HKEY handle_of(RegistryRoot root) {
  return root == RegistryRoot::local_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

}  // namespace

std::optional<std::string> registry_text(RegistryRoot root, const std::string& key,
                                         const std::string& value) {
  const std::wstring wide_key = wide(key);
  const std::wstring wide_value = wide(value);
  // The call expands texts that hold variables and then counts them as plain ones.
  std::wstring text(MAX_PATH, L'\0');
  for (;;) {
    auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    const LSTATUS status = RegGetValueW(handle_of(root), wide_key.c_str(), wide_value.c_str(), RRF_RT_REG_SZ,
                                        nullptr, text.data(), &size);
    if (status == ERROR_SUCCESS) {
      text.resize(size / sizeof(wchar_t));
      return narrow(text.c_str());  // the size counts the closing NUL
    }
    if (status != ERROR_MORE_DATA) return std::nullopt;
    text.resize(text.size() * 2);
  }
}

std::optional<std::uint32_t> registry_number(RegistryRoot root, const std::string& key,
                                             const std::string& value) {
  DWORD number = 0;
  DWORD size = sizeof number;
  if (RegGetValueW(handle_of(root), wide(key).c_str(), wide(value).c_str(), RRF_RT_REG_DWORD, nullptr,
                   &number, &size) != ERROR_SUCCESS)
    return std::nullopt;
  return number;
}

}  // namespace ferrowen::platform
