#include <doctest/doctest.h>

#include "pipeline/tiles/splitter.hpp"

using namespace ferrowen;

TEST_CASE("the prefix of every Java call, and the memory in it") {
  struct Case {
    const char* setting;
    const char* prefix;
    bool accepted;
  };
  for (const Case& one :
       {Case{"", "java -ea -jar", true}, Case{"  ", "java -ea -jar", true},
        Case{"1500", "java -Xmx1500m -ea -jar", true}, Case{" 1500m ", "java -Xmx1500m -ea -jar", true},
        Case{"-Xmx1500m", "java -Xmx1500m -ea -jar", true},
        Case{"-Xmx1500m -XX:+UseSerialGC", "java -Xmx1500m -ea -jar", true},
        Case{"-Xmx2g", "java -Xmx2gm -ea -jar", false}, Case{"2g", "java -Xmx2gm -ea -jar", false},
        Case{"-Xmxm", "java -ea -jar", false}, Case{"0", "java -Xmx0m -ea -jar", false},
        Case{"-5", "java -Xmx-5m -ea -jar", false}}) {
    CAPTURE(one.setting);
    CHECK(java_prefix(one.setting) == one.prefix);
    CHECK(check_memory(one.setting).ok() == one.accepted);
  }
  CHECK(check_memory(" -Xmx2g").error ==
        "The memory for Java, '-Xmx2g', is not a number of megabytes. Please write it like 1500 or -Xmx1500m "
        "in Settings, Splitter and Java.");
  CHECK(java_memory("-Xmx1500m") == 1500);
  CHECK(java_memory("") > 0);
}

TEST_CASE("limits") {
  struct Case {
    LimitCorrection (*correct)(std::string_view);
    const char* text;
    const char* value;
    int message;
  };
  for (const Case& one :
       {Case{corrected_max_nodes, "99999", "800000", 92}, Case{corrected_max_nodes, "100000", "100000", 0},
        Case{corrected_max_nodes, "60 thousand", "800000", 92}, Case{corrected_max_nodes, "", "800000", 92},
        Case{corrected_max_nodes, " 1600000 ", "1600000", 0}, Case{corrected_max_nodes, "1e6", "1000000", 0},
        Case{corrected_max_areas, "9", "100", 93}, Case{corrected_max_areas, "5", "100", 93},
        Case{corrected_max_areas, "10", "10", 0}, Case{corrected_max_areas, "255", "255", 0},
        Case{corrected_max_areas, "256", "255", 94}, Case{corrected_max_areas, "-1", "100", 93}}) {
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
  settings.splitter_options =
      "\r\n--output=o5m\r\n# --output=xml\r\n--polygon-file=a.poly --keep-complete=false\r\n";
  const SplitterCommand made = splitter_command(settings);
  CHECK(made.notes == std::vector<std::string>{"Polygon in Splitter Option not included"});
  CHECK(render_command(made.command, Dialect::shell).value ==
        "java -Xmx1500m -ea -jar \"/opt/split ter/splitter.jar\" --mapid=13224385 "
        "--output-dir=\"/home/me/te mp\" --description=\"My map\" --max-nodes=800000 --max-areas=255 "
        "--output=o5m --keep-complete=false \"/maps/\\$(touch x) 100%.osm.pbf\"");
  CHECK(render_command(made.command, Dialect::batch).value ==
        "java -Xmx1500m -ea -jar \"/opt/split ter/splitter.jar\" --mapid=13224385 "
        "--output-dir=\"/home/me/te mp\" --description=\"My map\" --max-nodes=800000 --max-areas=255 "
        "--output=o5m --keep-complete=false \"/maps/$(touch x) 100%%.osm.pbf\"");

  settings.description = "  ";
  settings.java_options = settings.splitter_options = "";
  CHECK(render_command(splitter_command(settings).command, Dialect::batch).value ==
        "java -ea -jar \"/opt/split ter/splitter.jar\" --mapid=13224385 --output-dir=\"/home/me/te mp\" "
        "--max-nodes=800000 --max-areas=255 \"/maps/$(touch x) 100%%.osm.pbf\"");
}

TEST_CASE("progress bar: a third, then from half of the tiles on their share") {
  const double start = split_fraction(0, 0);
  CHECK(start < 0.01);
  CHECK(split_fraction(12, 0) == doctest::Approx(1.0 / 3));
  CHECK(split_fraction(12, 5) == doctest::Approx(1.0 / 3));
  CHECK(split_fraction(12, 6) == doctest::Approx(0.5 * 8700 / 9000));
  CHECK(split_fraction(5, 2) == doctest::Approx(1.0 / 3));
  CHECK(split_fraction(5, 3) == doctest::Approx(0.6 * 8700 / 9000));
  CHECK(split_fraction(1, 9) == doctest::Approx(8700.0 / 9000));
}

TEST_CASE("larger inputs need more memory") {
  int before = 0;
  for (const std::uint64_t megabytes : {0ULL, 13ULL, 101ULL, 501ULL, 2001ULL, 8001ULL, 30001ULL, 80000ULL}) {
    const int memory = least_memory_for_split(megabytes * 1000000);
    CHECK(memory >= before);
    before = memory;
  }
  CHECK(least_memory_for_split(12000000) < 500);
  CHECK(before >= 4000);
}
