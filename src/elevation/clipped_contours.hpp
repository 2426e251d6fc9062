// The clipped contours of the map's cells: what may go into a build and what is wrong with the rest.
#pragma once

#include <string>
#include <vector>

namespace ferrowen {

struct ClippedContours {
  std::vector<std::string> files;         // full paths, in the order of the cells; these hold lines
  std::vector<std::string> missing;       // names of files: N46W007clp.pbf
  std::vector<std::string> damaged;       // names of files that lie there and are not whole
  std::vector<std::string> without_data;  // names of whole files without a single line
  std::vector<std::string> outdated;      // names of files older than their contours
};
// Looks for the clips in one folder. The contours that they were cut from lie in the others.
ClippedContours find_clipped_contours(const std::vector<std::string>& cells, const std::string& clip_folder,
                                      const std::vector<std::string>& contour_folders);

// One line for each file that is missing or damaged.
std::vector<std::string> lines_of_missing(const ClippedContours& clips);
// One sentence for the files without lines and one for the outdated ones; "" when there are none.
std::string notes_on(const ClippedContours& clips);

}  // namespace ferrowen
