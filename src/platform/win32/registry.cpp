#include "platform/registry.hpp"

#include <windows.h>
// windows.h comes first.
#include <sddl.h>

#include <vector>

#include "platform/error_text.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

constexpr DWORD longest_key_name = 256;  // with its closing NUL

HKEY handle_of(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::local_machine:
      return HKEY_LOCAL_MACHINE;
    case RegistryRoot::current_user:
      return HKEY_CURRENT_USER;
    case RegistryRoot::users:
      break;
  }
  return HKEY_USERS;
}

// An open key; closed at the latest when the object goes.
class OpenKey {
 public:
  OpenKey(HKEY root, const std::wstring& path, REGSAM access)
      : m_status(RegOpenKeyExW(root, path.c_str(), 0, access | KEY_WOW64_64KEY, &m_key)) {}
  ~OpenKey() { close(); }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  [[nodiscard]] LSTATUS status() const { return m_status; }
  [[nodiscard]] HKEY get() const { return m_key; }
  LSTATUS close() {
    if (m_key == nullptr) return ERROR_SUCCESS;
    const LSTATUS closed = RegCloseKey(m_key);
    m_key = nullptr;
    return closed;
  }

 private:
  HKEY m_key = nullptr;
  LSTATUS m_status;
};

// A text ends with NUL characters in most registries, though nothing demands it.
std::string value_data(DWORD type, const std::vector<BYTE>& bytes, DWORD size) {
  if (type != REG_SZ && type != REG_EXPAND_SZ)
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
  std::wstring text;
  for (DWORD at = 0; at + 1 < size; at += 2) {
    const auto unit = static_cast<wchar_t>(bytes[at] | (bytes[at + 1] << 8));
    if (unit == L'\0') break;
    text += unit;
  }
  return narrow(text);
}

bool faulted(RegistryKeyContent& content, RegistryFault fault, LSTATUS status) {
  content.fault = fault;
  content.reason = error_text(static_cast<unsigned long>(status));
  return false;
}

bool read_subkeys(HKEY key, RegistryKeyContent& content) {
  std::wstring name(longest_key_name, L'\0');
  for (DWORD i = 0;; ++i) {
    DWORD length = longest_key_name;
    const LSTATUS status = RegEnumKeyExW(key, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS) return true;
    if (status != ERROR_SUCCESS) return faulted(content, RegistryFault::subkey_value, status);
    content.subkeys.push_back(narrow(std::wstring_view(name).substr(0, length)));
  }
}

bool read_values(HKEY key, DWORD longest_name, DWORD longest_data, RegistryKeyContent& content) {
  std::wstring name(longest_name + 1, L'\0');
  std::vector<BYTE> data(longest_data + 1);
  for (DWORD i = 0;;) {
    auto length = static_cast<DWORD>(name.size());
    auto size = static_cast<DWORD>(data.size());
    DWORD type = REG_NONE;
    const LSTATUS status = RegEnumValueW(key, i, name.data(), &length, nullptr, &type, data.data(), &size);
    if (status == ERROR_NO_MORE_ITEMS) return true;
    if (status == ERROR_MORE_DATA) {  // another program made it longer meanwhile
      name.resize(name.size() * 2);
      data.resize(data.size() * 2);
      continue;
    }
    if (status != ERROR_SUCCESS) return faulted(content, RegistryFault::subkey_value, status);
    content.values.push_back(
        {narrow(std::wstring_view(name).substr(0, length)), type, value_data(type, data, size)});
    ++i;
  }
}

std::vector<std::wstring> subkey_names(HKEY key) {
  RegistryKeyContent content;
  read_subkeys(key, content);
  std::vector<std::wstring> names;
  names.reserve(content.subkeys.size());
  for (const std::string& name : content.subkeys)
    names.push_back(wide(name));
  return names;
}

LSTATUS delete_with_subkeys(HKEY parent, const std::wstring& name) {
  {
    OpenKey key(parent, name, KEY_READ);
    if (key.status() != ERROR_SUCCESS) return key.status();
    for (const std::wstring& subkey : subkey_names(key.get())) {
      const LSTATUS deleted = delete_with_subkeys(key.get(), subkey);
      if (deleted != ERROR_SUCCESS) return deleted;
    }
  }
  return RegDeleteKeyExW(parent, name.c_str(), KEY_WOW64_64KEY, 0);
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

RegistryKeyContent read_registry_key(RegistryRoot root, const std::string& key) {
  RegistryKeyContent content;
  OpenKey open(handle_of(root), wide(key), KEY_READ);
  if (open.status() == ERROR_FILE_NOT_FOUND || open.status() == ERROR_PATH_NOT_FOUND) return content;
  if (open.status() != ERROR_SUCCESS) {
    faulted(content, RegistryFault::opening_key, open.status());
    return content;
  }
  content.exists = true;
  DWORD name_length = 0;
  DWORD data_length = 0;
  const LSTATUS asked = RegQueryInfoKeyW(open.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                         nullptr, &name_length, &data_length, nullptr, nullptr);
  if (asked != ERROR_SUCCESS) {
    faulted(content, RegistryFault::subkey_length, asked);
    return content;
  }
  if (!read_subkeys(open.get(), content) || !read_values(open.get(), name_length, data_length, content))
    return content;
  const LSTATUS closed = open.close();
  if (closed != ERROR_SUCCESS) faulted(content, RegistryFault::closing_key, closed);
  return content;
}

RegistryDeletion delete_registry_key(RegistryRoot root, const std::string& key) {
  const std::size_t cut = key.rfind('\\');
  if (cut == std::string::npos) return {RegistryFault::opening_parent, key + ": not a key to delete"};
  OpenKey parent(handle_of(root), wide(key.substr(0, cut)), KEY_READ);
  if (parent.status() == ERROR_FILE_NOT_FOUND || parent.status() == ERROR_PATH_NOT_FOUND) return {};
  if (parent.status() != ERROR_SUCCESS)
    return {RegistryFault::opening_parent, error_text(static_cast<unsigned long>(parent.status()))};
  const LSTATUS deleted = delete_with_subkeys(parent.get(), wide(key.substr(cut + 1)));
  if (deleted == ERROR_SUCCESS || deleted == ERROR_FILE_NOT_FOUND) return {};
  return {RegistryFault::deleting_key, error_text(static_cast<unsigned long>(deleted))};
}

std::string user_security_identifier() {
  HANDLE raw = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw) == FALSE) return "";
  const Handle token(raw);
  DWORD size = 0;
  GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
  std::vector<BYTE> user(size);
  if (size == 0 || GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) == FALSE) return "";
  wchar_t* text = nullptr;
  if (ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &text) == FALSE) return "";
  std::string identifier = narrow(text);
  LocalFree(text);
  return identifier;
}

}  // namespace ferrowen::platform
