// Registry texts (".reg"): what the system's registry editor imports and exports. Reads REGEDIT4 and
// "Windows Registry Editor Version 5.00", in ANSI, UTF-8 or UTF-16, and the files that Wine keeps its
// registry in. Nothing is touched here: text in, changes out.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"
#include "platform/registry.hpp"

namespace ferrowen {

inline constexpr std::string_view regedit4_header = "REGEDIT4";
inline constexpr std::string_view regedit5_header = "Windows Registry Editor Version 5.00";

// What a text does to one key.
struct RegistryChange {
  std::string key;      // full path, "HKEY_LOCAL_MACHINE\SOFTWARE\..."
  bool remove = false;  // the key goes with all its subkeys
  std::vector<platform::RegistryValue> values;
  std::vector<std::string> removed_values;
};

struct RegistryText {
  std::vector<RegistryChange> changes;  // in the order of the text
  std::vector<std::string> problems;    // "line 3: ..."; that line alone was left out
};

// A text in our UTF-8. One without a known header changes nothing.
RegistryText parse_registry_text(std::string_view text);
// The bytes of a ".reg" file: UTF-16 or UTF-8 with their mark, else the ANSI code page.
RegistryText parse_registry_file(std::string_view bytes);

// One line, "\"ID\"=hex:e8,03" or "@=\"text\"", without a line end.
std::string registry_value_line(const platform::RegistryValue& value);
// A text between double quotes, with its backslashes and double quotes escaped.
std::string quoted_registry_text(std::string_view text);
// A whole text of version 5.00, in UTF-8: the keys with their values.
std::string registry_text_of(const std::vector<RegistryChange>& changes);
// The bytes of a text for the registry editor: ANSI for REGEDIT4, as version 5.00 in UTF-16 when a character
// has no place there.
std::string encode_registry_text(std::string_view text);

struct WineRegistryText : RegistryText {
  std::string root;       // "REGISTRY\Machine" or "REGISTRY\User\S-1-5-..."
  bool is_64bit = false;  // of the prefix that the file belongs to
};
// A file of a Wine prefix (system.reg, user.reg); keys are given with `root` in front. `wanted` chooses by
// the lower-case key without that root; the others are passed over.
WineRegistryText parse_wine_registry(std::string_view text, const std::string& root,
                                     const std::function<bool(std::string_view)>& wanted);

}  // namespace ferrowen
