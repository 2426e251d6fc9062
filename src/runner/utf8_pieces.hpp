// Text that arrives in pieces of bytes, handed on so that no UTF-8 character is shown in two halves.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "base/text.hpp"

namespace ferrowen {

class Utf8Pieces {
 public:
  // What can be shown now. At most three bytes are held back, and only until the next piece comes.
  std::string take(std::string_view piece) {
    m_unfinished += piece;
    const std::size_t tail = unfinished_utf8_tail(m_unfinished);
    std::string whole = m_unfinished.substr(0, m_unfinished.size() - tail);
    m_unfinished.erase(0, whole.size());
    return whole;
  }
  // What is left when nothing more comes.
  std::string rest() { return std::exchange(m_unfinished, ""); }

 private:
  std::string m_unfinished;
};

}  // namespace ferrowen
