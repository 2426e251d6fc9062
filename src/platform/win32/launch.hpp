// CreateProcessA with only the wanted handles inherited, inside a job that holds the whole group.
#pragma once

#include <string>

#include "platform/process.hpp"
#include "platform/win32/handle.hpp"

namespace ferrowen::platform {

struct Launched {
  Handle process;
  Handle job;  // not open when the system refused to put the process into one
  DWORD id = 0;
  std::string error;
};
// `output` becomes standard output and error; null: the process gets a console of its own.
Launched launch(const ProcessRequest& request, HANDLE output);

}  // namespace ferrowen::platform
