// The system's own registry. Where there is none, nothing is ever found and nothing can be changed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ferrowen::platform {

enum class RegistryRoot : std::uint8_t { local_machine, current_user, users };

std::optional<std::string> registry_text(RegistryRoot root, const std::string& key, const std::string& value);
std::optional<std::uint32_t> registry_number(RegistryRoot root, const std::string& key,
                                             const std::string& value);

// The numbers of the value types, as the registry and its texts write them.
namespace registry_type {
inline constexpr std::uint32_t none = 0, text = 1, expanding_text = 2, binary = 3, number = 4,
                               big_endian_number = 5, link = 6, texts = 7, resource_list = 8,
                               resource_descriptor = 9, resource_requirements = 10;
}  // namespace registry_type

struct RegistryValue {
  std::string name;  // "" for the key's default value
  std::uint32_t type = registry_type::none;
  std::string data;  // UTF-8 of a text or an expanding text; the bytes of every other type
  bool operator==(const RegistryValue&) const = default;
};

// Which call failed; a missing key is no fault.
enum class RegistryFault : std::uint8_t {
  none,
  opening_key,
  subkey_length,
  subkey_value,
  closing_key,
  opening_parent,
  deleting_key
};

struct RegistryKeyContent {
  bool exists = false;
  std::vector<std::string> subkeys;
  std::vector<RegistryValue> values;
  RegistryFault fault = RegistryFault::none;
  std::string reason;  // of the fault, in the system's words
};
// Keys are taken literally on 32-bit and 64-bit systems: "SOFTWARE\Wow6432Node\..." is never redirected.
RegistryKeyContent read_registry_key(RegistryRoot root, const std::string& key);

struct RegistryDeletion {
  RegistryFault fault = RegistryFault::none;
  std::string reason;
};
// Deletes a key with its subkeys, deepest first. A missing key is fine.
RegistryDeletion delete_registry_key(RegistryRoot root, const std::string& key);

// The user's security identifier ("S-1-5-21-..."); "" where there is none.
std::string user_security_identifier();

}  // namespace ferrowen::platform
