// Looks at the frame of a map file without decoding what is in it. Each check returns what is wrong, as the
// end of a sentence that begins with the file's name, or "" when nothing is.
#pragma once

#include <string>

#include "pipeline/tiles/byte_source.hpp"

namespace ferrowen {

// Blocks of a 4-byte length, a BlobHeader message and its data, up to the exact end; the first is the header.
// Format: https://wiki.openstreetmap.org/wiki/PBF_Format
std::string check_pbf(ByteSource& source);
// The same for what a tool has just written, which may be empty of data.
struct PbfFrame {
  std::string problem;
  bool holds_data = false;
};
PbfFrame read_pbf_frame(ByteSource& source);
// Start mark with the format's name, end mark, and an object between them.
// Format: https://wiki.openstreetmap.org/wiki/O5m
std::string check_o5m(ByteSource& source);
// Root element <osm> or <osmChange>, closed at the very end.
std::string check_osm_xml(ByteSource& source);
std::string check_gzip(ByteSource& source);
// The [IMG ID] section near the start, and a section that holds an object.
std::string check_mp(ByteSource& source);

}  // namespace ferrowen
