#include "base/verified_copy.hpp"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "base/files.hpp"
#include "platform/files.hpp"
#include "platform/flushed_file.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t block_size = std::size_t{1} << 20;
constexpr std::string_view unfinished_ending = ".new";

class SourceFile {
 public:
  explicit SourceFile(const std::string& path)
      : m_file(platform::file_system_path(path), std::ios::binary), m_block(block_size, '\0') {}

  // The next block; "" at the end, and after an error, which is then to be seen in `failed`.
  std::string_view next() {
    m_file.read(m_block.data(), static_cast<std::streamsize>(m_block.size()));
    return std::string_view(m_block).substr(0, static_cast<std::size_t>(m_file.gcount()));
  }
  [[nodiscard]] bool failed() const { return !m_file.is_open() || m_file.bad(); }

 private:
  std::ifstream m_file;
  std::string m_block;
};

class VerifiedCopy {
 public:
  VerifiedCopy(const std::string& from, const std::string& to, const CopyProgress& progress,
               const std::string& stopped)
      : m_from(from),
        m_to(to),
        m_neighbour(to + std::string(unfinished_ending)),
        m_progress(progress),
        m_stopped(stopped),
        m_size(file_size(from)) {}

  ~VerifiedCopy() {
    if (m_begun) static_cast<void>(remove_file(m_neighbour));
  }
  VerifiedCopy(const VerifiedCopy&) = delete;
  VerifiedCopy& operator=(const VerifiedCopy&) = delete;

  Status run() {
    if (folder_exists(m_to)) return {m_to + ": a folder of this name is in the way"};
    if (Status written = write(); !written.ok()) return written;
    if (Status same = compare(); !same.ok()) return same;
    const Status named = rename_file(m_neighbour, m_to);
    return named.ok() ? named : Status{m_to + ": " + named.error};
  }

 private:
  // Writing is the first half of the way, reading back the second.
  bool go_on(std::uint64_t done, double before) {
    const double share = m_size == 0 ? 1 : static_cast<double>(done) / static_cast<double>(m_size);
    return !m_progress || m_progress(before + share / 2);
  }

  Status write() {
    // What a run that was killed has left under this name is no copy of anything.
    if (Status cleared = remove_file(m_neighbour); !cleared.ok()) return cleared;
    SourceFile source(m_from);
    if (source.failed()) return {m_from + ": cannot be opened"};
    platform::FlushedFile copy;
    std::string problem = copy.open(m_neighbour);
    m_begun = problem.empty();
    std::uint64_t done = 0;
    for (std::string_view block = source.next(); problem.empty() && !block.empty(); block = source.next()) {
      problem = copy.write(block);
      done += block.size();
      if (problem.empty() && !go_on(done, 0)) return {m_stopped};
    }
    if (problem.empty() && (source.failed() || done != m_size)) return {m_from + ": cannot be read"};
    if (problem.empty()) problem = copy.finish();
    return {problem.empty() ? "" : m_to + ": " + problem};
  }

  Status compare() {
    if (file_size(m_neighbour) != m_size) return {m_to + ": the copy has not the size of " + m_from};
    SourceFile source(m_from);
    SourceFile copy(m_neighbour);
    std::uint64_t done = 0;
    while (done < m_size) {
      const std::string_view block = source.next();
      if (block.empty() || copy.next() != block) return {m_to + ": the copy differs from " + m_from};
      done += block.size();
      if (!go_on(done, 0.5)) return {m_stopped};
    }
    return {};
  }

  const std::string& m_from;
  const std::string& m_to;
  std::string m_neighbour;
  const CopyProgress& m_progress;
  const std::string& m_stopped;
  std::uint64_t m_size;
  bool m_begun = false;
};

}  // namespace

Status copy_verified(const std::string& from, const std::string& to, const CopyProgress& progress,
                     const std::string& stopped) {
  return VerifiedCopy(from, to, progress, stopped).run();
}

}  // namespace ferrowen
