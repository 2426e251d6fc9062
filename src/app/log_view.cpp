#include "app/log_view.hpp"

#include <fstream>

#include "app/tool_words.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_no_log = 80, message_no_log_at = 158;

LogLevel level_of(std::string_view line) {
  if (is_warning_line(line)) return LogLevel::warning;
  if (names_a_failure(line)) return LogLevel::error;
  return is_information_line(line) ? LogLevel::information : LogLevel::plain;
}

// The end of a file, from the first line that is there whole.
Result<LogView> read_end(const std::string& path, std::uint64_t limit) {
  const std::uint64_t size = file_size(path);
  LogView view;
  view.path = path;
  std::ifstream file(platform::file_system_path(path), std::ios::binary);
  view.left_out = size > limit ? size - limit : 0;
  file.seekg(static_cast<std::streamoff>(view.left_out));
  std::string bytes(static_cast<std::size_t>(size - view.left_out), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file) return failed<LogView>(path + ": cannot be read");
  if (view.left_out > 0) {
    const std::size_t line_end = bytes.find('\n');
    const std::size_t cut = line_end == std::string::npos ? 0 : line_end + 1;
    view.left_out += cut;
    bytes.erase(0, cut);
  }
  view.lines = classify_log(decode_tool_text(bytes));
  return {std::move(view), ""};
}

bool is_kept(const Settings& settings, LogFile which) {
  return which == LogFile::mkgmap_log ? settings.keep_log : settings.keep_error_stream;
}

}  // namespace

std::vector<LogLine> classify_log(std::string_view text) {
  std::vector<LogLine> lines;
  LogLevel previous = LogLevel::plain;
  for (std::string& line : split_lines(text)) {
    if (!is_stack_line(line)) previous = level_of(line);
    lines.push_back({std::move(line), previous});
  }
  return lines;
}

std::string log_path(const Workspace& workspace, LogFile which) {
  return workspace.path(which == LogFile::mkgmap_log ? file_name::mkgmap_log : file_name::error_stream);
}

Result<LogView> load_log(const Workspace& workspace, LogFile which, std::uint64_t limit) {
  const std::string path = log_path(workspace, which);
  if (file_exists(path) && !folder_exists(path)) return read_end(path, limit);
  if (!is_kept(workspace.settings, which)) return failed<LogView>(workspace.message(message_no_log));
  return failed<LogView>(workspace.message(message_no_log_at) + path);
}

}  // namespace ferrowen
