// Renews files that were shipped with an older version, unless somebody has changed them. The list in
// `system/shipped` tells: it keeps a checksum of each file as it was copied, and which shipped file that was.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

class ShippedFiles {
 public:
  explicit ShippedFiles(std::string list_path);

  // A missing target is copied. One that is there is looked into only when another file is shipped than at
  // the last time. It is replaced when it is still what was copied; otherwise it is the person's and stays.
  // The error tells that a missing file could not be copied: an old one that cannot be replaced still serves,
  // and is tried again at the next start.
  [[nodiscard]] Status update(const std::string& name, const std::string& source, const std::string& target);
  // Writes the list when it has changed. A folder that cannot be written keeps the old one: then every file
  // is looked into again at the next start.
  void save() const;

 private:
  struct Entry {
    std::string name, stamp, checksum;  // of the shipped file that was seen last; of the file as copied
  };
  Entry& entry_of(const std::string& name);
  std::string m_path, m_saved;
  std::vector<Entry> m_entries;
};

}  // namespace ferrowen
