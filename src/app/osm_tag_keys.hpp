// The OSM keys that map makers meet most often, each with one plain sentence.
#pragma once

#include <string_view>
#include <vector>

namespace ferrowen {

struct OsmTagKey {
  std::string_view key;
  std::string_view meaning;
  std::string_view examples;  // common values, separated by ", "; "" when any text may stand there
};

// In alphabetical order.
const std::vector<OsmTagKey>& osm_tag_keys();

}  // namespace ferrowen
