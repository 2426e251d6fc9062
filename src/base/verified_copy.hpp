// A copy of one large file that can be relied on: flushed, read back from the disk and compared before it
// gets its name.
#pragma once

#include <string>

#include "base/file_set.hpp"
#include "base/status.hpp"

namespace ferrowen {

// Replaces `to` in one step at the very end; whatever fails before, `to` is as it was and nothing is left
// beside it. `progress` is called after every block; `stopped` is the error for a stop.
Status copy_verified(const std::string& from, const std::string& to, const CopyProgress& progress,
                     const std::string& stopped);

}  // namespace ferrowen
