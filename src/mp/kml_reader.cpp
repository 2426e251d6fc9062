#include "mp/kml_reader.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "base/text.hpp"
#include "mp/markup.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t npos = std::string_view::npos;
constexpr std::string_view placemark_tag = "<placemark>";
constexpr std::string_view coordinates_tag = "<coordinates>";
constexpr std::string_view coordinates_end_tag = "</coordinates>";

class KmlReading {
 public:
  KmlReading(std::string_view text, KmlFile& file) : m_text(text), m_file(file) {}

  void read() {
    if (m_text.find(placemark_tag) != npos)
      read_plain_placemarks();
    else
      read_tolerant_placemarks();
  }

 private:
  void read_plain_placemarks() {
    for (std::size_t begin = m_text.find(placemark_tag); begin != npos;) {
      begin += placemark_tag.size();
      const std::size_t next = m_text.find(placemark_tag, begin);
      if (!read_placemark(begin, std::min(next, m_text.size()))) return;
      begin = next;
    }
    if (m_text.find("<placemark ") != npos)
      m_file.problems.add(
          "placemarks that begin with \"<placemark \" are not read, as there are plain ones too");
  }

  void read_tolerant_placemarks() {
    std::optional<Tag> tag = find_tag(m_text, "placemark", 0);
    while (tag) {
      const std::optional<Tag> next = find_tag(m_text, "placemark", tag->end);
      if (!tag->is_empty_element && !read_placemark(tag->end, next ? next->begin : m_text.size())) return;
      tag = next;
    }
  }

  // False when nothing behind this placemark is to be read.
  bool read_placemark(std::size_t begin, std::size_t end) {
    m_file.has_placemarks = true;
    const std::string_view placemark = m_text.substr(begin, end - begin);
    const std::optional<std::size_t> content = content_begin(placemark);
    if (!content) {
      m_file.problems.add_at(begin, "a placemark without coordinates");
      return true;
    }
    const std::optional<std::size_t> content_end = end_of_content(placemark, *content);
    if (!content_end) {
      m_file.problems.add_at(begin + *content, "coordinates without their end; nothing from here on is read");
      return false;
    }
    std::string_view coordinates = placemark.substr(*content, *content_end - *content);
    m_file.placemarks.push_back({coordinates, extended_data_label(placemark)});
    if (placemark.find("<coordinates", *content_end) != npos)
      m_file.problems.add_at(begin,
                             "a placemark with further coordinates, of which the first alone are read");
    return true;
  }

  static std::optional<std::size_t> content_begin(std::string_view placemark) {
    const std::size_t plain = placemark.find(coordinates_tag);
    if (plain != npos) return plain + coordinates_tag.size();
    const std::optional<Tag> tag = find_tag(placemark, "coordinates", 0);
    if (!tag || tag->is_empty_element) return std::nullopt;
    return tag->end;
  }

  static std::optional<std::size_t> end_of_content(std::string_view placemark, std::size_t from) {
    const std::size_t plain = placemark.find(coordinates_end_tag, from);
    if (plain != npos) return plain;
    return find_end_tag(placemark, "coordinates", from);
  }

  std::string_view m_text;
  KmlFile& m_file;
};

// The pieces of a text between occurrences of `separator`, without those behind the last that is wanted.
std::vector<std::string_view> pieces_of(std::string_view text, std::string_view separator,
                                        std::size_t wanted) {
  std::vector<std::string_view> pieces;
  while (pieces.size() < wanted) {
    const std::size_t end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == npos) break;
    text.remove_prefix(end + separator.size());
  }
  return pieces;
}

}  // namespace

KmlFile read_kml(std::string_view text) {
  KmlFile file;
  file.error = text_problem(text);
  if (!file.error.empty()) return file;
  file.problems = ProblemList(text);
  KmlReading(text, file).read();
  return file;
}

std::string_view next_tuple(std::string_view& rest) {
  const auto* const begin = std::find_if_not(rest.begin(), rest.end(), is_blank);
  const auto* const end = std::find_if(begin, rest.end(), is_blank);
  const std::string_view tuple(begin, static_cast<std::size_t>(end - begin));
  rest = std::string_view(end, static_cast<std::size_t>(rest.end() - end));
  return tuple;
}

std::string read_tuple(std::string_view tuple, Coordinate& coordinate, RewrittenTexts& rewritten) {
  const std::size_t comma = tuple.find(',');
  std::string_view shown = tuple.substr(0, 40);
  shown.remove_suffix(unfinished_utf8_tail(shown));
  if (comma == npos) return "'" + std::string(shown) + "' is no pair of coordinates; it is left out";
  const std::string_view behind = tuple.substr(comma + 1);
  coordinate = {behind.substr(0, behind.find(',')), tuple.substr(0, comma)};
  return check_coordinate(coordinate, rewritten);
}

std::string extended_data_label(std::string_view placemark) {
  constexpr std::size_t first_piece = 3, last_piece = 5, least_pieces = 5;
  constexpr std::string_view value_end = "lue>";
  // What stands behind the last value is taken too, but not a path of a million points.
  constexpr std::size_t longest_value = 1024;
  const std::vector<std::string_view> pieces = pieces_of(placemark, "name=", last_piece + 2);
  if (pieces.size() < least_pieces) return "";
  std::string label;
  for (std::size_t i = first_piece; i <= last_piece && i < pieces.size(); ++i) {
    const std::size_t at = pieces[i].find(value_end);
    std::string_view value =
        at == npos ? std::string_view() : pieces[i].substr(at + value_end.size(), longest_value);
    value.remove_suffix(unfinished_utf8_tail(value));
    label.append(label.empty() ? "" : " ").append(trim(value));
  }
  // The text is in lower case, so two of these never match: what they leave behind is required.
  constexpr std::array<std::string_view, 8> removed = {"<value>", "</value>", "</Data>", "<Data",
                                                       ">",       "<",        "\"",      "'"};
  for (const std::string_view part : removed)
    label = replace_all(label, part, "");
  return std::string(trim(label));
}

}  // namespace ferrowen
