#include "contours/trace.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

namespace ferrowen {

namespace {

constexpr std::uint32_t none = UINT32_MAX;
constexpr std::int16_t void_step = INT16_MIN;

// For each height the number of the level at or below it, and the height that it is taken for.
class LevelTable {
 public:
  explicit LevelTable(const Levels& levels) : m_step(heights), m_height(heights) {
    for (int height = INT16_MIN; height <= INT16_MAX; ++height) {
      const double taken = height + (height % levels.interval == 0 ? levels.fake_distance : 0);
      const std::size_t place = place_of(static_cast<std::int16_t>(height));
      m_height[place] = taken;
      m_step[place] = static_cast<std::int16_t>(std::floor(taken / levels.interval));
    }
    m_step[place_of(void_height)] = void_step;
  }
  [[nodiscard]] std::int16_t step(std::int16_t height) const { return m_step[place_of(height)]; }
  [[nodiscard]] double height(std::int16_t height) const { return m_height[place_of(height)]; }

 private:
  static constexpr std::size_t heights = 65536;
  static std::size_t place_of(std::int16_t height) { return static_cast<std::uint16_t>(height); }
  std::vector<std::int16_t> m_step;
  std::vector<double> m_height;
};

// Of a number that is not below 0; the routines of the library take several times as long.
std::int32_t rounded(double number) {
  return static_cast<std::int32_t>(number + 0.5);  // NOLINT(bugprone-incorrect-roundings): see above
}

// A point where a line crosses an edge between two samples.
struct Crossing {
  Point point;
  std::uint32_t next = none;  // the line's next crossing
  std::int16_t step = 0;      // the line's elevation divided by the interval
  bool has_previous = false;
};

enum Side : std::uint8_t { top, right, bottom, left };

struct Segment {
  Side from, to;
};

struct Segments {
  int count;
  Segment segment[2];
};

// By the corners that lie above the level: upper left 1, upper right 2, lower right 4, lower left 8. The
// higher ground is on the left of every segment. Where two opposite corners lie above (5 and 10), the square
// is taken to be folded from its upper left to its lower right: to decide anew at each level, by the height
// of the middle, would let lines of two levels cross.
constexpr std::array<Segments, 16> segments_of_corners = {{
    {0, {}},
    {1, {{left, top}}},
    {1, {{top, right}}},
    {1, {{left, right}}},
    {1, {{right, bottom}}},
    {2, {{right, top}, {left, bottom}}},
    {1, {{top, bottom}}},
    {1, {{left, bottom}}},
    {1, {{bottom, left}}},
    {1, {{bottom, top}}},
    {2, {{top, right}, {bottom, left}}},
    {1, {{bottom, right}}},
    {1, {{right, left}}},
    {1, {{right, top}}},
    {1, {{top, left}}},
    {0, {}},
}};

// Walks over the squares between the samples, row by row, and links the crossings of their edges.
class Net {
 public:
  Net(const HeightGrid& grid, Cell cell, const Levels& levels)
      : m_grid(grid),
        m_table(levels),
        m_interval(levels.interval),
        m_west(cell.longitude * units_per_degree),
        m_north((cell.latitude + 1) * units_per_degree),
        m_spacing(static_cast<double>(units_per_degree) / (grid.size - 1)),
        m_upper_edges(static_cast<std::size_t>(grid.size)) {}

  // False when there are more crossings than a cell has numbers for.
  bool build();
  [[nodiscard]] std::vector<Crossing>& crossings() { return m_crossings; }

 private:
  using Steps = std::vector<std::int16_t>;
  // Number of the edge's crossing at a level: this plus the level's step, by wrapping around.
  using EdgeStart = std::uint32_t;

  void read_steps(int row, Steps& steps) const;
  [[nodiscard]] static std::uint64_t crossings_between(std::int16_t one, std::int16_t other);
  [[nodiscard]] std::uint64_t count_crossings() const;
  EdgeStart add_edge(int row, int column, bool down, std::int16_t from, std::int16_t to);
  void add_row(int row, const Steps& upper, const Steps& lower);
  void link_square(const std::array<std::int16_t, 4>& corners, const std::array<EdgeStart, 4>& edges);
  void link(std::uint32_t from, std::uint32_t to) {
    m_crossings[from].next = to;
    m_crossings[to].has_previous = true;
  }

  const HeightGrid& m_grid;
  LevelTable m_table;
  int m_interval;
  std::int32_t m_west, m_north;
  double m_spacing;
  std::vector<EdgeStart> m_upper_edges;  // of the row of squares in work
  std::vector<Crossing> m_crossings;
};

void Net::read_steps(int row, Steps& steps) const {
  const std::int16_t* heights = m_grid.row(row);
  for (std::size_t column = 0; column < steps.size(); ++column)
    steps[column] = m_table.step(heights[column]);
}

std::uint64_t Net::crossings_between(std::int16_t one, std::int16_t other) {
  if (one == other || one == void_step || other == void_step) return 0;
  return static_cast<std::uint64_t>(std::abs(one - other));
}

std::uint64_t Net::count_crossings() const {
  std::uint64_t count = 0;
  Steps upper(static_cast<std::size_t>(m_grid.size), void_step);
  Steps steps = upper;
  for (int row = 0; row < m_grid.size; ++row) {
    read_steps(row, steps);
    for (std::size_t column = 0; column < steps.size(); ++column)
      count += crossings_between(upper[column], steps[column]);
    for (std::size_t column = 1; column < steps.size(); ++column)
      count += crossings_between(steps[column - 1], steps[column]);
    upper.swap(steps);
  }
  return count;
}

bool Net::build() {
  const std::uint64_t count = count_crossings();
  if (count > nodes_per_cell) return false;
  m_crossings.reserve(static_cast<std::size_t>(count));
  Steps upper(static_cast<std::size_t>(m_grid.size));
  Steps lower = upper;
  read_steps(0, upper);
  for (int column = 0; column + 1 < m_grid.size; ++column) {
    const auto place = static_cast<std::size_t>(column);
    m_upper_edges[place] = add_edge(0, column, false, upper[place], upper[place + 1]);
  }
  for (int row = 0; row + 1 < m_grid.size; ++row) {
    read_steps(row + 1, lower);
    add_row(row, upper, lower);
    upper.swap(lower);
  }
  return true;
}

// The edge from a sample to the one on its right, or below it.
Net::EdgeStart Net::add_edge(int row, int column, bool down, std::int16_t from, std::int16_t to) {
  if (from == to || from == void_step || to == void_step) return 0;
  const double begin = m_table.height(m_grid.row(row)[column]);
  const double end = m_table.height(down ? m_grid.row(row + 1)[column] : m_grid.row(row)[column + 1]);
  const auto [below, highest] = std::minmax(from, to);
  const EdgeStart start = static_cast<EdgeStart>(m_crossings.size()) - static_cast<EdgeStart>(below + 1);
  for (int step = below + 1; step <= highest; ++step) {
    const double share = (static_cast<double>(step) * m_interval - begin) / (end - begin);
    const double east = (column + (down ? 0 : share)) * m_spacing;
    const double south = (row + (down ? share : 0)) * m_spacing;
    const Point point{m_west + rounded(east), m_north - rounded(south)};
    m_crossings.push_back({point, none, static_cast<std::int16_t>(step), false});
  }
  return start;
}

void Net::add_row(int row, const Steps& upper, const Steps& lower) {
  EdgeStart left_edge = add_edge(row, 0, true, upper[0], lower[0]);
  for (int column = 0; column + 1 < m_grid.size; ++column) {
    const auto place = static_cast<std::size_t>(column);
    const std::array<std::int16_t, 4> corners = {upper[place], upper[place + 1], lower[place + 1],
                                                 lower[place]};
    // Nine squares of ten: nothing crosses their edges.
    if (corners[0] == corners[1] && corners[0] == corners[2] && corners[0] == corners[3]) continue;
    const EdgeStart right_edge = add_edge(row, column + 1, true, corners[1], corners[2]);
    const EdgeStart lower_edge = add_edge(row + 1, column, false, corners[3], corners[2]);
    if (std::find(corners.begin(), corners.end(), void_step) == corners.end())
      link_square(corners, {m_upper_edges[place], right_edge, lower_edge, left_edge});
    m_upper_edges[place] = lower_edge;
    left_edge = right_edge;
  }
}

void Net::link_square(const std::array<std::int16_t, 4>& corners, const std::array<EdgeStart, 4>& edges) {
  const auto [below, highest] = std::minmax_element(corners.begin(), corners.end());
  for (int step = *below + 1; step <= *highest; ++step) {
    unsigned above = 0;
    for (unsigned corner = 0; corner < corners.size(); ++corner)
      above |= static_cast<unsigned>(corners[corner] >= step) << corner;
    const Segments& segments = segments_of_corners[above];
    for (int number = 0; number < segments.count; ++number) {
      const auto [from, to] = segments.segment[number];
      link(edges[from] + static_cast<std::uint32_t>(step), edges[to] + static_cast<std::uint32_t>(step));
    }
  }
}

// Takes the lines out of the net, one after the other: first those with ends, then the closed ones.
class LineCollector {
 public:
  LineCollector(std::vector<Crossing>& crossings, int interval, const LineRules& rules)
      : m_crossings(crossings), m_interval(interval), m_rules(rules) {}

  ContourLines collect() {
    for (std::uint32_t start = 0; start < m_crossings.size(); ++start)
      if (!m_crossings[start].has_previous && m_crossings[start].next != none) take(start, false);
    for (std::uint32_t start = 0; start < m_crossings.size(); ++start)
      if (m_crossings[start].next != none) take(start, true);
    return std::move(m_lines);
  }

 private:
  void take(std::uint32_t start, bool closed) {
    m_line.clear();
    for (std::uint32_t at = start; at != none; at = std::exchange(m_crossings[at].next, none))
      m_line.push_back(m_crossings[at].point);
    remove_repeated(m_line, closed);  // a closed walk ends where it began
    if (!is_kept(m_line, m_rules)) return;
    simplify(m_line, closed, m_rules.tolerance);
    const int elevation = m_crossings[start].step * m_interval;
    m_lines.lines.push_back({m_lines.points.size(), m_line.size(), elevation, closed});
    m_lines.points.insert(m_lines.points.end(), m_line.begin(), m_line.end());
  }

  std::vector<Crossing>& m_crossings;
  int m_interval;
  LineRules m_rules;
  std::vector<Point> m_line;
  ContourLines m_lines;
};

}  // namespace

Result<ContourLines> trace_contours(const HeightGrid& grid, Cell cell, const Levels& levels,
                                    const LineRules& rules) {
  if (grid.size < 2) return {};
  Net net(grid, cell, levels);
  if (!net.build())
    return failed<ContourLines>("more than " + std::to_string(nodes_per_cell) +
                                " points; choose a larger interval");
  return {LineCollector(net.crossings(), levels.interval, rules).collect(), ""};
}

}  // namespace ferrowen
