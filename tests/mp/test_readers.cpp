#include <doctest/doctest.h>

#include <cmath>

#include "base/text.hpp"
#include "mp/distance.hpp"
#include "mp/gpx_reader.hpp"
#include "mp/kml_reader.hpp"
#include "mp/markup.hpp"

namespace ferrowen::test {

namespace {

// "1,2 3,4 | 5,6": the points of each segment; "-" for one without anything like a point.
std::string points_of(const GpxFile& file) {
  std::string text;
  for (const GpxSegment& segment : file.segments) {
    text += text.empty() ? "" : " | ";
    if (!segment.has_point_tags) text += "-";
    for (std::size_t i = segment.first; i < segment.first + segment.count; ++i)
      text.append(i == segment.first ? "" : " ")
          .append(file.points[i].latitude)
          .append(",")
          .append(file.points[i].longitude);
  }
  return text;
}

std::string in_segment(const std::string& points) {
  return "<gpx><trk><trkseg>" + points + "</trkseg></trk></gpx>";
}

}  // namespace

TEST_CASE("GPX in the manner of many programs") {
  struct Case {
    const char* manner;
    std::string text, points;
  };
  const std::vector<Case> cases = {
      {"plain", in_segment("<trkpt lat=\"1.5\" lon=\"2\"><ele>3</ele></trkpt><trkpt lon=\"4\" lat=\"3\"/>"),
       "1.5,2 3,4"},
      {"single quotes", in_segment("<trkpt lat='1' lon='2'/>"), "1,2"},
      {"upper case attributes, blanks", in_segment("<trkpt LAT = \" 1 \"  LON=\"2\" />"), "1,2"},
      {"line breaks in tags", in_segment("<trkpt\r\n lat=\"1\"\n\tlon=\"2\"\n/>"), "1,2"},
      {"line break behind a blank", in_segment("<trkpt lat=\"1\"\r\n lon=\"2\"></trkpt>"), "1,2"},
      {"upper case tags", "<GPX><TRKSEG><TRKPT LAT=\"1\" LON=\"2\"/></TRKSEG></GPX>", "1,2"},
      {"prefix", "<gpx:trkseg><gpx:trkpt lat=\"1\" lon=\"2\"/></gpx:trkseg>", "1,2"},
      {"attributes of the route", "<rte id=\"7\"><rtept lat=\"1\" lon=\"2\"/></rte>", "1,2"},
      {"other attributes", in_segment("<trkpt maxlon=\"9\" lat=\"1\" lon=\"2\"/>"), "1,2"},
      {"byte order mark", "\xEF\xBB\xBF" + in_segment("<trkpt lat=\"1\" lon=\"2\"/>"), "1,2"},
      {"decimal comma, plus, exponent", in_segment("<trkpt lat=\"+1,5\" lon=\"2e-1\"/>"), "1.5,0.2"},
      {"segments",
       in_segment(
           "<trkpt lat=\"1\" lon=\"2\"/></trkseg><trkseg></trkseg><trkseg><trkpt lat=\"3\" lon=\"4\"/>"),
       "1,2 | - | 3,4"},
      {"self-closing segment", "<x:trkseg/><x:trkseg><trkpt lat=\"1\" lon=\"2\"/></x:trkseg>", "1,2"},
      {"routes alone", "<rte><rtept lat=\"1\" lon=\"2\"/></rte><trkseg><trkpt lat=\"3\" lon=\"4\"/></trkseg>",
       "1,2"},
      {"route with track points", "<rte><trkpt lat=\"3\" lon=\"4\"/></rte>", "3,4"},
      {"waypoints alone", "<gpx><wpt lat=\"1\" lon=\"2\"/></gpx>", ""},
      {"empty", "", ""},
  };
  for (const Case& one : cases) {
    CAPTURE(one.manner);
    const GpxFile file = read_gpx(one.text);
    CHECK(file.error.empty());
    CHECK(points_of(file) == one.points);
    CHECK(file.problems.count() == 0);
  }
}

TEST_CASE("GPX points that cannot be written are left out and told with their line") {
  struct Case {
    std::string point, problem;
  };
  const std::vector<Case> cases = {
      {"<trkpt lat=\"NaN\" lon=\"2\"/>", "line 2: latitude 'NaN' is no number; the point is left out"},
      {"<trkpt lat=\"inf\" lon=\"2\"/>", "line 2: latitude 'inf' is no number; the point is left out"},
      {"<trkpt lat=\"1\" lon=\"999\"/>",
       "line 2: longitude 999 is not between -180 and 180; the point is left out"},
      {"<trkpt lat=\"-90.01\" lon=\"2\"/>",
       "line 2: latitude -90.01 is not between -90 and 90; the point is left out"},
      {"<trkpt lat=\"1,5,2\" lon=\"2\"/>", "line 2: latitude '1,5,2' is no number; the point is left out"},
      {"<trkpt lat=\"\" lon=\"2\"/>", "line 2: latitude '' is no number; the point is left out"},
      {"<trkpt lon=\"2\"/>", "line 2: a point without lat and lon is left out"},
  };
  for (const Case& one : cases) {
    const std::string text =
        in_segment("<trkpt lat=\"1\" lon=\"2\"/>\n" + one.point + "<trkpt lat=\"3\" lon=\"4\"/>");
    const GpxFile file = read_gpx(text);
    CHECK(points_of(file) == "1,2 3,4");
    CHECK(file.problems.lines() == std::vector<std::string>{one.problem});
  }
  const GpxFile cut = read_gpx("<trkseg><trkpt lat=\"1\" lon=\"2\"/>\n\n<trkpt lat=\"1.5\" lon=\"3.1");
  CHECK(points_of(cut) == "1,2");
  CHECK(cut.problems.lines() ==
        std::vector<std::string>{"line 3: the file ends within a point, which is left out"});
  std::string many;
  for (int i = 0; i < 50; ++i)
    many += "<trkpt lat=\"x\" lon=\"2\"/>\n";
  const std::vector<std::string> lines = read_gpx(in_segment(many)).problems.lines();
  REQUIRE(lines.size() == 21);
  CHECK(lines[19].starts_with("line 20: "));
  CHECK(lines.back() == "and 30 more");
}

TEST_CASE("GPX names: entities, CDATA, blanks, other code pages; bytes that are no text") {
  struct Case {
    std::string text;
    std::optional<std::string> name;
  };
  const std::vector<Case> cases = {
      {"<name>Tom &amp; Jerry &#x20AC;&#252;&bogus;</name>", "Tom & Jerry \u20ac\u00fc&bogus;"},
      {"<name><![CDATA[A < B & C]]></name>", "A < B & C"},
      {"<name>\r\n  two\n lines </name>", "two lines"},
      {"<gpx:name>x</gpx:name>", "x"},
      {"<NAME lang='de'>x</NAME>", "x"},
      {"<name></name>", std::nullopt},
      {"<name>a&#10;[END]&#0;b</name>", "a [END] b"},
      {"<?xml version='1.0' encoding='windows-1251'?><name>\xCC</name>", "\u041c"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><name>\xFC</name>", "\u00fc"},
      {"<filename>x</filename>", std::nullopt},
      {"<name", std::nullopt},
      {"<name>cut", "cut"},
  };
  for (const Case& one : cases) {
    CAPTURE(one.text);
    CHECK(read_gpx(one.text).name == one.name);
  }
  using namespace std::string_view_literals;
  for (const std::string_view bytes : {"\xFF\xFE<\0g\0"sv, "\xFE\xFF\0<"sv, "<\0g\0p\0"sv})
    CHECK(read_gpx(bytes).error == "is UTF-16 text. Save it as UTF-8 and try again.");
  CHECK(read_kml("<kml>\0"sv).error == "is no text.");
}

TEST_CASE("KML placemarks: plain tags first, then a tolerant reading") {
  struct Case {
    const char* manner;
    std::string text;
    std::vector<std::string> coordinates;
    std::size_t problems;
  };
  const std::string path = "<coordinates>1,2,0</coordinates>";
  const std::vector<Case> cases = {
      {"plain",
       "<placemark><point>" + path + "</point></placemark><placemark>" + path,
       {"1,2,0", "1,2,0"},
       0},
      {"attributes",
       "<placemark id=\"a\">" + path + "</placemark><placemark\nid='b'>" + path,
       {"1,2,0", "1,2,0"},
       0},
      {"prefix", "<kml:placemark><kml:coordinates>1,2</kml:coordinates></kml:placemark>", {"1,2"}, 0},
      {"attributes of the coordinates", "<placemark><coordinates a=''>1,2</coordinates >", {"1,2"}, 0},
      {"both kinds", "<placemark>" + path + "</placemark><placemark id='x'>" + path, {"1,2,0"}, 2},
      {"several coordinates", "<placemark>" + path + path + "</placemark>", {"1,2,0"}, 1},
      {"without coordinates", "<placemark></placemark><placemark>" + path, {"1,2,0"}, 1},
      {"without their end", "<placemark><coordinates>1,2</placemark><placemark>" + path, {}, 1},
      {"nothing", "<kml></kml>", {}, 0},
  };
  for (const Case& one : cases) {
    CAPTURE(one.manner);
    const KmlFile file = read_kml(one.text);
    std::vector<std::string> found;
    for (const KmlPlacemark& placemark : file.placemarks)
      found.emplace_back(placemark.coordinates);
    CHECK(found == one.coordinates);
    CHECK(file.problems.count() == one.problems);
    CHECK(file.has_placemarks == (one.text != "<kml></kml>"));
  }
}

TEST_CASE("KML tuples: any run of characters below 33 separates them, letters beyond ASCII do not") {
  std::string_view rest =
      "\n\t 7.1,46.2,0 \r\n8,47\t\xC2\xA0"
      "9,48 ";
  std::vector<std::string_view> tuples;
  for (std::string_view tuple = next_tuple(rest); !tuple.empty(); tuple = next_tuple(rest))
    tuples.push_back(tuple);
  CHECK(tuples == std::vector<std::string_view>{"7.1,46.2,0", "8,47",
                                                "\xC2\xA0"
                                                "9,48"});
  Coordinate point;
  RewrittenTexts rewritten;
  CHECK(read_tuple("7.1,46.2,0", point, rewritten).empty());
  CHECK(point.latitude == "46.2");
  CHECK(point.longitude == "7.1");
  for (const char* bad : {"7", "7,", ",7", "7,91", "nan,1", "181,1,0"})
    CHECK_MESSAGE(!read_tuple(bad, point, rewritten).empty(), bad);
}

TEST_CASE("KML labels come from the third to fifth name of the extended data") {
  const auto data = [](const std::string& name, const std::string& value) {
    return "<data name=\"" + name + "\"><value> " + value + " </value></data>";
  };
  const std::string three = data("a", "x") + data("b", "y") + data("c", "main st");
  CHECK(extended_data_label(three).empty());
  // What the removal leaves behind is required: "</Data>" is in lower case here.
  CHECK(extended_data_label(three + data("d", "k'9")) == "main st /datadata k9 /data");
  CHECK(extended_data_label(three + data("d", "9") + data("e", "z") + data("f", "q")) ==
        "main st /datadata 9 /datadata z /datadata");
  CHECK(extended_data_label(replace_all(three + data("d", "9"), "value>", "v>")).empty());
}

TEST_CASE("distances and the half-way point") {
  CHECK(distance({46, 7}, {47, 7}, 'K') == doctest::Approx(60 * 1.1515 * 1.609344));
  CHECK(distance({46, 7}, {47, 7}, 'k') == distance({46, 7}, {47, 7}, 'K'));
  CHECK(distance({46, 7}, {47, 7}, 'N') == doctest::Approx(60 * 1.1515 * 0.8684));
  CHECK(distance({46, 7}, {47, 7}, 'M') == doctest::Approx(60 * 1.1515));
  CHECK(distance({0, 0}, {0, 180}, 'K') == doctest::Approx(180 * 60 * 1.1515 * 1.609344));
  CHECK_FALSE(std::isnan(distance({51.4778, -0.0014}, {51.4778, -0.0014}, 'K')));
  const auto half_way = [](const std::vector<Position>& positions) {
    LineLength length;
    for (const Position& position : positions)
      length.add(position);
    return length.half_way();
  };
  CHECK(half_way({{46, 7}}) == std::nullopt);
  CHECK(half_way({{46, 7}, {46, 7}}) == std::nullopt);
  CHECK(half_way({{46, 7}, {47, 7}}) == 1);
  CHECK(half_way({{46, 7}, {46.1, 7}, {46.2, 7}, {47, 7}}) == 3);
  // Exactly half does not exceed half.
  CHECK(half_way({{0, 0}, {0, 1}, {0, 2}}) == 2);
}

}  // namespace ferrowen::test
