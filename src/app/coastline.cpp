#include "app/coastline.hpp"

#include <algorithm>
#include <optional>

#include "app/program_folder.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr double units_per_degree = 500;
constexpr unsigned first_character = '0';
constexpr unsigned bits_per_character = 5;
constexpr unsigned continued = 1U << bits_per_character;
constexpr unsigned highest_shift = 25;  // enough for 360 degrees

class Numbers {
 public:
  explicit Numbers(std::string_view text) : m_text(text) {}

  std::optional<long> next() {
    unsigned long value = 0;
    for (unsigned shift = 0; m_position < m_text.size() && shift <= highest_shift;
         shift += bits_per_character) {
      const unsigned group = static_cast<unsigned char>(m_text[m_position++]) - first_character;
      if (group >= 2 * continued) return std::nullopt;
      value |= static_cast<unsigned long>(group % continued) << shift;
      if (group < continued) return signed_number(value);
    }
    return std::nullopt;
  }

 private:
  static long signed_number(unsigned long value) {
    const long half = static_cast<long>(value / 2);
    return value % 2 == 0 ? half : -half - 1;
  }
  std::string_view m_text;
  std::size_t m_position = 0;
};

void widen(Shoreline& line, const Corner& point) {
  if (line.points.empty()) line.lower_left = line.upper_right = point;
  line.lower_left.latitude = std::min(line.lower_left.latitude, point.latitude);
  line.lower_left.longitude = std::min(line.lower_left.longitude, point.longitude);
  line.upper_right.latitude = std::max(line.upper_right.latitude, point.latitude);
  line.upper_right.longitude = std::max(line.upper_right.longitude, point.longitude);
  line.points.push_back(point);
}

Shoreline parse_line(std::string_view text) {
  Shoreline line;
  Numbers numbers(text);
  long x = 0;
  long y = 0;
  for (;;) {
    const std::optional<long> east = numbers.next();
    const std::optional<long> north = east ? numbers.next() : std::nullopt;
    if (!north) return line;
    x += *east;
    y += *north;
    const Corner point{static_cast<double>(y) / units_per_degree, static_cast<double>(x) / units_per_degree};
    if (point.latitude < -90 || point.latitude > 90 || point.longitude < -180 || point.longitude > 180)
      return line;
    widen(line, point);
  }
}

}  // namespace

std::vector<Shoreline> parse_coastline(std::string_view text) {
  std::vector<Shoreline> lines;
  for (const std::string& row : split_lines(text)) {
    Shoreline line = parse_line(row);
    if (line.points.size() > 1) lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<Shoreline> load_coastline() {
  return parse_coastline(read_whole_file(platform::join(find_assets_folder(), "coastline")));
}

}  // namespace ferrowen
