#include "mp/mp_file.hpp"

#include "base/files.hpp"
#include "platform/files.hpp"

namespace ferrowen {

MpFile::~MpFile() {
  if (!m_is_open || m_is_in_place) return;
  // Windows removes no file that is still open.
  static_cast<void>(m_file.finish());
  static_cast<void>(remove_file(neighbour()));
}

bool MpFile::write(std::string_view text) {
  if (!m_problem.empty()) return false;
  if (!m_is_open) {
    if (folder_exists(m_path)) m_problem = m_path + ": a folder of this name is in the way";
    if (!m_problem.empty()) return false;
    // What a run that was killed has left behind, be it a link.
    static_cast<void>(remove_file(neighbour()));
    const std::string opened = m_file.open(neighbour());
    m_is_open = opened.empty();
    m_problem = opened.empty() ? "" : m_path + ": " + opened;
  }
  if (m_problem.empty()) {
    const std::string written = m_file.write(text);
    if (!written.empty()) m_problem = m_path + ": " + written;
  }
  return m_problem.empty();
}

Status MpFile::put_in_place() {
  if (!m_problem.empty()) return {m_problem};
  std::string problem = m_file.finish();
  if (problem.empty()) problem = platform::replace_file(neighbour(), m_path);
  m_is_in_place = problem.empty();
  if (!problem.empty()) m_problem = m_path + ": " + problem;
  return {m_problem};
}

}  // namespace ferrowen
