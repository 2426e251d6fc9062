// Programs of others that run on this machine: the files that they hold, closing them, starting one.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ferrowen::platform {

// True when another program has the file open so that it cannot be replaced. Only Windows knows that.
bool is_held_by_other(const std::string& path);
// Asks every top-level window to close whose title, in lower case, holds one of these texts (Windows alone).
// The number of windows that were asked.
int close_windows_titled(const std::vector<std::string>& parts);
// True when Wine's server runs for this prefix. Only systems with /proc know that.
bool wine_server_runs(const std::string& prefix);

// Starts a program with these words, after asking for an administrator's rights where the system has them
// ("runas"), and waits for its end; `tick` is called several times a second. "" or the system's reason.
std::string run_elevated(const std::string& program, const std::string& parameters, const std::string& folder,
                         const std::function<void()>& tick);
// Starts a program with a window of its own and does not wait for it. "" or the system's reason.
std::string start_detached(const std::vector<std::string>& words, const std::string& folder,
                           const std::vector<std::pair<std::string, std::string>>& environment);

}  // namespace ferrowen::platform
