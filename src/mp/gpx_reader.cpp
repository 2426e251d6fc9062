#include "mp/gpx_reader.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "mp/markup.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t npos = std::string_view::npos;

bool continues_name(char c) { return !is_blank(c) && c != '"' && c != '\''; }

// The value between the quotes behind `name`, which ends with "="; nothing when it is not there or not ended.
std::optional<std::string_view> quoted_value(std::string_view attributes, std::string_view name) {
  std::size_t at = attributes.find(name);
  while (at != npos && at > 0 && continues_name(attributes[at - 1]))
    at = attributes.find(name, at + 1);
  if (at == npos) return std::nullopt;
  const std::size_t open = at + name.size();
  if (open >= attributes.size() || (attributes[open] != '"' && attributes[open] != '\'')) return std::nullopt;
  const std::size_t close = attributes.find(attributes[open], open + 1);
  if (close == npos) return std::nullopt;
  return attributes.substr(open + 1, close - open - 1);
}

std::string without_blanks(std::string_view text) {
  std::string result;
  std::remove_copy_if(text.begin(), text.end(), std::back_inserter(result), is_blank);
  return lower_ascii(result);
}

bool has_blank(std::string_view text) { return std::any_of(text.begin(), text.end(), is_blank); }

// One pass over the segments of a file; what is found goes into `file`.
class GpxReading {
 public:
  GpxReading(std::string_view text, GpxFile& file) : m_text(text), m_file(file) {}

  void read() {
    if (m_text.find("<rte>") != npos)
      read_plain_segments("<rte>", "<rte ");
    else if (m_text.find("<trkseg>") != npos)
      read_plain_segments("<trkseg>", "<trkseg ");
    else if (!read_tolerant_segments("rte"))
      static_cast<void>(read_tolerant_segments("trkseg"));
    tell_missed_points();
    read_name();
  }

 private:
  void read_plain_segments(std::string_view tag, std::string_view tag_with_attributes) {
    for (std::size_t begin = m_text.find(tag); begin != npos;) {
      begin += tag.size();
      const std::size_t next = m_text.find(tag, begin);
      read_segment(begin, std::min(next, m_text.size()));
      begin = next;
    }
    if (m_text.find(tag_with_attributes) != npos)
      m_file.problems.add("segments that begin with \"" + std::string(tag_with_attributes) +
                          "\" are not told apart from those before them");
  }

  bool read_tolerant_segments(std::string_view name) {
    std::optional<Tag> tag = find_tag(m_text, name, 0);
    if (!tag) return false;
    while (tag) {
      const std::optional<Tag> next = find_tag(m_text, name, tag->end);
      if (!tag->is_empty_element) read_segment(tag->end, next ? next->begin : m_text.size());
      tag = next;
    }
    return true;
  }

  void read_segment(std::size_t begin, std::size_t end) {
    GpxSegment segment;
    segment.first = m_file.points.size();
    segment.has_point_tags =
        read_plain_points("rtept", begin, end) || read_plain_points("trkpt", begin, end) ||
        read_tolerant_points("rtept", begin, end) || read_tolerant_points("trkpt", begin, end);
    segment.count = m_file.points.size() - segment.first;
    m_file.segments.push_back(segment);
  }

  // The plain tags of a segment win; those of another style in it are told, as they would be missed.
  void note_other_points(std::string_view name, std::size_t begin, std::size_t end) {
    const std::string plain = "<" + std::string(name) + " ";
    const std::string_view segment = m_text.substr(0, end);
    for (std::optional<Tag> tag = find_tag(segment, name, begin); tag;
         tag = find_tag(segment, name, tag->attributes)) {
      if (segment.substr(tag->begin).starts_with(plain)) continue;
      if (m_missed_points++ == 0) m_first_missed = tag->begin;
    }
  }

  [[nodiscard]] std::size_t line_of(std::size_t offset) const {
    const std::string_view passed = m_text.substr(0, offset);
    return 1 + static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
  }

  void tell_missed_points() {
    if (m_missed_points == 0) return;
    m_file.problems.add("line " + std::to_string(line_of(m_first_missed)) + ": " +
                        std::to_string(m_missed_points) +
                        " point(s) whose tags are written in another way than those before or after them "
                        "are left out");
  }

  bool read_plain_points(std::string_view name, std::size_t begin, std::size_t end) {
    const std::string tag = "<" + std::string(name) + " ";
    const std::string_view segment = m_text.substr(0, end);
    std::size_t at = segment.find(tag, begin);
    if (at == npos) return false;
    while (at != npos) {
      const std::size_t attributes = at + tag.size();
      const std::size_t next = segment.find(tag, attributes);
      // Up to the next point at most: a tag without an end must not make every search long.
      const std::string_view piece = segment.substr(0, next);
      add_point(attributes, std::min(piece.find('>', attributes), piece.size()));
      at = next;
    }
    note_other_points(name, begin, end);
    return true;
  }

  bool read_tolerant_points(std::string_view name, std::size_t begin, std::size_t end) {
    const std::string_view segment = m_text.substr(0, end);
    std::optional<Tag> tag = find_tag(segment, name, begin);
    if (!tag) return false;
    for (; tag; tag = find_tag(segment, name, tag->end))
      add_point(tag->attributes, tag->end);
    return true;
  }

  void add_point(std::size_t begin, std::size_t end) {
    const std::string_view attributes = m_text.substr(begin, end - begin);
    std::optional<std::string_view> latitude = quoted_value(attributes, "lat=");
    std::optional<std::string_view> longitude = quoted_value(attributes, "lon=");
    if (!latitude || !longitude || has_blank(*latitude) || has_blank(*longitude)) {
      const std::string& cleaned = m_file.rewritten.emplace_back(without_blanks(attributes));
      latitude = quoted_value(cleaned, "lat=");
      longitude = quoted_value(cleaned, "lon=");
    }
    if (!latitude || !longitude) {
      m_file.rewritten.pop_back();
      const bool is_cut_off = end == m_text.size();
      m_file.problems.add_at(begin, is_cut_off ? "the file ends within a point, which is left out"
                                               : "a point without lat and lon is left out");
      return;
    }
    Coordinate point{*latitude, *longitude};
    const std::string problem = check_coordinate(point, m_file.rewritten);
    if (problem.empty())
      m_file.points.push_back(point);
    else
      m_file.problems.add_at(begin, problem);
  }

  void read_name() {
    const std::size_t plain = m_text.find("<name>");
    const std::optional<Tag> tolerant = plain == npos ? find_tag(m_text, "name", 0) : std::nullopt;
    if (plain == npos && (!tolerant || tolerant->is_empty_element)) return;
    const std::size_t begin = plain == npos ? tolerant->end : plain + std::string_view("<name>").size();
    constexpr std::size_t longest_name = 4096;
    std::string_view name_text = m_text.substr(begin, longest_name);
    name_text.remove_suffix(unfinished_utf8_tail(name_text));
    const std::string name = element_text(name_text);
    if (name.empty()) return;
    m_file.name = file_text_as_utf8(name, m_text);
    m_file.name_line = line_of(begin);
  }

  std::string_view m_text;
  GpxFile& m_file;
  std::size_t m_missed_points = 0, m_first_missed = 0;
};

}  // namespace

GpxFile read_gpx(std::string_view text) {
  GpxFile file;
  file.error = text_problem(text);
  if (!file.error.empty()) return file;
  file.problems = ProblemList(text);
  GpxReading(text, file).read();
  return file;
}

}  // namespace ferrowen
