// Copies of several files that arrive in a folder together or not at all: made in a neighbour folder, checked
// by their size, and only then put in place.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

struct FileToCopy {
  std::string from;  // full path of a regular file
  std::string name;  // where it goes: a name in the target folder, its parts separated by "/"
};

// Called before each file with the share of the bytes that is done (0 to 1); false stops the copying.
using CopyProgress = std::function<bool(double)>;

// Makes the folder when it is missing and replaces files of the same names in it; other files there stay.
// Copying that fails (no space, a file that cannot be read, stopped) leaves the folder as it was and nothing
// beside it. `stopped` is the error for a stop. With `link` the names are hard links to the files where the
// disk can do that: no space is taken, and neither name may be written to in place afterwards.
Status copy_file_set(const std::vector<FileToCopy>& files, const std::string& target_folder,
                     const CopyProgress& progress, const std::string& stopped, bool link = false);
std::uint64_t total_size(const std::vector<FileToCopy>& files);

}  // namespace ferrowen
