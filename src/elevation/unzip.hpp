// Unpacks all zip archives of a folder into it, with 7-Zip. Archives are looked into first: what leads out of
// the folder, links, or holds heights of a wrong size is refused. What comes out must have the checksum that
// its archive holds.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "runner/console_script.hpp"

namespace ferrowen {

inline constexpr const char* seven_zip_missing = "Cannot locate 7zip";
inline constexpr const char* seven_zip_missing_for_contours = "Please locate 7z.exe  (Contours,Unzip)";

// Names of the zip archives in a folder, whatever the case of their endings.
std::vector<std::string> zip_archives(const std::string& folder);

// `endings` are those that the archives have; in a batch file their case does not count. With `archives`,
// names in the folder, these alone are unpacked.
Result<ConsoleScript> unzip_script(const std::string& seven_zip, const std::string& folder, Dialect dialect,
                                   const std::set<std::string>& endings = {".zip"},
                                   const std::vector<std::string>& archives = {});

struct UnzipReport {
  StageResult result = StageResult::stopped;
  std::vector<std::string> files;    // names of what was unpacked
  std::vector<std::string> failed;   // names of what did not come out whole
  std::vector<std::string> refused;  // archives that were left alone
};
// `missing_tool` is the message for a 7-Zip that is not there. Files of an earlier unpacking come back where
// the new ones are not good. A refused archive does not hinder the others; the result is then `failed`.
UnzipReport unzip(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& folder,
                  const char* missing_tool = seven_zip_missing);

// Names of the archives in a folder that hold heights of one of these cells, whatever the archive is called.
std::vector<std::string> archives_with_cells(const std::string& folder,
                                             const std::vector<std::string>& cells);

}  // namespace ferrowen
