#include "runner/run_texts.hpp"

#include <algorithm>
#include <fstream>

#include "base/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t kept_size = std::size_t{4} << 20;
constexpr std::size_t overlap_size = 4096;

// The last `size` bytes, beginning with a whole character.
std::string_view last_bytes(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  text.remove_prefix(text.size() - size);
  constexpr int longest_character = 4;
  for (int i = 1; i < longest_character && !text.empty() && (text.front() & 0xC0) == 0x80; ++i)
    text.remove_prefix(1);
  return text;
}

}  // namespace

void RunText::add(std::string_view piece) {
  m_total += piece.size();
  m_kept += piece;
  m_window += piece;
  // Cut now and then, not at every piece: moving the text costs as much as it is long.
  if (m_kept.size() > 2 * kept_size) m_kept.erase(0, m_kept.size() - kept_size);
  const std::string whole = m_pieces.take(piece);
  if (!whole.empty()) m_progress.output(whole);
}

void RunText::finish() {
  const std::string rest = m_pieces.rest();
  if (!rest.empty()) m_progress.output(rest);
}

const std::string& RunText::news() {
  m_window.erase(0, m_seen - std::min(m_seen, overlap_size));
  m_seen = m_window.size();
  return m_window;
}

std::string RunText::kept() const { return std::string(last_bytes(m_kept, kept_size)); }

bool FileFollower::follow(std::uint64_t limit) {
  const std::uint64_t size = m_path.empty() ? 0 : file_size(m_path);
  if (size < m_offset) m_offset = 0;  // the script has begun the file anew
  if (size == m_offset) return false;
  std::ifstream file(platform::file_system_path(m_path), std::ios::binary);
  file.seekg(static_cast<std::streamoff>(m_offset));
  std::string bytes(static_cast<std::size_t>(std::min(size - m_offset, limit)), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  m_offset += bytes.size();
  if (!bytes.empty()) m_text.add(bytes);
  return !bytes.empty();
}

}  // namespace ferrowen
