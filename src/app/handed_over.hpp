// A file that a second start of the program gives to the one that runs in the same program folder.
#pragma once

#include <chrono>
#include <string>

#include "app/program_folder.hpp"

namespace ferrowen {

// Leaves the path of `file` in the program folder until the running program has taken it. False when nobody
// takes it within `patience` (a build goes on, a question is open, it has no window) or it cannot be left;
// it is taken back then.
bool hand_over(const ProgramFolder& folder, const std::string& file,
               std::chrono::milliseconds patience = std::chrono::seconds(2));

// The path that was left, once; "" when there is none.
std::string take_handed_over(const ProgramFolder& folder);

}  // namespace ferrowen
