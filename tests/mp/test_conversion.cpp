#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "base/text.hpp"
#include "mp/gpx2mp.hpp"
#include "mp/kml2mp.hpp"
#include "mp/mp_shapes.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

namespace {

using Texts = std::vector<std::string>;

std::string gpx_points(std::initializer_list<std::pair<const char*, const char*>> points) {
  std::string text;
  for (const auto& [latitude, longitude] : points)
    text += std::string("<trkpt lat=\"") + latitude + "\" lon=\"" + longitude + "\"/>\n";
  return text;
}

std::string track(const std::string& points) { return "<gpx><trkseg>" + points + "</trkseg></gpx>"; }

std::string placemark(const std::string& coordinates) {
  return "<Placemark><coordinates>" + coordinates + "</coordinates></Placemark>";
}

struct Desk {
  Desk() : home("h\u00f6me") { workspace.folder = ProgramFolder(home.path()); }

  Conversion gpx(const Texts& files) { return gpx2mp(workspace, prompts, progress, files, gpx_choices); }
  Conversion kml(const Texts& files) { return kml2mp(workspace, prompts, progress, files, kml_choices); }
  // Converts one text; what stands behind the header.
  std::string body(const char* name, const std::string& text) {
    const std::string input = home.write(name, text);
    last = input.ends_with("x") ? gpx({input}) : kml({input});
    return written(std::string(name).substr(0, std::string(name).size() - 4));
  }
  [[nodiscard]] std::string written(const std::string& stem) const {
    const std::string text = read_whole_file(home / ("mps/" + stem + ".mp"));
    return text.empty() ? "" : text.substr(mp_header().size());
  }
  [[nodiscard]] Texts left_in_mps() const { return list_files(home / "mps", {""}); }

  TempFolder home;
  Workspace workspace;
  FakePrompts prompts;
  FakeProgress progress;
  GpxChoices gpx_choices;
  KmlChoices kml_choices;
  Conversion last;
};

std::string poi(const std::string& type, const std::string& label, const std::string& point) {
  std::string text;
  for (const char* level : {"0", "1", "2"})
    text.append("[POI]\r\nType=0x" + type + "\r\nLabel=" + label + "\r\nData")
        .append(level)
        .append("=(" + point + ")\r\n[END]\r\n");
  return text;
}

std::string line(const std::string& label, const std::string& points) {
  return "[POLYLINE]\r\nType=0x16\r\n" + label + "Data0=" + points + "\r\n[END]\r\n";
}

}  // namespace

TEST_CASE("a track: start, finish, the line, half way; the summary") {
  Desk desk;
  desk.gpx_choices = {"0016", "2f06", "2f07", "2f08", "Tour", false, true, false};
  const std::string text = track(gpx_points({{"46.5", "7.12345"}, {"46.6", "7.2"}, {"47.5", "7.3"}}));
  CHECK(desk.body("tour.gpx", text) == poi("2f06", "Start", "46.5,7.123450") +
                                           poi("2f08", "Finish", "47.5,7.3") +
                                           line("Label=Tour\r\n", "(46.5,7.123450),(46.6,7.2),(47.5,7.3)") +
                                           poi("2f07", "half way", "47.5,7.3"));
  CHECK(desk.prompts.said.empty());
  CHECK(desk.last.end == ConversionEnd::done);
  CHECK(desk.last.files.front().output == desk.home / "mps/tour.mp");
  CHECK(conversion_summary(desk.last.counts) == "Lines:1\r\nPOIs:3\r\nCoordinates:3");
  CHECK(desk.left_in_mps() == Texts{"tour.mp"});
  CHECK(desk.progress.fractions.back() == 1);

  desk.gpx_choices = {"13", "", "", "", "", false, false, true};
  CHECK(desk.body("tour.gpx", text).starts_with("[POLYGON]\r\nType=0x13\r\nData0=(46.5,"));
  CHECK(conversion_summary(desk.last.counts) == "Lines:0\r\nPolygons:1\r\nPOIs:0\r\nCoordinates:3");
}

TEST_CASE("length, list and half way begin anew with each segment; a segment without points is passed over") {
  Desk desk;
  desk.gpx_choices.writes_points = true;
  const std::string body =
      desk.body("two.gpx", track(gpx_points({{"10", "0"}, {"20", "0"}}) + "<trkseg><trkseg>" +
                                 gpx_points({{"1", "0"}, {"2", "0"}, {"3", "0"}, {"4", "0"}})));
  CHECK(contains(body, poi("52", "half way", "20,0") + poi("6412", "Start", "1,0")));
  CHECK(body.ends_with(line("", "(1,0),(2,0),(3,0),(4,0)") + poi("52", "half way", "3,0")));
  CHECK(desk.prompts.tells() == Texts{"Can't locate coordinates"});
  CHECK(desk.last.counts.lines == 2);
}

TEST_CASE("the name in the file is offered as label") {
  const std::string text = "<name>Tom &amp; \u041c</name>" + track(gpx_points({{"1", "2"}, {"3", "4"}}));
  const std::string question = "Found label:\r\n\r\n'Tom & \u041c'\r\n\r\nUse as label?";
  for (const Answer answer : {Answer::yes, Answer::no}) {
    Desk desk;
    desk.gpx_choices.offers_name = true;
    desk.prompts.answers = {answer};
    const bool accepted = answer == Answer::yes;
    CHECK(desk.body("t.gpx", text) == line(accepted ? "Label=Tom & \xCC\r\n" : "", "(1,2),(3,4)"));
    CHECK(desk.prompts.texts() == Texts{question});
    CHECK(desk.last.has_foreign_letters == accepted);
  }
  Desk desk;
  desk.gpx_choices.label = "Z\u00fcrich";
  CHECK(desk.body("t.gpx", text) == line("Label=Z?rich\r\n", "(1,2),(3,4)"));
  CHECK(desk.prompts.tells() == Texts{"There were errors:\r\nt.gpx: label 'Z\u00fcrich': no place in code "
                                      "page 1251 for \u00fc, written as ?"});
}

TEST_CASE("types: a bad one is told once and its objects are left out; a long one is shortened in its box") {
  Desk desk;
  desk.gpx_choices = {"1601", "zz", "64ff", "zz", "", false, true, false};
  const std::string body = desk.body("t.gpx", track(gpx_points({{"1", "2"}, {"3", "4"}})));
  CHECK(body == line("", "(1,2),(3,4)") + poi("64ff", "half way", "3,4"));
  CHECK(desk.prompts.tells() ==
        Texts{"Invalid Type:zzType must be hexadecimal", "mkgmap patch:TYPE changed to 16",
              "mkgmap does not take point type 64ff: it will build no map from the file, and not say why."});
  CHECK(desk.gpx_choices.line_type == "16");
  CHECK(desk.last.end == ConversionEnd::stopped_by_check);

  desk.gpx_choices = {"0", "", "", "", "", false, false, false};
  CHECK(desk.body("none.gpx", track(gpx_points({{"1", "2"}, {"3", "4"}}))).empty());
  CHECK(desk.last.end == ConversionEnd::stopped_by_check);
  CHECK(desk.left_in_mps() == Texts{"t.mp"});
}

TEST_CASE("KML: paths, single positions, the label, lower case, padded latitudes") {
  Desk desk;
  CHECK(desk.body("k.kml", placemark("7.1,46.2,0") + placemark("\n7,46.1234\t\t8,47,1\r\n 9.12345,48,")) ==
        line("", "(46.12340,7),(47,8),(48,9.12345)"));
  CHECK(conversion_summary(desk.last.counts) == "Lines:1\r\nPOIs:0\r\nCoordinates:3");
  desk.kml_choices = {"16", "2f", "", true};
  CHECK(desk.body("k.kml", placemark("7.1,46.2,0")) == "[POI]\r\nType=0x2f\r\nData0=(46.2,7.1)\r\n[END]\r\n");
  CHECK(desk.body("k.kml", placemark("7.1,46.2345")) ==
        "[POI]\r\nType=0x2f\r\nData0=(46.23450,7.1)\r\n[END]\r\n");
  std::string data;
  for (const char* value : {"A", "B", "Main ST", "Number"})
    data += std::string("<Data name=\"x\"><value>") + value + "</value></Data>";
  const std::string labelled = "<Placemark><coordinates>1,2 3,4</coordinates>" + data;
  CHECK(desk.body("k.kml", labelled) == line("Label=main st/datadata number/data\r\n", "(2,1),(4,3)"));
  desk.kml_choices.label = "Mine";
  CHECK(desk.body("k.kml", labelled) == line("Label=Mine\r\n", "(2,1),(4,3)"));
  CHECK(desk.prompts.said.empty());

  CHECK(desk.body("k.kml", placemark("1,2 3,999 x 4,5") + "\n" + placemark("999,1")) ==
        line("Label=Mine\r\n", "(2,1),(5,4)"));
  CHECK(desk.prompts.tells() ==
        Texts{"There were errors:\r\nk.kml: line 1: latitude 999 is not between -90 and 90; the point is "
              "left out\r\n"
              "k.kml: line 1: 'x' is no pair of coordinates; it is left out\r\n"
              "k.kml: line 2: longitude 999 is not between -180 and 180; the point is left out\r\n"
              "k.kml: line 2: a placemark without any good coordinates"});
}

TEST_CASE("bad input: a message, no file, and what lies there already stays") {
  struct Case {
    const char* name;
    std::string text, message;
  };
  using namespace std::string_literals;
  const std::vector<Case> cases = {
      {"b.gpx", "", "Cannot find required data"},
      {"b.gpx", std::string(1000000, ' '), "Cannot find required data"},
      {"b.gpx", "<gpx><wpt lat=\"1\" lon=\"2\"/></gpx>", "Cannot find required data"},
      {"b.gpx", track(""), "Can't locate coordinates"},
      {"b.gpx", track("<trkpt lat=\"1.2"), "No coordinates found"},
      {"b.gpx", track(gpx_points({{"NaN", "999"}})), "No coordinates found"},
      {"b.gpx", track(gpx_points({{"1", "2"}})), "b.gpx: there is nothing to write. "},
      {"b.gpx", "\xFF\xFE<\0"s, "b.gpx is UTF-16 text. Save it as UTF-8 and try again."},
      {"b.kml", "", "Cannot find required data"},
      {"b.kml", "<kml></kml>", "Cannot find required data"},
      {"b.kml", placemark("1,2"), "b.kml: there is nothing to write. "},
      {"b.kml", "\xFE\xFF\0<"s, "b.kml is UTF-16 text. "},
  };
  for (const Case& one : cases) {
    Desk desk;
    desk.home.write("mps/b.mp", mp_header() + "kept");
    CHECK(desk.body(one.name, one.text) == "kept");
    CAPTURE(one.text.substr(0, 50));
    CHECK(desk.last.end == ConversionEnd::bad_input);
    bool found = false;
    for (const std::string& text : desk.prompts.tells())
      found = found || text.starts_with(one.message);
    CHECK_MESSAGE(found, one.message);
    CHECK(desk.left_in_mps() == Texts{"b.mp"});
  }
}

TEST_CASE("what is good is written, and what is not is told") {
  Desk desk;
  const std::string good = gpx_points({{"1", "2"}, {"3", "4"}});
  SUBCASE("a last segment without a good point") {
    const std::string text =
        "<gpx><trkseg>" + good + "</trkseg><trkseg><trkpt lat=\"NaN\" lon=\"1\"/></trkseg></gpx>";
    CHECK(desk.body("s.gpx", text) == line("", "(1,2),(3,4)"));
    CHECK(desk.last.end == ConversionEnd::stopped_by_check);
    CHECK(desk.prompts.tells().back() == "No coordinates found");
  }
  SUBCASE("points whose tags are written in two ways") {
    const std::string text = "<gpx>\n<trkseg>" + good +
                             "\n<TRKPT lat=\"5\" lon=\"6\"/>\n<trkpt\nlat=\"7\" lon=\"8\"/></trkseg></gpx>";
    CHECK(desk.body("s.gpx", text) == line("", "(1,2),(3,4)"));
    REQUIRE(desk.prompts.tells().size() == 1);
    CHECK(contains(desk.prompts.tells().front(), "s.gpx: line 5: 2 point(s) whose tags"));
  }
#ifndef _WIN32
  SUBCASE("a device has no end") {
    const std::string device = desk.home / "zero.gpx";
    std::filesystem::create_symlink("/dev/zero", device);
    CHECK(desk.gpx({device}).end == ConversionEnd::bad_input);
    CHECK(desk.prompts.tells() == Texts{device + ": is no file"});
  }
#endif
}

TEST_CASE("several files: wrong endings are passed over, a bad file ends the conversion, names may meet") {
  Desk desk;
  const std::string good = track(gpx_points({{"1", "2"}, {"3", "4"}}));
  const std::string one = desk.home.write("one.GPX", good);
  const std::string other = desk.home.write("other/one.gpx", good);
  const std::string text = desk.home.write("notes.txt", good);
  const std::string two = desk.home.write("two.gpx", good);
  const std::string bad = desk.home.write("bad.gpx", "<gpx/>");
  const std::string three = desk.home.write("three.gpx", good);
  const Conversion result = desk.gpx({text, one, other, two, bad, three});
  CHECK(result.not_converted == Texts{text, other, bad, three});
  CHECK(result.files.size() == 2);
  CHECK(result.counts.lines == 2);
  CHECK(desk.left_in_mps() == Texts{"one.mp", "two.mp"});
  REQUIRE(desk.prompts.tells().size() == 3);
  CHECK(desk.prompts.tells()[0] == "Not a gpx file.");
  CHECK(contains(desk.prompts.tells()[1], "was just written from " + one));
  CHECK(desk.prompts.tells()[2] == "Cannot find required data");
  CHECK(desk.kml({text}).end == ConversionEnd::bad_input);
  CHECK(desk.prompts.tells().back() == "Not a kml file.");

  desk.prompts.said.clear();
  CHECK(desk.gpx({desk.home / "none.gpx"}).end == ConversionEnd::bad_input);
  std::filesystem::create_directories(platform::file_system_path(desk.home / "folder.gpx"));
  CHECK(desk.gpx({desk.home / "folder.gpx"}).end == ConversionEnd::bad_input);
  CHECK(desk.prompts.tells() ==
        Texts{desk.home / "none.gpx" + ": no such file", desk.home / "folder.gpx" + ": is a folder"});
}

TEST_CASE("a stop and a folder in the way leave nothing behind") {
  Desk desk;
  std::string points;
  for (int i = 0; i < 250; ++i)
    points += gpx_points({{"1", "2"}});
  desk.progress.stop_when = [&] { return desk.progress.fractions.size() == 2; };
  CHECK(desk.body("t.gpx", track(points)).empty());
  CHECK(desk.last.end == ConversionEnd::cancelled);
  CHECK(desk.progress.fractions == std::vector<double>{100 / 250.0, 200 / 250.0});
  CHECK(desk.prompts.said.empty());
  CHECK(desk.left_in_mps().empty());

  desk.progress.stop_when = nullptr;
  std::filesystem::create_directories(platform::file_system_path(desk.home / "mps/t.mp"));
  CHECK(desk.gpx({desk.home / "t.gpx"}).end == ConversionEnd::failed);
  CHECK(contains(desk.prompts.tells().back(), "in the way"));
  CHECK(desk.left_in_mps().empty());
}

TEST_CASE("a look at what would be written tells nothing and writes nothing") {
  Desk desk;
  desk.gpx_choices.writes_points = desk.gpx_choices.offers_name = true;
  const std::string text = "<name>x</name>" + track(gpx_points({{"46", "7"}, {"47", "8"}}));
  const std::string file = desk.home.write("t.gpx", text);
  const std::vector<MpShape> shapes =
      read_mp_shapes(converted_text(file, desk.progress, gpx_format(desk.gpx_choices)));
  REQUIRE(shapes.size() == 4);
  CHECK(shapes[0].label == "Start");
  CHECK(shapes[2].kind == MpKind::line);
  REQUIRE(shapes[2].points.size() == 2);
  CHECK(shapes[2].points[1].longitude == 8);
  CHECK(desk.prompts.said.empty());
  CHECK_FALSE(file_exists(desk.home / "mps"));
  CHECK(converted_text(desk.home / "none.gpx", desk.progress, gpx_format(desk.gpx_choices)).empty());
}

TEST_CASE("the build is told how labels are kept") {
  Settings settings;
  settings.unicode = true;
  settings.options_text = "--x\r\n##\r\n[more]";
  use_label_encoding(settings, LabelEncoding::code_page_1251);
  use_label_encoding(settings, LabelEncoding::code_page_1251);
  CHECK_FALSE(settings.unicode);
  CHECK(settings.options_text == "--code-page=1251\r\n--x\r\n##\r\n[more]");
  use_label_encoding(settings, LabelEncoding::unicode);
  CHECK(settings.unicode);
  CHECK(settings.options_text == "--x\r\n##\r\n[more]");
}

TEST_CASE("what is no MP file is not shown") {
  Desk desk;
  for (const std::string& path :
       {desk.home.write("a.txt", mp_header()), desk.home.write("b.mp", "x"), desk.home / "c.mp"})
    show_mp(desk.prompts, path);
  show_mp(desk.prompts, desk.home.write("d.mp", mp_header()));
  CHECK(desk.prompts.texts() == Texts{"a.txt not a valid mp file", "b.mp not a valid mp file",
                                      "c.mp not a valid mp file", desk.home / "d.mp"});
}

}  // namespace ferrowen::test
