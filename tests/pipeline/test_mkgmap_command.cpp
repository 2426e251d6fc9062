#include "pipeline/mkgmap_command.hpp"

#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "base/text.hpp"

using namespace ferrowen;

namespace {

Settings full_settings() {
  Settings settings;
  settings.java_options = "-Xmx1500m";
  settings.mkgmap_jar = "/tools/mkgmap.jar";
  settings.map_id = "13224385";
  settings.fid = "1000";
  settings.country = "United Kingdom";
  settings.map_name = " My Map ";
  settings.overview_name = "ovm";
  settings.style = "hiking";
  settings.styles_folder = "/my styles";
  settings.use_max_jobs = true;
  settings.max_jobs = 2;
  settings.output_folder = "/out";
  settings.transparent = settings.installer = settings.pois_to_lines = settings.device_image = true;
  settings.description = "100% \xC3\xBC $(x)";
  return settings;
}

const CommandFiles all_files = {"/s/template.args", "/s/nodem.args", "/s/dem.args", "/out/My.TYP"};

std::string rendered(const Settings& settings, std::string_view options, const CommandFiles& files = {},
                     Dialect dialect = Dialect::shell) {
  const Result<std::string> line =
      render_command(mkgmap_command(settings, parse_options_text(options, "mkopts"), files), dialect);
  REQUIRE(line.ok());
  return line.value;
}

std::size_t count_of(std::string_view text, std::string_view part) { return split(text, part).size() - 1; }

}  // namespace

TEST_CASE("the full command, in both dialects") {
  const std::string head =
      "java -Xmx1500m -ea -jar \"/tools/mkgmap.jar\" --mapname=13224385 --family-id=1000 "
      "--country-name=\"United Kingdom\" --index --series-name=\"My Map\" --family-name=\"My Map\" "
      "--overview-mapname=\"ovm\" --remove-short-arcs --style-file=\"/my styles\" --style=hiking "
      "--generate-sea=multipolygon,extend-sea-sectors,close-gaps=6000,floodblocker --unicode --keep-going "
      "--check-roundabouts --drive-on=right --max-jobs=2 --output-dir=\"/out\" --transparent --route --nsis "
      "--add-pois-to-areas --add-pois-to-lines --merge-lines --tdbfile ";
  const std::string tail =
      "--draw-priority=25 --latin1 --gmapsupp -c \"/s/nodem.args\" -c \"/s/dem.args\" -c "
      "\"/s/template.args\" "
      "\"/out/My.TYP\" ";
  const std::string shell = "--description=\"100% \xC3\xBC \\$(x)\"";
  const std::string batch = "--description=\"100%% \xC3\xBC $(x)\"";
  CHECK(rendered(full_settings(), "--latin1", all_files) == head + shell + " " + tail + shell);
  CHECK(rendered(full_settings(), "--latin1", all_files, Dialect::batch) ==
        head + batch + " " + tail + batch);
}

TEST_CASE("the plainest command") {
  Settings settings;
  settings.map_name = "Demo Map";
  settings.style = "default";
  settings.mkgmap_jar = "mkgmap.jar";
  settings.output_folder = "/out";
  settings.fid = "1";
  settings.routing = settings.sea = settings.address_search = settings.unicode = false;
  settings.map_name_option = settings.tdb_file = settings.pois_to_areas = false;
  settings.drive_on_left = true;
  settings.draw_priority = 7;
  CHECK(rendered(settings, "", {"t.args", "", "", ""}) ==
        "java -ea -jar \"mkgmap.jar\" --family-id=1 --series-name=\"Demo Map\" --family-name=\"Demo Map\" "
        "--remove-short-arcs --keep-going --check-roundabouts --drive-on=left --output-dir=\"/out\" --index "
        "--draw-priority=7 -c \"t.args\"");
}

TEST_CASE("sea extras give way to a sea that is ready") {
  const std::string extras = "multipolygon,extend-sea-sectors,close-gaps=6000,floodblocker";
  CHECK(contains(rendered(full_settings(), "#--precomp-sea=sea.zip"), extras));
  CHECK(contains(rendered(full_settings(), "--precomp-sea-x=1"), extras));
  const std::string ready = rendered(full_settings(), "--precomp-sea=\"my sea.zip\"");
  CHECK(contains(ready, "--generate-sea=multipolygon --unicode"));
  CHECK(contains(ready, "--precomp-sea=\"my sea.zip\""));
}

TEST_CASE("--index stands in the command once, wherever it comes from") {
  for (const bool address_search : {true, false}) {
    for (const char* options : {"", "--index", "--x --index\n"}) {
      Settings settings = full_settings();
      settings.address_search = address_search;
      CHECK(count_of(rendered(settings, options), "--index") == 1);
    }
  }
}

TEST_CASE("single options follow their settings") {
  struct Row {
    std::function<void(Settings&)> change;
    const char* holds;
    const char* lacks;
  };
  const std::vector<Row> rows = {
      {[](Settings& s) { s.country = " "; }, "--family-id=1000 --index --series", "country"},
      {[](Settings& s) { s.country = "Andorra"; }, "--country-name=Andorra --index", "\"Andorra"},
      {[](Settings& s) { s.tdb_file = false; }, "--merge-lines --description", "--tdbfile"},
      {[](Settings& s) { s.tdb_file = false, s.register_map = true; }, "--merge-lines --tdbfile", "no-"},
      {[](Settings& s) { s.description = " "; }, "--tdbfile --draw-priority", "--description"},
      {[](Settings& s) { s.style = "default"; }, "--remove-short-arcs --generate-sea", "--style"},
      {[](Settings& s) { s.style = ""; }, "--remove-short-arcs --generate-sea", "--style"},
      {[](Settings& s) { s.java_options = "-Xmx800m -Xss2m"; }, "java -Xmx800m -ea -jar", "1500"},
      {[](Settings& s) { s.use_max_jobs = false; }, "--drive-on=right --output-dir", "max-jobs"},
      {[](Settings& s) { s.overview_name = " "; }, "\"My Map\" --remove-short-arcs", "overview"},
      {[](Settings& s) { s.device_image = false; }, "--draw-priority=25", "--gmapsupp"},
  };
  for (const Row& row : rows) {
    Settings settings = full_settings();
    row.change(settings);
    const std::string line = rendered(settings, "");
    CAPTURE(line);
    CHECK(contains(line, row.holds));
    CHECK_FALSE(contains(line, row.lacks));
  }
}

TEST_CASE("hostile names arrive as values and nothing else") {
  const std::string name = "a\"; touch x; `y` $(z) \\";
  Settings settings = full_settings();
  settings.map_name = name;
  settings.fid = "1 --bogus";
  settings.style = "$(x)";
  const Command command = mkgmap_command(settings, {}, {});
  const std::vector<std::string> plain = plain_arguments(command);
  CHECK(std::count(plain.begin(), plain.end(), "--family-name=" + name) == 1);
  CHECK(std::count(plain.begin(), plain.end(), "--family-id=1 --bogus") == 1);
  CHECK(contains(rendered(settings, ""), "--family-id=\"1 --bogus\""));
  CHECK(contains(rendered(settings, ""), "--style=\"\\$(x)\""));
  CHECK_FALSE(render_command(command, Dialect::batch).ok());
}

TEST_CASE("the overview name") {
  Settings settings;
  CHECK(overview_name(settings) == "osmmap");
  settings.overview_name = " My Map ";
  CHECK(overview_name(settings) == "My Map");
  const std::string text = "Invalid character in Overview Name ";
  for (const char bad : std::string("\\/:*?\"<>|"))
    CHECK(overview_name_problem(std::string("a") + bad + "b", text) == text + bad);
  CHECK(overview_name_problem("a\nb", text) == text + "10");
  CHECK(overview_name_problem("\xC3\x96sterreich 100% (a)", text).empty());
}
