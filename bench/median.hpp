// Median of many runs of the same work, in processor time: other programs that run meanwhile do not count.
#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

namespace ferrowen::bench {

template <typename Work>
double median_milliseconds(int runs, Work work) {
  std::vector<double> times;
  for (int run = 0; run < runs; ++run) {
    const std::clock_t start = std::clock();
    work();
    times.push_back(1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  const auto middle = times.begin() + runs / 2;
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

}  // namespace ferrowen::bench
