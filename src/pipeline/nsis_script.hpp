// What an NSIS script that mkgmap wrote says about the installer that comes out of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

struct NsisScript {
  std::string installer_name;     // of the .exe, without its ending; "" when the script names none
  std::vector<std::string> typs;  // names of the TYP files that it packs, in order, each once
};

// Text of a .nsi file with any line ends.
NsisScript parse_nsis_script(std::string_view text);

// True for a name that the installer builder makes a file of that name from: no path, no variables.
bool is_installer_name(std::string_view name);

// Whether one TYP name means the other: case does not count, nor does one "x" that mkgmap has put in front.
bool same_typ_name(std::string_view one, std::string_view other);

}  // namespace ferrowen
