// The system's own words for the failure of a call.
#pragma once

#include <string>

namespace ferrowen::platform {

// Of the call that failed last in this thread (errno, on Windows GetLastError).
std::string last_error_text();
// Of a given error number.
std::string error_text(unsigned long code);

}  // namespace ferrowen::platform
