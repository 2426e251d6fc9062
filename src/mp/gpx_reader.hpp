// Reader of GPX text (GPX 1.0 and 1.1, topografix.com): the points of its route or track segments, in file
// order. Bytes in, struct out: bad bytes are told, never thrown.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mp/coordinate.hpp"
#include "mp/problem_list.hpp"

namespace ferrowen {

struct GpxSegment {
  std::size_t first = 0, count = 0;  // of GpxFile::points
  bool has_point_tags = false;       // false: there is nothing that looks like a point
};

// Holds views into the text that it was read from.
struct GpxFile {
  std::string error;  // the bytes are no text: the end of a sentence
  std::vector<GpxSegment> segments;
  std::deque<Coordinate> points;    // good ones alone; a deque grows without a copy of itself
  std::optional<std::string> name;  // of the first name element, UTF-8
  std::size_t name_line = 0;        // where it stands, counted from 1
  ProblemList problems;             // points that are left out, parts that are not read
  RewrittenTexts rewritten;
};

// Routes win over tracks. The plain tags are looked for first; only where there is none of them, a tolerant
// reading takes upper case, prefixes, attributes and line breaks inside of tags too.
GpxFile read_gpx(std::string_view text);

}  // namespace ferrowen
