#include "platform/flushed_file.hpp"

#include <windows.h>

#include <algorithm>

#include "platform/error_text.hpp"

namespace ferrowen::platform {
namespace {

// The handle travels as a number; -1 is the system's own value for none.
HANDLE as_handle(std::intptr_t number) {
  return reinterpret_cast<HANDLE>(number);  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace

FlushedFile::~FlushedFile() {
  if (m_handle != -1) CloseHandle(as_handle(m_handle));
}

std::string FlushedFile::open(const std::string& path) {
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return last_error_text();
  m_handle = reinterpret_cast<std::intptr_t>(file);
  return "";
}

std::string FlushedFile::write(std::string_view bytes) {
  constexpr std::size_t most_at_once = 64U << 20U;
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), most_at_once));
    DWORD count = 0;
    if (WriteFile(as_handle(m_handle), bytes.data(), wanted, &count, nullptr) == 0) return last_error_text();
    bytes.remove_prefix(count);
  }
  return "";
}

std::string FlushedFile::finish() {
  const HANDLE file = as_handle(m_handle);
  if (FlushFileBuffers(file) == 0) return last_error_text();
  m_handle = -1;
  return CloseHandle(file) != 0 ? "" : last_error_text();
}

}  // namespace ferrowen::platform
