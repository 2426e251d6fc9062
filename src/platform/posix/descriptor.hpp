// Owner of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace ferrowen::platform {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : m_number(number) {}
  ~Descriptor() { reset(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : m_number(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    reset(other.release());
    return *this;
  }

  [[nodiscard]] int get() const { return m_number; }
  [[nodiscard]] bool is_open() const { return m_number >= 0; }
  int release() { return std::exchange(m_number, -1); }
  void reset(int number = -1) {
    const int old = std::exchange(m_number, number);
    if (old >= 0) ::close(old);
  }

 private:
  int m_number = -1;
};

}  // namespace ferrowen::platform
