#include "mp/mp_writer.hpp"

#include <array>
#include <utility>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::array<std::string_view, 28> header_lines = {
    "[IMG ID]",      "Codepage=1251",     "LblCoding=9",  "id=31396604",   "Name=Tarvel", "Preprocess=F",
    "TreSize=511",   "TreMargin=0.00000", "RgnLimit=127", "Transparent=Y", "POIIndex=Y",  "POINumberFirst=Y",
    "POIZipFirst=N", "Copyright=PROGRAM", "Levels=6",     "Level0=24",     "Level1=22",   "Level2=20",
    "Level3=18",     "Level4=16",         "Level5=15",    "Zoom0=0",       "Zoom1=1",     "Zoom2=2",
    "Zoom3=3",       "Zoom4=4",           "Zoom5=5",      "[END-IMG ID]"};

constexpr std::string_view section_end = "[END]\r\n";
constexpr std::size_t most_points = 1000;  // a piece is closed when it has more
constexpr std::size_t flush_size = 256UL * 1024;
constexpr int poi_levels = 3;

}  // namespace

std::string mp_header() {
  std::string header;
  for (const std::string_view line : header_lines)
    header.append(line).append(crlf);
  return header;
}

MpWriter::MpWriter(Sink sink, PaddedValue padded)
    : m_sink(std::move(sink)), m_padded(padded), m_text(mp_header()) {}

void MpWriter::append_value(std::string_view value, bool padded) {
  if (value.find("0 ") != std::string_view::npos)
    m_text += replace_all(value, "0 ", "");
  else
    m_text += value;
  // At the end, not the front: deliberate.
  if (padded && needs_padding(value)) m_text += '0';
}

void MpWriter::append_point(const Coordinate& point) {
  m_text += '(';
  append_value(point.latitude, m_padded == PaddedValue::latitude);
  m_text += ',';
  append_value(point.longitude, m_padded == PaddedValue::longitude);
  m_text += ')';
}

void MpWriter::begin_section(std::string_view name, std::string_view type, std::string_view label) {
  m_text.append("[").append(name).append("]\r\nType=0x").append(type).append(crlf);
  if (!label.empty()) m_text.append("Label=").append(label).append(crlf);
}

void MpWriter::point_mp(std::string_view type, std::string_view label, const Coordinate& point) {
  for (int level = 0; level < poi_levels; ++level) {
    begin_section("POI", type, label);
    m_text.append("Data").append(std::to_string(level)).append("=");
    append_point(point);
    m_text.append(crlf).append(section_end);
  }
  ++m_counts.pois;
  flush();
}

void MpWriter::single_point(std::string_view type, std::string_view label, const Coordinate& point) {
  begin_section("POI", type, label);
  m_text.append("Data0=");
  append_point(point);
  m_text.append(crlf).append(section_end);
  ++m_counts.pois;
  flush();
}

void MpWriter::begin_piece() {
  begin_section(m_style.is_polygon ? "POLYGON" : "POLYLINE", m_style.type, m_style.label);
  m_text += "Data0=";
  m_piece_points = 0;
}

void MpWriter::end_piece() {
  m_text.back() = '\r';  // in the place of the last comma
  m_text.append("\n").append(section_end);
}

void MpWriter::begin_line(const MpLineStyle& style) {
  m_style = style;
  m_line_begin = m_text.size();
  m_line_is_split = m_piece_is_full = false;
  begin_piece();
}

void MpWriter::add_to_line(const Coordinate& point) {
  // Not before a further point comes: a piece never consists of the joining point alone.
  if (m_piece_is_full) {
    end_piece();
    flush();
    m_line_is_split = true;
    begin_piece();
    m_text += m_joint;
    m_piece_points = 1;
  }
  const std::size_t begin = m_text.size();
  append_point(point);
  m_text += ',';
  m_piece_is_full = ++m_piece_points > most_points;
  if (m_piece_is_full) m_joint = m_text.substr(begin);
}

bool MpWriter::end_line() {
  if (!m_line_is_split && m_piece_points < 2) {
    m_text.resize(m_line_begin);
    return false;
  }
  end_piece();
  ++(m_style.is_polygon ? m_counts.polygons : m_counts.lines);
  flush();
  return true;
}

void MpWriter::flush() {
  if (m_text.size() < flush_size) return;
  m_failed = m_failed || !m_sink(m_text);
  m_text.clear();
}

bool MpWriter::finish() {
  m_failed = m_failed || !m_sink(m_text);
  m_text.clear();
  return !m_failed;
}

}  // namespace ferrowen
