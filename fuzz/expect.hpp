// A property that must hold for every input of a fuzz target.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace ferrowen::fuzz {

inline void expect(bool holds, std::string_view property) {
  if (holds) return;
  std::cerr << "does not hold: " << property << '\n';
  std::abort();
}

inline std::string_view text_of(const unsigned char* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace ferrowen::fuzz
