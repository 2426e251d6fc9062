// The Polish MP text: header, points, lines and polygons, CR LF line ends. Pieces leave for a sink while the
// text grows, so that a large file never stands whole in the memory.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "mp/coordinate.hpp"

namespace ferrowen {

// The 28 lines that every file begins with.
std::string mp_header();

struct MpCounts {
  std::size_t lines = 0, polygons = 0, pois = 0, coordinates = 0;
};

struct MpLineStyle {
  std::string type;   // hexadecimal, without "0x"
  std::string label;  // encoded; no label line when empty
  bool is_polygon = false;
};

enum class PaddedValue : unsigned char { latitude, longitude };  // the second value of the source's pairs

class MpWriter {
 public:
  // Takes the text piece by piece; false when it could not be written.
  using Sink = std::function<bool(std::string_view)>;
  MpWriter(Sink sink, PaddedValue padded);

  // The same point three times, for the levels 0, 1 and 2: deliberate, older maps rely on it.
  void point_mp(std::string_view type, std::string_view label, const Coordinate& point);
  // One point for level 0; without a label line when the label is empty.
  void single_point(std::string_view type, std::string_view label, const Coordinate& point);

  // A line or polygon, point by point. Pieces of more than 1,000 points are closed and joined by a shared
  // point. Nothing is left of an object with fewer than two points; false then.
  void begin_line(const MpLineStyle& style);
  void add_to_line(const Coordinate& point);
  bool end_line();

  // Hands over what is left. False when a piece could not be written.
  bool finish();
  [[nodiscard]] bool failed() const { return m_failed; }
  [[nodiscard]] const MpCounts& counts() const { return m_counts; }
  // Coordinates are counted by who reads them: a shared point is one coordinate.
  void count_coordinates(std::size_t count) { m_counts.coordinates += count; }

 private:
  void append_point(const Coordinate& point);
  void append_value(std::string_view value, bool padded);
  void begin_section(std::string_view name, std::string_view type, std::string_view label);
  void begin_piece();
  void end_piece();
  void flush();

  Sink m_sink;
  PaddedValue m_padded;
  std::string m_text;
  MpCounts m_counts;
  MpLineStyle m_style;
  std::size_t m_line_begin = 0;    // of the current object in m_text
  std::size_t m_piece_points = 0;  // in the current piece
  bool m_line_is_split = false, m_piece_is_full = false, m_failed = false;
  std::string m_joint;  // the point that the next piece begins with, as it is written
};

}  // namespace ferrowen
