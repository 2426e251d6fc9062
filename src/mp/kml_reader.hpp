// Reader of KML text (OGC KML 2.2, as Google Earth saves it): its placemarks with their first coordinates and
// the label from their extended data.
#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "mp/coordinate.hpp"
#include "mp/problem_list.hpp"

namespace ferrowen {

struct KmlPlacemark {
  std::string_view coordinates;  // tuples as they stand in the file
  std::string label;             // from its extended data, lower case
};

// Holds views into the text that it was read from.
struct KmlFile {
  std::string error;                    // the bytes are no text: the end of a sentence
  bool has_placemarks = false;          // false: there is nothing to read
  std::deque<KmlPlacemark> placemarks;  // those with coordinates; a deque grows without a copy of itself
  ProblemList problems;
};

// `text` must be in lower case (ASCII letters): labels come out as they stand in it. The plain tags are
// looked for first; only where there is none, a tolerant reading takes prefixes, attributes and line breaks
// in tags.
KmlFile read_kml(std::string_view text);

// The next tuple of a coordinate text, which is cut off from `rest`; "" at its end. Characters up to code 32
// separate tuples.
std::string_view next_tuple(std::string_view& rest);
// "longitude,latitude" with or without an altitude, as a checked coordinate; what is wrong otherwise.
std::string read_tuple(std::string_view tuple, Coordinate& coordinate, RewrittenTexts& rewritten);

// The label that the text of a placemark holds in its extended data; "" when there are too few values.
std::string extended_data_label(std::string_view placemark);

}  // namespace ferrowen
