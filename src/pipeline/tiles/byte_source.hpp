// Bytes that are looked at in pieces: a text in memory or a file that is too large to be read whole.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

namespace ferrowen {

class ByteSource {
 public:
  ByteSource() = default;
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  [[nodiscard]] virtual std::uint64_t size() const = 0;
  // Fewer bytes than wanted when the source ends before, or cannot be read there.
  [[nodiscard]] virtual std::string read(std::uint64_t offset, std::size_t count) = 0;
};

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : m_bytes(bytes) {}
  [[nodiscard]] std::uint64_t size() const override { return m_bytes.size(); }
  [[nodiscard]] std::string read(std::uint64_t offset, std::size_t count) override;

 private:
  std::string_view m_bytes;
};

class FileSource : public ByteSource {
 public:
  explicit FileSource(const std::string& path);
  [[nodiscard]] bool is_open() const { return m_file.is_open(); }
  // True when the file gave fewer bytes than its size promised.
  [[nodiscard]] bool read_failed() const { return m_read_failed; }
  [[nodiscard]] std::uint64_t size() const override { return m_size; }
  [[nodiscard]] std::string read(std::uint64_t offset, std::size_t count) override;

 private:
  std::ifstream m_file;
  std::uint64_t m_size = 0;
  bool m_read_failed = false;
};

}  // namespace ferrowen
