// Running mkgmap and judging what it left.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/build_plan.hpp"
#include "runner/visible_run.hpp"

namespace ferrowen {

enum class Verdict : std::uint8_t {
  good,
  doubtful,    // every file is there, but the tool complained
  incomplete,  // some of what was expected is missing
  nothing,     // all of it is
};

struct Judgement {
  Verdict verdict = Verdict::nothing;
  std::vector<std::string> reasons;  // in order of weight, one line each
};

struct ResultFile {
  std::string path;
  std::uint64_t size = 0;
  bool newer_than_start = false;
};

// Pure: files first, then the tool's own counters and level words, then its exit status, then "parabola".
Judgement judge_build(const std::vector<ResultFile>& expected, const VisibleRunEnd& run,
                      std::string_view java_log);
// Lines of a tool's output that say what went wrong (level words, "Error", exception counters above 0, ...).
std::vector<std::string> complaints(std::string_view output);
// The explanation shown after a failure, with what the tool itself said at its end.
std::string failure_explanation(const Judgement& judgement, const Settings& settings);

// Files that this build is expected to leave in the output folder.
std::vector<std::string> expected_files(const Settings& settings, const BuildPlan& plan,
                                        const std::string& output_folder);
// Names of everything else that a build of these settings may write there.
std::vector<std::string> further_files(const Settings& settings, const BuildPlan& plan,
                                       const std::string& output_folder);
// Progress bar (0 to 1) from the number of images found.
double build_fraction(std::size_t expected, std::size_t found);

}  // namespace ferrowen
