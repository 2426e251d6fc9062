// The files of a split in the split output folder: which they are, and keeping the old ones until the new
// ones are good.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/files.hpp"
#include "base/status.hpp"

namespace ferrowen {

// "13224385.o5m", "13224385.osm.pbf", "13224385.osm.gz".
bool is_tile_name(std::string_view name);
// The names of the splitter's tiles and lists that lie in a folder.
std::vector<std::string> split_file_names(const std::string& folder);

// True when files that the splitter makes for the time of its work lie in a folder.
bool has_temporary_files(const std::string& folder);

// Keeps the old tiles and lists of a folder until it is known whether the new ones are good. When neither
// accept() nor bring_back() is called, the old files come back over the new ones.
class SplitFiles {
 public:
  explicit SplitFiles(std::string folder) : m_folder(std::move(folder)) {}
  // Makes the folder when it is missing. After an error nothing is to be split.
  Status move_old_aside();
  // The new files are good: the old ones are deleted.
  Status accept();
  // The new files are not good: they are deleted, and the old ones come back.
  Status bring_back();

 private:
  Status remove_temporary_files() const;
  std::string m_folder;
  MovedAside m_old;
};

// What a tool said about its failure: the lines of its output that tell it, without stack traces.
std::string explanation(std::string_view error_text, std::string_view output);

}  // namespace ferrowen
