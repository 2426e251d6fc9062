// Runs one of the console scripts of the elevation work and waits for its end.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"
#include "runner/console_script.hpp"
#include "runner/visible_run.hpp"

namespace ferrowen {

// "clip.cmd", elsewhere "clip.sh".
std::string script_name(std::string_view name);

struct ToolScript {
  ConsoleScript script;
  std::string path;    // where it is written, replacing an old one
  std::string folder;  // working folder of the run
  bool hidden = false;
  std::function<void()> tick;
};

// Offers to close a console window of an earlier run, writes the script and runs it to its end. The error
// says why it did not run; the results are for the caller to judge.
Result<VisibleRunEnd> run_tool_script(const Workspace& workspace, Prompts& prompts, Progress& progress,
                                      const ToolScript& script);

// Expected results of a tool that write over older files: those are put aside before the run, and each comes
// back unless its new one is good. What the run left of a bad one is removed.
class ExpectedFiles {
 public:
  explicit ExpectedFiles(std::vector<std::string> paths);
  ~ExpectedFiles();
  ExpectedFiles(const ExpectedFiles&) = delete;
  ExpectedFiles& operator=(const ExpectedFiles&) = delete;
  Status clear_the_way();
  // Judges every file that was put aside, or that was not there: what lies in the place of another one is
  // older than the run and is not touched. Returns the paths whose result is not good, in order. The error
  // tells of files that could not be put in order.
  Result<std::vector<std::string>> settle(const std::function<bool(const std::string&)>& is_good);
  // How many are there now.
  [[nodiscard]] std::size_t found() const;
  [[nodiscard]] std::size_t count() const;

 private:
  struct File;
  std::vector<File> m_files;
};

// What a failed osmconvert wrote is no result, and its status alone tells a damaged input. Status 92 is its
// warning about an unusual order of a whole file.
enum class Discard : std::uint8_t { file, contents };
// Lines behind a run of the tool that delete the file, or empty it, when the run has failed.
void add_discarding(const std::string& path, Discard what, Dialect dialect, ConsoleScript& console);

// osmconvert makes files that its user alone can read.
Status make_readable(const std::string& path);

}  // namespace ferrowen
