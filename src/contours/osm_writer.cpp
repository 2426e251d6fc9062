#include "contours/osm_writer.hpp"

#include <array>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "base/files.hpp"
#include "platform/files.hpp"
#include "platform/flushed_file.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t block_size = std::size_t{1} << 20U;
constexpr std::size_t longest_line = 256;

// Decimal digits of a number that only ever grows by one: most steps change a single character.
class Counter {
 public:
  explicit Counter(std::uint64_t number) : m_text(std::to_string(number)) {}
  void step() {
    std::size_t at = m_text.size();
    while (at > 0 && m_text[at - 1] == '9')
      m_text[--at] = '0';
    if (at > 0)
      ++m_text[at - 1];
    else
      m_text.insert(m_text.begin(), '1');
  }
  [[nodiscard]] const std::string& text() const { return m_text; }

 private:
  std::string m_text;
};

// Gathers short texts into blocks for the sink.
class BlockWriter {
 public:
  explicit BlockWriter(const OsmSink& sink) : m_sink(sink), m_block(block_size + longest_line, '\0') {}

  void add(std::string_view text) {
    std::memcpy(m_block.data() + m_size, text.data(), text.size());
    m_size += text.size();
  }
  void add_coordinate(std::int32_t value);
  // After every line of at most `longest_line` bytes. False when the sink has failed.
  bool end_line() {
    add("\n");
    return m_size < block_size || flush();
  }
  bool flush() {
    m_error = m_sink(std::string_view(m_block).substr(0, m_size));
    m_size = 0;
    return m_error.empty();
  }
  [[nodiscard]] const std::string& error() const { return m_error; }

 private:
  const OsmSink& m_sink;
  std::string m_block;
  std::size_t m_size = 0;
  std::string m_error;
};

constexpr std::array<char, 200> make_digit_pairs() {
  std::array<char, 200> pairs{};
  for (std::size_t number = 0; number < 100; ++number) {
    pairs[2 * number] = static_cast<char>('0' + number / 10);
    pairs[2 * number + 1] = static_cast<char>('0' + number % 10);
  }
  return pairs;
}
constexpr std::array<char, 200> digit_pairs = make_digit_pairs();

// Degrees with the seven decimals that OSM has; the general routines of the library take five times as long.
void BlockWriter::add_coordinate(std::int32_t value) {
  char* at = m_block.data() + m_size;
  if (value < 0) *at++ = '-';
  const std::uint32_t size =
      value < 0 ? 0U - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
  constexpr std::uint32_t per_degree = units_per_degree;
  std::uint32_t degrees = size / per_degree;
  std::uint32_t decimals = size % per_degree;
  if (degrees >= 100) *at++ = static_cast<char>('0' + degrees / 100);
  if (degrees >= 10) *at++ = static_cast<char>('0' + degrees / 10 % 10);
  *at++ = static_cast<char>('0' + degrees % 10);
  *at++ = '.';
  *at++ = static_cast<char>('0' + decimals / 1'000'000);
  decimals %= 1'000'000;
  std::memcpy(at, digit_pairs.data() + std::size_t{2} * (decimals / 10'000), 2);
  std::memcpy(at + 2, digit_pairs.data() + std::size_t{2} * (decimals / 100 % 100), 2);
  std::memcpy(at + 4, digit_pairs.data() + std::size_t{2} * (decimals % 100), 2);
  m_size = static_cast<std::size_t>(at + 6 - m_block.data());
}

bool write_head(BlockWriter& out, Cell cell) {
  out.add(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<osm version=\"0.6\" generator=\"ferrowen-contours\">\n");
  out.add("<bounds minlat=\"" + std::to_string(cell.latitude) + "\" minlon=\"" +
          std::to_string(cell.longitude) + "\" maxlat=\"" + std::to_string(cell.latitude + 1) +
          "\" maxlon=\"" + std::to_string(cell.longitude + 1) + "\"/>");
  return out.end_line();
}

bool write_nodes(BlockWriter& out, const std::vector<Point>& points, std::uint64_t first) {
  Counter number(first);
  for (const Point& point : points) {
    out.add("<node id=\"");
    out.add(number.text());
    out.add("\" version=\"1\" lat=\"");
    out.add_coordinate(point.latitude);
    out.add("\" lon=\"");
    out.add_coordinate(point.longitude);
    out.add("\"/>");
    if (!out.end_line()) return false;
    number.step();
  }
  return true;
}

bool write_reference(BlockWriter& out, std::string_view number) {
  out.add("<nd ref=\"");
  out.add(number);
  out.add("\"/>");
  return out.end_line();
}

bool write_way(BlockWriter& out, const ContourLine& line, Counter& node,
               std::string_view contour_class_name) {
  const std::string first = node.text();
  for (std::size_t count = 0; count < line.count; ++count) {
    if (!write_reference(out, node.text())) return false;
    node.step();
  }
  if (line.closed && !write_reference(out, first)) return false;
  out.add("<tag k=\"contour\" v=\"elevation\"/>\n<tag k=\"contour_ext\" v=\"");
  out.add(contour_class_name);
  out.add("\"/>\n<tag k=\"ele\" v=\"" + std::to_string(line.elevation) + "\"/>\n</way>");
  return out.end_line();
}

bool write_ways(BlockWriter& out, const ContourLines& contours, std::uint64_t first,
                const ContourClasses& classes) {
  Counter number(first + nodes_per_cell);
  Counter node(first);
  for (const ContourLine& line : contours.lines) {
    out.add("<way id=\"" + number.text() + "\" version=\"1\">");
    if (!out.end_line() || !write_way(out, line, node, contour_class(line.elevation, classes))) return false;
    number.step();
  }
  return true;
}

// Returns the reason of a failure, or "". The file is closed then, so that it can be removed.
std::string write_flushed(const std::string& path, const ContourLines& contours, Cell cell,
                          const ContourClasses& classes, const std::function<bool()>& stopped) {
  platform::FlushedFile file;
  if (std::string problem = file.open(path); !problem.empty()) return problem;
  const auto sink = [&](std::string_view bytes) { return stopped() ? "stopped" : file.write(bytes); };
  const Status written = write_osm(contours, cell, classes, sink);
  return written.ok() ? file.finish() : written.error;
}

}  // namespace

Status write_osm(const ContourLines& contours, Cell cell, const ContourClasses& classes,
                 const OsmSink& sink) {
  if (contours.points.size() > nodes_per_cell || contours.lines.size() > ways_per_cell)
    return {"more points or lines than a cell has numbers for; choose a larger interval"};
  const std::uint64_t first = first_id(cell);
  BlockWriter out(sink);
  const bool written = write_head(out, cell) && write_nodes(out, contours.points, first) &&
                       write_ways(out, contours, first, classes);
  if (written) {
    out.add("</osm>");
    if (out.end_line()) out.flush();
  }
  return {out.error()};
}

Status write_osm_file(const std::string& path, const ContourLines& contours, Cell cell,
                      const ContourClasses& classes, const std::function<bool()>& stopped) {
  // A device or a folder would be lost if a file took its place.
  std::error_code ignored;
  if (file_exists(path) && !std::filesystem::is_regular_file(platform::file_system_path(path), ignored))
    return {path + ": is no regular file"};
  const std::string neighbour = path + ".new";
  std::string problem = write_flushed(neighbour, contours, cell, classes, stopped);
  if (problem.empty()) problem = platform::replace_file(neighbour, path);
  if (problem.empty()) return {};
  static_cast<void>(remove_file(neighbour));
  return {path + ": " + problem};
}

}  // namespace ferrowen
