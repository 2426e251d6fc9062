// The entry of the command-line program.
#pragma once

#include <string>
#include <vector>

#include "cli/streams.hpp"

namespace ferrowen {

// Runs one command line (without the program's name) and returns the exit status.
int run_ferrowen(const std::vector<std::string>& arguments, Streams& streams);

}  // namespace ferrowen
