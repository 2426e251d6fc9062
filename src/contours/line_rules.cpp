#include "contours/line_rules.hpp"

#include <algorithm>
#include <utility>

namespace ferrowen {

namespace {

// Every point at a multiple of this stays: the work on a line of n points is then n x this at most, whatever
// its shape.
constexpr std::size_t longest_piece = 2048;

double squared(double number) { return number * number; }

double squared_distance(const Point& point, const Point& from, const Point& to) {
  const double along_x = static_cast<double>(to.longitude) - from.longitude;
  const double along_y = static_cast<double>(to.latitude) - from.latitude;
  const double x = static_cast<double>(point.longitude) - from.longitude;
  const double y = static_cast<double>(point.latitude) - from.latitude;
  const double length = squared(along_x) + squared(along_y);
  const double share = length > 0 ? std::clamp((x * along_x + y * along_y) / length, 0.0, 1.0) : 0;
  return squared(x - share * along_x) + squared(y - share * along_y);
}

// Index of the point farthest from the chord between two others, and the square of its distance.
std::pair<std::size_t, double> farthest(const std::vector<Point>& line, std::size_t first, std::size_t last) {
  std::pair<std::size_t, double> best{first, 0};
  for (std::size_t at = first + 1; at < last; ++at) {
    const double distance = squared_distance(line[at], line[first], line[last]);
    if (distance > best.second) best = {at, distance};
  }
  return best;
}

void keep_corners(const std::vector<Point>& line, std::size_t first, std::size_t last, double tolerance,
                  std::vector<bool>& kept) {
  std::vector<std::pair<std::size_t, std::size_t>> pieces{{first, last}};
  while (!pieces.empty()) {
    const auto [begin, end] = pieces.back();
    pieces.pop_back();
    const auto [middle, distance] = farthest(line, begin, end);
    if (distance <= squared(tolerance)) continue;
    kept[middle] = true;
    pieces.emplace_back(begin, middle);
    pieces.emplace_back(middle, end);
  }
}

// A closed line (its first point repeated at the end) of at least three points: its first point, the one
// farthest from it and the one farthest from the chord between these span it.
void keep_span(const std::vector<Point>& line, std::vector<bool>& kept) {
  const std::size_t last = line.size() - 1;
  const std::size_t opposite = farthest(line, 0, last).first;
  const auto before = farthest(line, 0, opposite);
  const auto behind = farthest(line, opposite, last);
  kept[opposite] = true;
  kept[before.second >= behind.second && before.first != 0 ? before.first : behind.first] = true;
}

}  // namespace

void remove_repeated(std::vector<Point>& line, bool closed) {
  line.erase(std::unique(line.begin(), line.end()), line.end());
  while (closed && line.size() > 1 && line.back() == line.front())
    line.pop_back();
}

bool is_kept(const std::vector<Point>& line, const LineRules& rules) {
  if (line.size() < std::max<std::size_t>(rules.least_points, 2)) return false;
  const auto by_longitude = [](const Point& a, const Point& b) { return a.longitude < b.longitude; };
  const auto by_latitude = [](const Point& a, const Point& b) { return a.latitude < b.latitude; };
  const auto [west, east] = std::minmax_element(line.begin(), line.end(), by_longitude);
  const auto [south, north] = std::minmax_element(line.begin(), line.end(), by_latitude);
  const std::int32_t extent = std::max(east->longitude - west->longitude, north->latitude - south->latitude);
  return extent >= rules.least_extent;
}

void simplify(std::vector<Point>& line, bool closed, double tolerance) {
  if (tolerance <= 0 || line.size() < 3) return;
  if (closed) line.push_back(line.front());
  std::vector<bool> kept(line.size(), false);
  for (std::size_t at = 0; at < line.size(); at += longest_piece)
    kept[at] = true;
  kept.back() = true;
  if (closed) keep_span(line, kept);
  std::size_t begin = 0;
  for (std::size_t end = 1; end < line.size(); ++end) {
    if (!kept[end]) continue;
    keep_corners(line, begin, end, tolerance, kept);
    begin = end;
  }
  std::size_t count = 0;
  for (std::size_t at = 0; at < line.size(); ++at)
    if (kept[at]) line[count++] = line[at];
  line.resize(closed ? count - 1 : count);
}

}  // namespace ferrowen
