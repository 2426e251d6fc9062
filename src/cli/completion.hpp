// Shell completion: what a shell may offer behind "ferrowen", made from the command line's own description.
#pragma once

#include <string>

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave itself
class App;
}

namespace ferrowen {

// Function for bash (with the helpers of the bash-completion package).
std::string bash_completion(const CLI::App& app);
// Function for zsh, to be kept as "_ferrowen" in a folder of its fpath.
std::string zsh_completion(const CLI::App& app);

}  // namespace ferrowen
