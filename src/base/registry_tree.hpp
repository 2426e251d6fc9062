// A registry in memory: keys found without regard to case, changed by what registry texts say.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/registry_text.hpp"

namespace ferrowen {

class RegistryTree {
 public:
  void apply(const std::vector<RegistryChange>& changes);

  [[nodiscard]] bool has(std::string_view key) const;
  // Names of the keys directly below, in the order of their lower-case names.
  [[nodiscard]] std::vector<std::string> subkeys(std::string_view key) const;
  [[nodiscard]] std::vector<platform::RegistryValue> values(std::string_view key) const;
  // Everything, as the changes that make it.
  [[nodiscard]] std::vector<RegistryChange> content() const;

 private:
  struct Key {
    std::string path;  // as it was first written
    std::vector<platform::RegistryValue> values;
  };
  Key& make(std::string_view key);
  void remove(std::string_view key);
  void set(Key& key, const platform::RegistryValue& value);

  // By the lower-case path, whose parts end with a byte below every character: a key stands right in front of
  // its subkeys.
  std::map<std::string, Key, std::less<>> m_keys;
};

}  // namespace ferrowen
