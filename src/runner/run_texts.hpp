// Texts that a running script sends back, piece by piece: shown as they come, kept up to a limit, and looked
// through for words without reading anything twice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/prompts.hpp"
#include "runner/utf8_pieces.hpp"

namespace ferrowen {

// One stream of a run: what the script printed, or its error file.
class RunText {
 public:
  explicit RunText(Progress& progress) : m_progress(progress) {}

  void add(std::string_view piece);
  // Shows what is left of a character that was never finished.
  void finish();
  [[nodiscard]] bool has_news() const { return m_window.size() > m_seen; }
  // What has come since the last call, behind the last bytes of what came before. To be called often: until
  // then it is all kept.
  const std::string& news();
  [[nodiscard]] std::uint64_t total() const { return m_total; }
  // The last bytes of everything.
  [[nodiscard]] std::string kept() const;

 private:
  Progress& m_progress;
  Utf8Pieces m_pieces;
  std::string m_kept;
  std::string m_window;
  std::uint64_t m_total = 0;
  std::size_t m_seen = 0;  // bytes of the window that an earlier call has handed out
};

// Follows a file that another process writes to.
class FileFollower {
 public:
  FileFollower(std::string path, RunText& text) : m_path(std::move(path)), m_text(text) {}
  // Hands on what has been written since the last call, at most `limit` bytes; true when there was something.
  bool follow(std::uint64_t limit);

 private:
  std::string m_path;
  RunText& m_text;
  std::uint64_t m_offset = 0;
};

}  // namespace ferrowen
