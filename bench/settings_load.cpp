// Time to load a settings file of 500 lines: reading it whole and parsing it into the record.
// Prints the median of many loads in milliseconds, and the time of reading the bytes alone as the peer.
#include <filesystem>
#include <iostream>

#include "app/settings.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "bench/median.hpp"

namespace {

constexpr int runs = 501;
constexpr int file_lines = 500;

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
  const double reading =
      ferrowen::bench::median_milliseconds(runs, [&] { bytes += ferrowen::read_whole_file(path).size(); });
  const double loading = ferrowen::bench::median_milliseconds(runs, [&] {
    const auto loaded = ferrowen::parse_settings(ferrowen::read_whole_file(path), "/home/user/ferrowen");
    bytes += loaded.settings.map_name.size();
  });
  std::filesystem::remove(path);
  std::cout << loading << " " << reading << "\n";
  return bytes == 0 ? 1 : 0;
}
