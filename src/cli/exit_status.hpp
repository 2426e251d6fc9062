// The exit statuses of the program; scripts rely on them.
#pragma once

#include <string_view>

#include "pipeline/tiles/result_word.hpp"

namespace ferrowen {

enum class ExitStatus : int { done = 0, run_failed = 1, wrong_usage = 2, stopped = 3 };

inline ExitStatus exit_status_of(StageResult result) {
  switch (result) {
    case StageResult::done:
      return ExitStatus::done;
    case StageResult::stopped:
      return ExitStatus::stopped;
    case StageResult::failed:
    case StageResult::cancelled:
      break;
  }
  return ExitStatus::run_failed;
}

// Who asked for all of it has not got it when a part is missing.
inline StageResult failed_in_part(StageResult result, bool part_is_missing) {
  return result == StageResult::done && part_is_missing ? StageResult::failed : result;
}

inline std::string_view result_word(ExitStatus status) {
  switch (status) {
    case ExitStatus::done:
      return "done";
    case ExitStatus::run_failed:
      return "failed";
    case ExitStatus::wrong_usage:
      return "wrong usage";
    case ExitStatus::stopped:
      break;
  }
  return "stopped";
}

}  // namespace ferrowen
