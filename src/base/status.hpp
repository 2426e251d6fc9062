// Outcome of a routine that can fail: no exceptions cross a room, the error is a text for a person.
#pragma once

#include <string>
#include <utility>

namespace ferrowen {

struct [[nodiscard]] Status {
  std::string error;  // empty: it worked
  [[nodiscard]] bool ok() const { return error.empty(); }
};

template <typename Value>
struct [[nodiscard]] Result {
  Value value{};
  std::string error;  // empty: it worked
  [[nodiscard]] bool ok() const { return error.empty(); }
};

template <typename Value>
Result<Value> failed(std::string error) {
  return {Value{}, std::move(error)};
}

}  // namespace ferrowen
