// The registry texts that make a map known to the Garmin programs, to the byte. Pure: values in, text out.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ferrowen {

// All paths are written as the Garmin programs see them.
struct RegistrationFacts {
  std::string family;            // the product name
  std::string fid_bytes;         // "e8,03", of the map's own TDB
  std::string folder;            // the map folder
  std::string overview_map;      // <name>.img
  std::string tdb;               // <name>.tdb
  std::string index, index_map;  // <name>.mdx and <name>_mdr.img; "" without an index
  std::string typ;               // "" without a TYP
  bool wow64 = false;            // keys of programs of 32 bit on a system of 64 bit
};

// "HKEY_LOCAL_MACHINE\SOFTWARE\Garmin\" or with "Wow6432Node\" in front of "Garmin".
std::string garmin_machine_key(bool wow64);
std::string family_key(std::string_view family, bool wow64);

// Bytes 6 and 7 of a TDB that begins with its product header ('P'), "e8,03" for family 1000. Anything shorter
// than four characters is padded with "0" on the left, so a file that is no TDB gives "0000".
std::string fid_bytes_of_tdb(std::string_view tdb);
// The number that such bytes stand for; nothing for what does not come from a TDB.
std::optional<int> fid_of_bytes(std::string_view fid_bytes);

// The bytes that stand for a number, "e8,03".
std::string fid_bytes_text(int fid);

// <product>.reg
std::string registration_text(const RegistrationFacts& facts);

struct LastUsedFacts {
  std::string fid_bytes;
  std::string user_identifier;  // "" when there is none: the line for the elevated user is left out
  std::string detail;           // detail level of a script; blank leaves its lines out
};
// 0.reg: the Garmin programs open on the new map.
std::string last_used_text(const LastUsedFacts& facts);

}  // namespace ferrowen
