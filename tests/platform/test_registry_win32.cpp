// The system's own registry with its real calls.
#ifdef _WIN32

#include <doctest/doctest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "platform/other_programs.hpp"
#include "platform/registry.hpp"

using namespace ferrowen::platform;

namespace {

void write_value(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data,
                 DWORD size) {
  HKEY key = nullptr;
  REQUIRE(RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr) == ERROR_SUCCESS);
  CHECK(RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size) == ERROR_SUCCESS);
  RegCloseKey(key);
}

}  // namespace

TEST_CASE("system registry: keys and values are read, a key goes with its subkeys") {
  const std::string key = R"(SOFTWARE\Ferrowen tests\Families)";
  const RegistryRoot root = RegistryRoot::current_user;
  const BYTE id[] = {0xE8, 0x03};
  const wchar_t text[] = L"Z:\\a \u0141";
  write_value(HKEY_CURRENT_USER, L"SOFTWARE\\Ferrowen tests\\Families\\M\u00fc\\1", L"LOC", REG_SZ, text,
              sizeof text);
  write_value(HKEY_CURRENT_USER, L"SOFTWARE\\Ferrowen tests\\Families\\M\u00fc", L"ID", REG_BINARY, id, 2);
  write_value(HKEY_CURRENT_USER, L"SOFTWARE\\Ferrowen tests\\Families\\M\u00fc 2", L"", REG_NONE, nullptr, 0);

  CHECK(read_registry_key(root, key).subkeys == std::vector<std::string>{"M\xC3\xBC", "M\xC3\xBC 2"});
  const RegistryKeyContent family = read_registry_key(root, key + "\\M\xC3\xBC");
  CHECK(family.values == std::vector<RegistryValue>{{"ID", registry_type::binary, "\xE8\x03"}});
  const RegistryKeyContent product = read_registry_key(root, key + "\\m\xC3\xBC\\1");
  CHECK(product.values == std::vector<RegistryValue>{{"LOC", registry_type::text, "Z:\\a \xC5\x81"}});
  CHECK_FALSE(read_registry_key(root, key + "\\gone").exists);
  CHECK(read_registry_key(root, key + "\\gone").fault == RegistryFault::none);

  CHECK(delete_registry_key(root, key + "\\M\xC3\xBC").fault == RegistryFault::none);
  CHECK(read_registry_key(root, key).subkeys == std::vector<std::string>{"M\xC3\xBC 2"});
  CHECK(delete_registry_key(root, R"(SOFTWARE\Ferrowen tests)").fault == RegistryFault::none);
  CHECK_FALSE(read_registry_key(root, R"(SOFTWARE\Ferrowen tests)").exists);
  CHECK(delete_registry_key(root, R"(SOFTWARE\Ferrowen tests)").fault == RegistryFault::none);
  CHECK(user_security_identifier().starts_with("S-1-"));
}

TEST_CASE("a file that another handle holds without sharing is seen") {
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  const std::wstring path = std::wstring(folder) + L"ferrowen-held.tmp";
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  REQUIRE(file != INVALID_HANDLE_VALUE);
  const std::string narrow_path(path.begin(), path.end());
  CHECK(is_held_by_other(narrow_path));
  CloseHandle(file);
  CHECK_FALSE(is_held_by_other(narrow_path));
  DeleteFileW(path.c_str());
  CHECK_FALSE(is_held_by_other(narrow_path));
}

#endif
