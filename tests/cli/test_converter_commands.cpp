#include <doctest/doctest.h>

#include "base/files.hpp"
#include "cli_run.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

TEST_CASE("gpx2mp and kml2mp: choices as options, results, exit statuses") {
  const TempFolder home("h\u00f6me");
  const auto run = [&](const Arguments& arguments, const std::string& answers = "") {
    return run_cli_in(home.path(), arguments, answers);
  };
  const std::string track =
      home.write("t.gpx", "<name>N</name><trkseg><trkpt lat='1' lon='2'/><trkpt lat='3' lon='4'/></trkseg>");
  const std::string places = home.write(
      "p.kml",
      "<Placemark><coordinates>1,2</coordinates></Placemark><Placemark><coordinates>1,2 3,4</coordinates>");
  const CliResult polygon = run({"gpx2mp", track, "--polygon", "--type", "13", "--label", "L", "--show"});
  CHECK(polygon.status == 0);
  CHECK(polygon.output == home / "mps/t.mp" + "\nLines:0\nPolygons:1\nPOIs:0\nCoordinates:2\n");
  CHECK(contains(polygon.error, "[POLYGON]\nType=0x13\nLabel=L\nData0=(1,2),(3,4)\n[END]"));
  CHECK(run({"gpx2mp", track, "--points", "--start-type", "1", "--half-way-type", "2", "--finish-type", "3",
             "--name"},
            "y\n")
            .told(0, "Use as label?"));
  const std::string written = read_whole_file(home / "mps/t.mp");
  for (const char* part : {"Type=0x1\r\nLabel=Start", "Type=0x2\r\nLabel=half way",
                           "Type=0x3\r\nLabel=Finish", "Type=0x16\r\nLabel=N\r\n"})
    CHECK_MESSAGE(contains(written, part), part);

  const nlohmann::json kml =
      run({"kml2mp", places, "--points", "--point-type", "4c", "--type", "1c", "--json"}).json();
  CHECK(kml.at("files").at(0).at("output") == home / "mps/p.mp");
  CHECK(kml.at("lines") == 1);
  CHECK(kml.at("pois") == 1);
  CHECK(contains(read_whole_file(home / "mps/p.mp"), "[POI]\r\nType=0x4c\r\nData0=(2,1)"));

  CHECK(run({"gpx2mp", track, "--type", "zz"}).told(3, "Invalid Type:zzType must be hexadecimal"));
  CHECK(run({"gpx2mp", places, track}).told(2, "Not a gpx file."));
  CHECK(run({"kml2mp", track}).told(2, "Not a kml file.\nNot converted: " + track));
  CHECK(run({"gpx2mp", home / "none.gpx"}).told(2, "no such file"));
  CHECK(run({"gpx2mp"}).status == 2);
  REQUIRE(remove_file(home / "mps/t.mp").ok());
  home.write("mps/t.mp/in-the-way", "");
  CHECK(run({"gpx2mp", track}).told(1, "in the way"));
}

}  // namespace ferrowen::test
