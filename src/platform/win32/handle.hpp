// Owner of a system handle.
#pragma once

#include <windows.h>

#include <utility>

namespace ferrowen::platform {

class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~Handle() { reset(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle(Handle&& other) noexcept : m_handle(other.release()) {}
  Handle& operator=(Handle&& other) noexcept {
    reset(other.release());
    return *this;
  }

  [[nodiscard]] HANDLE get() const { return m_handle; }
  [[nodiscard]] bool is_open() const { return m_handle != nullptr; }
  HANDLE release() { return std::exchange(m_handle, nullptr); }
  void reset(HANDLE handle = nullptr) {
    const HANDLE old = std::exchange(m_handle, handle);
    if (old != nullptr) CloseHandle(old);
  }

 private:
  HANDLE m_handle = nullptr;
};

}  // namespace ferrowen::platform
