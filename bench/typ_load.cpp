// Time to load a compiled TYP file of about 70 KB: reading it whole and decoding every definition.
// Prints the median of many loads in milliseconds, the time of reading the bytes alone as the peer, and the
// size. Usage: bench-typ [FILE]; without a file it makes one of point icons with labels in two languages.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <vector>

#include "base/files.hpp"
#include "styletools/typ_reader.hpp"

namespace {

constexpr int runs = 501;
constexpr std::size_t points = 400;
constexpr std::size_t header_size = 0x5B;

void set_number(std::string& bytes, std::size_t at, std::size_t value, int width) {
  for (int index = 0; index < width; ++index)
    bytes[at + static_cast<std::size_t>(index)] = static_cast<char>(value >> (8 * index) & 0xFF);
}

// Day image of 16 x 16 pixels in eight colours, then two labels in UTF-8.
std::string point_definition() {
  std::string text =
      std::string("\x05\x10\x10\x08\x10", 5) + std::string(24, '\x40') + std::string(128, '\x21');
  const std::string labels =
      std::string("\x04", 1) + "Restaurant" + '\0' + "\x02" + "Gastst\xC3\xA4tte" + '\0';
  return text + static_cast<char>(labels.size() * 2 + 1) + labels;
}

std::string typ_file() {
  std::string bytes(header_size, '\0');
  bytes.replace(2, 10, "GARMIN TYP");
  set_number(bytes, 0x15, 65001, 2);
  set_number(bytes, 0x17, header_size, 4);
  std::string index;
  for (std::size_t point = 0; point < points; ++point) {
    std::string entry(5, '\0');
    set_number(entry, 0, 0x20 + point, 2);
    set_number(entry, 2, bytes.size() - header_size, 3);
    index += entry;
    bytes += point_definition();
  }
  set_number(bytes, 0x1B, bytes.size() - header_size, 4);
  set_number(bytes, 0x33, bytes.size(), 4);
  set_number(bytes, 0x37, 5, 2);
  set_number(bytes, 0x39, index.size(), 4);
  return bytes + index;
}

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

int main(int count, char** arguments) {
  const std::string made = (std::filesystem::temp_directory_path() / "ferrowen-bench.typ").string();
  const std::string path = count > 1 ? arguments[1] : made;
  if (count <= 1)
    if (const ferrowen::Status written = ferrowen::safe_write(path, typ_file()); !written.ok()) {
      std::cerr << written.error << "\n";
      return 1;
    }
  std::size_t bytes = 0, definitions = 0;
  const double reading = median_milliseconds([&] { bytes = ferrowen::read_whole_file(path).size(); });
  const double loading = median_milliseconds([&] {
    const auto typ = ferrowen::loadbinary(path);
    definitions = 0;
    for (const ferrowen::RuleKind kind : ferrowen::rule_kinds)
      for (const auto& definition : typ.value.of(kind))
        definitions += definition.damage.empty() ? 1 : 0;
  });
  std::filesystem::remove(made);
  std::cout << loading << " " << reading << " " << bytes << " " << definitions << "\n";
  return definitions == 0 ? 1 : 0;
}
