#include "pipeline/tiles/byte_source.hpp"

#include <algorithm>

#include "base/files.hpp"

namespace ferrowen {

std::string MemorySource::read(std::uint64_t offset, std::size_t count) {
  if (offset >= m_bytes.size()) return "";
  return std::string(m_bytes.substr(static_cast<std::size_t>(offset), count));
}

FileSource::FileSource(const std::string& path) : m_size(file_size(path)) {
  // The pieces are small and far apart: a buffer would read kilobytes for each of them.
  m_file.rdbuf()->pubsetbuf(nullptr, 0);
  m_file.open(path, std::ios::binary);
}

std::string FileSource::read(std::uint64_t offset, std::size_t count) {
  if (offset >= m_size) return "";
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, m_size - offset));
  std::string bytes(wanted, '\0');
  m_file.clear();
  m_file.seekg(static_cast<std::streamoff>(offset));
  m_file.read(bytes.data(), static_cast<std::streamsize>(wanted));
  const auto got = static_cast<std::size_t>(std::max<std::streamsize>(m_file.gcount(), 0));
  if (got < wanted) m_read_failed = true;
  bytes.resize(got);
  return bytes;
}

}  // namespace ferrowen
