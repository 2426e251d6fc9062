#include <doctest/doctest.h>

#include "pipeline/tiles/splitter.hpp"

using namespace ferrowen;

TEST_CASE("the prefix of every Java call, and the memory in it") {
  struct Case {
    const char *setting, *prefix;
    bool accepted;
  };
  for (const auto& [setting, prefix, accepted] :
       {Case{"  ", "java -ea -jar", true}, Case{" 1500m ", "java -Xmx1500m -ea -jar", true},
        Case{"-Xmx1500m -XX:+UseSerialGC", "java -Xmx1500m -ea -jar", true},
        Case{"-Xmx2g", "java -Xmx2gm -ea -jar", false}, Case{"-Xmxm", "java -ea -jar", false},
        Case{"0", "java -Xmx0m -ea -jar", false}, Case{"-5", "java -Xmx-5m -ea -jar", false}}) {
    CHECK(java_prefix(setting) == prefix);
    CHECK(check_memory(setting).ok() == accepted);
  }
}

TEST_CASE("limits") {
  struct Case {
    LimitCorrection (*correct)(std::string_view);
    const char *text, *value;
    int message;
  };
  for (const Case& one :
       {Case{corrected_max_nodes, "99999", "800000", 92}, Case{corrected_max_nodes, "100000", "100000", 0},
        Case{corrected_max_nodes, "", "800000", 92}, Case{corrected_max_nodes, "1e6", "1000000", 0},
        Case{corrected_max_areas, "9", "100", 93}, Case{corrected_max_areas, "10", "10", 0},
        Case{corrected_max_areas, "255", "255", 0}, Case{corrected_max_areas, "256", "255", 94}}) {
    CAPTURE(one.text);
    CHECK(one.correct(one.text).value == one.value);
    CHECK(one.correct(one.text).message == one.message);
  }
}

TEST_CASE("the command, for both shells") {
  Settings settings;
  settings.java_options = "-Xmx1500m";
  settings.splitter_jar = "/opt/split ter/splitter.jar";
  settings.split_folder = "/home/me/te mp";
  settings.input = "/maps/$(touch x) 100%.osm.pbf";
  settings.first_map_id = " 13224385 ";
  settings.max_nodes = "800000";
  settings.max_areas = "255";
  settings.description = "My map";
  settings.splitter_options = "\r\n--output=o5m\r\n# --output=xml\r\n--polygon-file=a.poly --no-trim\r\n";
  const SplitterCommand made = splitter_command(settings);
  CHECK(made.notes == std::vector<std::string>{"Polygon in Splitter Option not included"});
  const std::string common =
      "java -Xmx1500m -ea -jar \"/opt/split ter/splitter.jar\" --mapid=13224385 "
      "--output-dir=\"/home/me/te mp\" --description=\"My map\" --max-nodes=800000 --max-areas=255 "
      "--output=o5m --no-trim \"/maps/";
  CHECK(render_command(made.command, Dialect::shell).value == common + "\\$(touch x) 100%.osm.pbf\"");
  CHECK(render_command(made.command, Dialect::batch).value == common + "$(touch x) 100%%.osm.pbf\"");
}
