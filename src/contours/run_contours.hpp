// The program ferrowen-contours: arguments in, exit status out.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace ferrowen {

enum class ContourStatus : int { done = 0, failed = 1, wrong_usage = 2, file_exists = 3 };

// Several cells are worked on at the same time; what is said about them comes in their order. With several
// failures the smallest status counts.
ContourStatus run_contours(const std::vector<std::string>& arguments, std::ostream& output,
                           std::ostream& error);

}  // namespace ferrowen
