// The contour lines of one cell, from file to file.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "base/status.hpp"
#include "contours/cell.hpp"
#include "contours/contour_classes.hpp"
#include "contours/trace.hpp"

namespace ferrowen {

struct ContourOptions {
  Levels levels;
  std::size_t least_points = 3;
  double least_extent = 0.00016;  // degrees
  double tolerance = 0.12;        // distances between two samples
  ContourClasses classes;
};

struct ContourJob {
  Cell cell;
  std::string source;  // the cell's file, or the folder in which it is looked for
  std::string output;
};

struct ContourReport {
  std::string source;  // the file that was read
  int samples = 0;     // per row
  std::size_t lines = 0, points = 0;
  bool only_voids = false;
};

enum class ContourOutcome : std::uint8_t { done, unreadable_cell, failed };

struct ContourResult {
  ContourOutcome outcome = ContourOutcome::done;
  std::string error;
  ContourReport report;
};

// A cell without heights, or without lines, gives a file without lines.
ContourResult make_contours(const ContourJob& job, const ContourOptions& options,
                            const std::function<bool()>& stopped);

}  // namespace ferrowen
