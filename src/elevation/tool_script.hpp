// Runs one of the console scripts of the elevation work and waits for its end.
#pragma once

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
  // Judges every file; returns the paths whose result is not good, in order. The error tells of files that
  // could not be put in order.
  Result<std::vector<std::string>> settle(const std::function<bool(const std::string&)>& is_good);
  // How many are there now.
  [[nodiscard]] std::size_t found() const;
  [[nodiscard]] std::size_t count() const;

 private:
  struct File;
  std::vector<File> m_files;
};

// osmconvert makes files that its user alone can read.
Status make_readable(const std::string& path);

}  // namespace ferrowen
