#include "cli/near_names.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_names = 3;
constexpr std::size_t least_typing_errors = 2;
constexpr std::size_t shortest_part = 3;  // of a name that is found in a longer one

bool is_near(std::string_view name, std::string_view other, std::size_t distance) {
  if (name.size() >= shortest_part && contains(other, name)) return true;
  return distance <= std::max(least_typing_errors, name.size() / 3) && distance < other.size();
}

}  // namespace

std::size_t edit_distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

std::vector<std::string> near_names(std::string_view name, const std::vector<std::string_view>& names) {
  const std::string lower = lower_ascii(name);
  std::vector<std::pair<std::size_t, std::string_view>> found;
  for (const std::string_view other : names) {
    const std::size_t distance = edit_distance(lower, lower_ascii(other));
    if (is_near(lower, lower_ascii(other), distance)) found.emplace_back(distance, other);
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  if (found.size() > most_names) found.resize(most_names);
  std::vector<std::string> near;
  near.reserve(found.size());
  for (const auto& [distance, other] : found)
    near.emplace_back(other);
  return near;
}

}  // namespace ferrowen
