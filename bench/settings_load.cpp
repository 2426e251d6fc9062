// Time to load a settings file of 500 lines: reading it whole and parsing it into the record.
// Prints the median of many loads in milliseconds, and the time of reading the bytes alone as the peer.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <vector>

#include "app/settings.hpp"
#include "base/files.hpp"
#include "base/text.hpp"

namespace {

constexpr int runs = 501;
constexpr int file_lines = 500;

template <typename Work>
double median_milliseconds(Work work) {
  std::vector<double> times;
  for (int run = 0; run < runs; ++run) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    times.push_back(time.count());
  }
  std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
  return times[runs / 2];
}

}  // namespace

int main() {
  const std::string path = (std::filesystem::temp_directory_path() / "ferrowen-bench-settings.dat").string();
  std::string text = ferrowen::settings_text(ferrowen::default_settings("/home/user/ferrowen"));
  const auto known = static_cast<int>(ferrowen::split_lines(text).size());
  for (int line = known; line < file_lines; ++line)
    text += "a line that a later version has written\r\n";
  if (const ferrowen::Status written = ferrowen::safe_write(path, text); !written.ok()) {
    std::cerr << written.error << "\n";
    return 1;
  }
  std::size_t bytes = 0;
  const double reading = median_milliseconds([&] { bytes += ferrowen::read_whole_file(path).size(); });
  const double loading = median_milliseconds([&] {
    const auto loaded = ferrowen::parse_settings(ferrowen::read_whole_file(path), "/home/user/ferrowen");
    bytes += loaded.settings.map_name.size();
  });
  std::filesystem::remove(path);
  std::cout << loading << " " << reading << "\n";
  return bytes == 0 ? 1 : 0;
}
