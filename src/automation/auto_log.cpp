#include "automation/auto_log.hpp"

#include <cstdint>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_bytes = std::size_t{8} << 20;

// Scripts of one name in different folders have logs of their own: the folder's sum stands in the name,
// except for the folder of scripts. (FNV-1a)
std::string log_name(const Workspace& workspace, const std::string& script) {
  const std::string folder = platform::folder_of(script);
  if (same_file(folder, workspace.settings.scripts_folder)) return platform::name_of(script);
  std::uint32_t sum = 2166136261U;
  for (const char c : folder)
    sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
  return platform::name_of(script) + "-" + std::to_string(sum);
}

}  // namespace

AutoLog::AutoLog(const Workspace& workspace, const std::string& script)
    : m_path(platform::join(workspace.path("logs"), log_name(workspace, script) + ".log")) {
  m_opened = make_folder(platform::folder_of(m_path));
  if (m_opened.ok()) m_file.open(platform::file_system_path(m_path), std::ios::binary | std::ios::trunc);
}

void AutoLog::line(std::string_view text) { write(std::string(trim(text)) + "\n"); }

void AutoLog::tool_output(std::string_view text) {
  if (m_full) return;
  m_full = m_size + text.size() > most_bytes;
  m_size += text.size();
  write(m_full ? std::string_view("\n[...]\n") : text);
}

// Texts come in pieces: a CR at the end of one and the LF of the next belong together.
void AutoLog::write(std::string_view text) {
  if (text.empty()) return;
  if (m_ends_with_cr && text.front() == '\n') {
    m_file << '\n';
    text.remove_prefix(1);
  }
  m_ends_with_cr = text.ends_with('\r');
  m_file << with_crlf(text) << std::flush;
}

Status AutoLog::finish(std::string_view report) {
  if (!m_opened.ok()) return m_opened;
  write("\n" + std::string(report));
  m_file.close();
  return m_file.fail() ? Status{m_path + ": cannot be written"} : Status{};
}

void LoggedProgress::status(std::string_view text) {
  if (!trim(text).empty()) m_log.line(text);
  m_progress.status(text);
}

void LoggedProgress::output(std::string_view text) {
  m_log.tool_output(text);
  m_progress.output(text);
}

void LoggedProgress::command(std::string_view text) {
  m_log.line(text);
  m_progress.command(text);
}

}  // namespace ferrowen
