// What is asked of the values that a person entered in the settings window before the record takes them over.
// Nothing is changed here and nothing is shown: a new record comes back, and what to tell, in order.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/settings.hpp"

namespace ferrowen {

// What the checks have to know of the disk.
struct FolderFacts {
  std::function<bool(const std::string&)> exists;
  std::function<std::vector<std::string>(const std::string&)> subfolders;
};
FolderFacts facts_of_disk();

struct SettingsRemark {
  enum class Kind : std::uint8_t {
    refused,   // the value is not accepted
    question,  // a folder is missing: on Yes everything is checked again, it may have been made meanwhile
  };
  Kind kind = Kind::refused;
  std::string_view field;
  std::string text;
};

struct CheckedSettings {
  Settings settings;                    // with every value that is fine
  std::vector<SettingsRemark> remarks;  // nothing may be saved while there are any
};

using EnteredValues = std::vector<std::pair<const Field*, std::string>>;

// `entered` holds the values that differ from the record. A colour that is none is cleared, and a blank
// folder of the folders page takes its default below `home`. The folders of that page are checked whether
// they were changed or not; the styles folder must hold styles when it was changed to another than the
// default one, which is empty after the installation.
CheckedSettings check_settings(const Settings& record, const EnteredValues& entered, std::string_view home,
                               const FolderFacts& facts);

// "You have selected:" and the name, when it is not the one that mkgmap.jar or splitter.jar have; else "".
// A person may have a reason for another name, so this is only told.
std::string jar_name_remark(const Field& field, std::string_view path);
// Digits of a hexadecimal number other than zero.
bool is_colour_text(std::string_view text);

}  // namespace ferrowen
