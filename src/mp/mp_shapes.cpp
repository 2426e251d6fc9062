#include "mp/mp_shapes.hpp"

#include <algorithm>
#include <optional>

namespace ferrowen {

namespace {

constexpr std::size_t npos = std::string_view::npos;

std::string_view next_line(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == npos ? rest.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::optional<MpKind> kind_of(std::string_view line) {
  if (line == "[POI]") return MpKind::point;
  if (line == "[POLYLINE]") return MpKind::line;
  if (line == "[POLYGON]") return MpKind::polygon;
  return std::nullopt;
}

// "(latitude,longitude)" again and again.
std::vector<Position> positions_of(std::string_view data) {
  std::vector<Position> positions;
  RewrittenTexts rewritten;
  for (std::size_t open = data.find('('); open != npos; open = data.find('(', open + 1)) {
    const std::string_view pair = data.substr(open + 1, data.find(')', open) - open - 1);
    const std::size_t comma = pair.find(',');
    if (comma == npos) continue;
    Coordinate point{pair.substr(0, comma), pair.substr(comma + 1)};
    if (check_coordinate(point, rewritten).empty()) positions.push_back(position_of(point));
  }
  return positions;
}

}  // namespace

std::vector<MpShape> read_mp_shapes(std::string_view text) {
  constexpr std::string_view label = "Label=", data = "Data0=";
  std::vector<MpShape> shapes;
  std::optional<MpShape> shape;
  while (!text.empty()) {
    const std::string_view line = next_line(text);
    if (const auto kind = kind_of(line)) {
      shape = MpShape{*kind, "", {}};
    } else if (shape && line.starts_with(label)) {
      shape->label = line.substr(label.size());
    } else if (shape && line.starts_with(data)) {
      shape->points = positions_of(line.substr(data.size()));
      if (!shape->points.empty()) shapes.push_back(std::move(*shape));
      shape.reset();
    }
  }
  return shapes;
}

}  // namespace ferrowen
