// Starting a program: everything that may fail or allocate happens before the fork, and a failure between
// fork and exec comes back to the parent with its reason.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace ferrowen::platform {

struct SpawnPlan {
  std::vector<std::string> words;        // the program as given, then its arguments
  std::vector<std::string> environment;  // NAME=VALUE
  std::string folder;                    // working folder; empty: this process's own
  int output = -1;                       // becomes standard output and standard error
  int niceness = 0;                      // as nice(1) counts it
  bool detached = false;                 // a session of its own; nobody waits for it
};

struct SpawnResult {
  pid_t process = -1;  // leader of a new process group; -1 when detached or not started
  std::string error;
};
SpawnResult spawn(const SpawnPlan& plan);

// The environment of this process with some variables replaced or added.
std::vector<std::string> changed_environment(const std::vector<std::pair<std::string, std::string>>& changes);

// Path of a program by the rules of exec: a name with "/" is a path (from `folder`, when relative), another
// one is looked up in the folders of `search_path`. "" with errno set when there is none.
std::string locate_program(const std::string& name, const std::string& search_path,
                           const std::string& folder);
// The value of PATH, or the system's own when there is none.
std::string search_path_of(const std::vector<std::string>& environment);

}  // namespace ferrowen::platform
