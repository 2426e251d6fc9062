// The settings record and the one table that says how each of its fields is stored, defaulted and shown.
// Loading, saving, reset, `ferrowen settings` and the settings window are loops over that table.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/settings_record.hpp"
#include "base/status.hpp"

namespace ferrowen {

enum class FieldType : std::uint8_t {
  text,    // free text, blanks kept
  path,    // trimmed text
  lines,   // several lines, stored in one with code 31 for CR LF (line_joint)
  number,  // whole number
  real,    // decimal number
  flag,    // 0 or 1
};

inline constexpr std::string_view line_joint = "\x1f";

// Where a field belongs in `settings show` and in the settings window.
enum class Page : std::uint8_t {
  map,
  options,
  splitter,
  folders,
  tools,
  elevation,
  identity,
  device,
  program
};

struct Field {
  int line = 0;           // position in the settings file, the first line is 0
  std::string_view name;  // as `ferrowen settings get NAME` spells it
  FieldType type = FieldType::text;
  Page page = Page::program;
  std::string_view initial;  // text of a fresh record; "{home}" stands for the program folder
  std::string_view label;    // one plain sentence for a person
  std::variant<std::string Settings::*, int Settings::*, double Settings::*, bool Settings::*,
               std::array<std::string, hgt_folder_slots> Settings::*,
               std::array<std::string, clip_folder_slots> Settings::*>
      member;
  int slot = 0;  // index inside an array member
};

// The thread priorities that Java runs may have, in order.
inline constexpr std::string_view thread_priorities = "lowest,lower,low,medium,high,higher,highest";

// The SRTM3 downloads, organised in regions.
inline constexpr std::string_view usual_srtm_address = "https://dds.cr.usgs.gov/srtm/version2_1/SRTM3/";

// Every field, in line order.
const std::vector<Field>& settings_fields();
// nullptr when there is no field of that name (names are compared without case).
const Field* find_field(std::string_view name);
std::string_view page_name(Page page);

// The value as it is stored on its line: lines joined with code 31, flags as 0 or 1.
std::string stored_text(const Settings& settings, const Field& field);
// Takes a stored text. Numbers are read leniently; a blank text gives the field's default.
void assign_stored(Settings& settings, const Field& field, std::string_view text, std::string_view home);
// A folder that a person keeps and that must be there; the others are made when they are needed.
bool must_exist(const Field& field);
// Takes a text from a person and says what is wrong with it; nothing is changed then.
Status assign_checked(Settings& settings, const Field& field, std::string_view text);

// A record in which every field has its default.
Settings default_settings(std::string_view home);

// Text of a settings file and back. Loading applies the load rules, after the paths of a program folder that
// was moved to `home`; a path that a rule drops, or a missing styles folder, is told in `notes`.
std::string settings_text(const Settings& settings);
struct LoadedSettings {
  Settings settings;
  std::vector<std::string> notes;
};
LoadedSettings parse_settings(std::string_view text, std::string_view home);

// The number between "Xmx" and the next "m" of a Java options text, or the text itself when it is no option
// (a number alone, or what is no memory at all); "" for other options.
std::string memory_of_java_options(std::string_view java_options);

}  // namespace ferrowen
