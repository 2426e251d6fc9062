#include "pipeline/mkgmap_command.hpp"

#include <doctest/doctest.h>

#include <algorithm>

#include "base/text.hpp"
#include "support/settings_of.hpp"

using namespace ferrowen;
using test::settings_of;

namespace {

Settings full_settings() {
  return settings_of(
      "java-options=-Xmx1500m; mkgmap=/tools/mkgmap.jar; fid=1000; country=United Kingdom; "
      "overview-name=ovm; "
      "map-name= My Map ; style=hiking; styles-folder=/my styles; use-max-jobs=1; max-jobs=2; "
      "output-folder=/out; transparent=1; installer=1; pois-to-lines=1; gmapsupp=1; "
      "description=100% \u00fc $(x)");
}

const CommandFiles all_files = {"/s/template.args", "/s/nodem.args", "/s/dem.args", "/out/My.TYP"};

std::string rendered(const Settings& settings, std::string_view options, const CommandFiles& files = {},
                     Dialect dialect = Dialect::shell) {
  const Result<std::string> line =
      render_command(mkgmap_command(settings, parse_options_text(options, "mkopts"), files), dialect);
  REQUIRE(line.ok());
  return line.value;
}

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
      "\"/s/template.args\" \"/out/My.TYP\" ";
  const std::string shell = "--description=\"100% \u00fc \\$(x)\"";
  const std::string batch = "--description=\"100%% \u00fc $(x)\"";
  CHECK(rendered(full_settings(), "--latin1", all_files) == head + shell + " " + tail + shell);
  CHECK(rendered(full_settings(), "--latin1", all_files, Dialect::batch) ==
        head + batch + " " + tail + batch);
}

TEST_CASE("the plainest command") {
  const Settings settings = settings_of(
      "mkgmap=mkgmap.jar; output-folder=/out; fid=1; routing=0; sea=0; address-search=0; unicode=0; "
      "map-name-option=0; tdb-file=0; pois-to-areas=0; drive-on-left=1; draw-priority=7");
  CHECK(rendered(settings, "", {"t.args", "", "", ""}) ==
        "java -ea -jar \"mkgmap.jar\" --family-id=1 --series-name=\"Demo Map\" --family-name=\"Demo Map\" "
        "--remove-short-arcs --keep-going --check-roundabouts --drive-on=left --output-dir=\"/out\" --index "
        "--draw-priority=7 -c \"t.args\"");
}

TEST_CASE("options follow their settings, and the free options may take something away") {
  struct Row {
    const char* assignments;
    const char* options;
    const char* holds;
    const char* lacks;
  };
  const Row rows[] = {
      {"country= ", "", "--family-id=1000 --index --series", "country"},
      {"country=Andorra", "", "--country-name=Andorra --index", "\"Andorra"},
      {"tdb-file=0", "", "--merge-lines --description", "--tdbfile"},
      {"tdb-file=0; register=1", "", "--merge-lines --tdbfile", "no-"},
      {"description= ", "", "--tdbfile --draw-priority", "--description"},
      {"style=default", "", "--remove-short-arcs --generate-sea", "--style"},
      {"java-options=-Xmx800m -Xss2m", "", "java -Xmx800m -ea -jar", "1500"},
      {"use-max-jobs=0", "", "--drive-on=right --output-dir", "max-jobs"},
      {"max-jobs=0", "", "--max-jobs --output-dir", "max-jobs="},
      {"overview-name= ", "", "\"My Map\" --remove-short-arcs", "overview"},
      {"fid=7", "#--precomp-sea=sea.zip", "multipolygon,extend-sea-sectors,close-gaps", "sea.zip"},
      {"fid=7", "--precomp-sea-x=1", "multipolygon,extend-sea-sectors,close-gaps", "sea.zip"},
      {"fid=7", "--precomp-sea=\"my sea.zip\"", "--generate-sea=multipolygon --unicode", "extend-sea"},
      {"address-search=1", "--index", "--draw-priority=25 --index --gmapsupp", "--x"},
      {"address-search=0", "--x --index\n", "--x --index", "country"},
  };
  for (const Row& row : rows) {
    Settings settings = full_settings();
    test::assign(settings, row.assignments);
    const std::string line = rendered(settings, row.options);
    CAPTURE(line);
    CHECK(contains(line, row.holds));
    CHECK_FALSE(contains(line, row.lacks));
    CHECK(split(line, "--index").size() == 2);
  }
}

TEST_CASE("hostile names arrive as values and nothing else") {
  Settings settings = full_settings();
  settings.map_name = "a\"; touch x; `y` $(z) \\";
  settings.fid = "1 --bogus";
  settings.style = "$(x)";
  const Command command = mkgmap_command(settings, {}, {});
  const std::vector<std::string> plain = plain_arguments(command);
  CHECK(std::count(plain.begin(), plain.end(), "--family-name=" + settings.map_name) == 1);
  CHECK(contains(rendered(settings, ""), "--family-id=\"1 --bogus\""));
  CHECK(contains(rendered(settings, ""), "--style=\"\\$(x)\""));
  CHECK_FALSE(render_command(command, Dialect::batch).ok());
}

TEST_CASE("the overview name") {
  CHECK(overview_name(settings_of("fid=1")) == "osmmap");
  CHECK(overview_name(settings_of("overview-name= My Map ")) == "My Map");
  for (const char bad : std::string("\\/:*?\"<>|"))
    CHECK(overview_name_problem(std::string("a") + bad + "b", "bad: ") == std::string("bad: ") + bad);
  CHECK(overview_name_problem("a\nb", "bad: ") == "bad: 10");
  CHECK(overview_name_problem("\u00d6sterreich 100% (a)", "bad: ").empty());
}
