// What CreateProcessA is given for a request: quoting, the detour of batch files through cmd.exe, and the
// environment.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/process.hpp"

namespace ferrowen::platform {

struct Command {
  std::string application;  // full path; empty: the system takes the line apart itself
  std::string line;
  std::string error;  // not empty: this request cannot be run
};
Command make_command(const ProcessRequest& request);

// One argument as CommandLineToArgvW and the C run-time read it back.
std::string quoted_argument(std::string_view argument);

// The whole environment of this process with some variables replaced or added, in UTF-16.
std::wstring environment_block(const std::vector<std::pair<std::string, std::string>>& changes);

// Path of a program: a name with a folder is taken from `folder` when relative, another one is looked up in
// the folders of `search_path`; extensions are tried in the system's order. "" when there is none.
std::string locate_program(const std::string& name, const std::string& search_path,
                           const std::string& folder);

}  // namespace ferrowen::platform
