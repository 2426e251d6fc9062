// A visible run: a console script in a console window of its own (Windows) or as a child in its own process
// group whose output comes back live through Progress::output (elsewhere). Its end is the end of its process.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen {

struct VisibleRunRequest {
  std::string script_path;
  std::string folder;  // working folder
  // A file that the script sends its error stream to (relative: in the working folder); one of an earlier
  // run is removed first. Followed live when not empty.
  std::string error_file;
  std::vector<std::pair<std::string, std::string>> environment;
  bool hidden = false;         // Windows: without a console window, its output is captured as elsewhere
  int priority = 0;            // -3 (lowest) to 3 (highest)
  std::function<void()> tick;  // called several times a second while the run lasts
  std::function<bool(const std::string&)>
      must_end;  // output so far shows that the run will never end by itself
  // Asked several times a second, with the number of bytes printed so far: what else keeps the run from ever
  // ending by itself; "" for nothing.
  std::function<std::string(std::uint64_t)> obstacle;
};

struct VisibleRunEnd {
  bool started = false;
  bool cancelled = false;  // by the person
  bool given_up = false;   // by must_end or for an obstacle
  int exit_status = 0;
  double seconds = 0;
  std::string output;      // what the script printed (as far as this system lets it be captured)
  std::string error_text;  // content of the error file
  std::string problem;     // why it could not be started, or the obstacle
};

// Starts the script and waits for its end; a stop request ends the whole process group. Processes that the
// script leaves behind in its group are ended too.
VisibleRunEnd run_visible(const VisibleRunRequest& request, Progress& progress);

// Closes a console window left open by an earlier visible run (none on systems without console windows).
// With `ask`, message_205 is asked first and No leaves it open. True when no such window is left.
bool close_dos(bool ask, const std::string& message_205, Prompts& prompts, Progress& progress);
// True when such a window exists.
bool finddos();

}  // namespace ferrowen
