// The words for the result of a stage, as reports and --json write them.
#pragma once

#include <string_view>

#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

inline std::string_view result_word(StageResult result) {
  switch (result) {
    case StageResult::done:
      return "done";
    case StageResult::stopped:
      return "stopped";
    case StageResult::failed:
      return "failed";
    case StageResult::cancelled:
      break;
  }
  return "cancelled";
}

}  // namespace ferrowen
