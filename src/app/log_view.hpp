// What the log viewer shows: the lines of mkgmap's log or of the tools' error output, each with its weight.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/status.hpp"

namespace ferrowen {

enum class LogLevel : std::uint8_t { plain, information, warning, error };

struct LogLine {
  std::string text;
  LogLevel level = LogLevel::plain;
};

// A stack trace has the level of the line that it belongs to.
std::vector<LogLine> classify_log(std::string_view text);

enum class LogFile : std::uint8_t { mkgmap_log, error_stream };

struct LogView {
  std::string path;
  std::vector<LogLine> lines;
  std::uint64_t left_out = 0;  // bytes at the beginning of a file that is too long to be shown whole
};

std::string log_path(const Workspace& workspace, LogFile which);
// The file as it is now, its last `limit` bytes when it is longer. The error is message 80 for a log that the
// settings do not ask for, message 158 with the path for one that should be there.
Result<LogView> load_log(const Workspace& workspace, LogFile which, std::uint64_t limit = 4ULL << 20);

}  // namespace ferrowen
