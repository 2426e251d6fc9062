#include <doctest/doctest.h>

#include <filesystem>

#include <tuple>

#include "base/files.hpp"
#include "base/inflate.hpp"
#include "base/text.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/contour_script.hpp"
#include "elevation/contour_style.hpp"
#include "support/stand_in.hpp"
#include "support/zip_bytes.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

// Whatever lies in the cell: its size alone makes it one.
std::string heights() { return std::string(2884802, '\1'); }

}  // namespace

TEST_CASE("contours.cmd to the letter") {
  ContourScript script{"C:\\Hgt2Osm.exe", contour_option_text(20, 0.12), false, true, {}};
  const std::string hgt = platform::separator == '/' ? "/h g/" : "D:\\h g\\";
  const std::string folder = hgt.substr(0, hgt.size() - 1);
  script.jobs = {{hgt + "S12W077.hgt"}, {hgt + "N00E000.hgt.zip"}};
  const std::string options =
      "  --WriteElevationType=False --FakeDistance=-0.5 --MinVerticePoints=3 --MinBoundingbox=0.00016 "
      "--DouglasPeucker=0.12 --MinorDistance=20  ";
  const std::string go = "set Pathname=" + folder + "\r\ncd /d %Pathname%\r\n";
  const auto batch = [&] {
    return render(contour_script(script, Dialect::batch).value, Dialect::batch).value;
  };
  CHECK(batch() == go + "C:\\Hgt2Osm.exe --HgtPath=. --Lat=-77 --Lon=-12" + options +
                       " --Outfile=S12W077.OSM\r\n" + go + "C:\\Hgt2Osm.exe --HgtPath=. --Lat=0 --Lon=0" +
                       options + " --Outfile=N00E000.OSM\r\npause\r\n");
  script.overwrite = true;
  script.jobs.pop_back();
  script.pause = false;
  CHECK(batch() == go + "C:\\Hgt2Osm.exe --HgtPath=. --Lat=-77 --Lon=-12" + options +
                       " --OutputOverwrite=True  --Outfile=S12W077.OSM\r\n");
  script.tool = "/opt/con tours";
  script.jobs = {{"/h $x/N46W007.hgt"}};
  const std::string shell = render(contour_script(script, Dialect::shell).value, Dialect::shell).value;
  CHECK(contains(shell, "\"/opt/con tours\" --HgtPath=. --Lat=-7 --Lon=46" + options +
                            " --OutputOverwrite=True  --Outfile=N46W007.osm\n"));
  script.jobs.assign(3, {"/h/N46W007.hgt"});
  script.at_once = 2;
  Texts ends;
  for (const std::string& one :
       split_lines(render(contour_script(script, Dialect::shell).value, Dialect::shell).value))
    if (one == "wait" || one.ends_with(".osm &")) ends.push_back(one.substr(one.size() - 1));
  CHECK(join_texts(ends, "") == "&&t&t");
  CHECK_FALSE(contains(render(contour_script(script, Dialect::batch).value, Dialect::batch).value, "wait"));
  if (platform::separator == '/')
    CHECK(contains(shell, "Pathname=\"/h \\$x\"\ncd -- \"$Pathname\" || exit 1\n"));
}

TEST_CASE("interval and tolerance live in the stored options of the tool") {
  const std::tuple<const char*, long> rows[] = {{"", 20},
                                                {"--MinorDistance=4 ", 20},
                                                {"--MinorDistance=5", 5},
                                                {"--X=1 --MinorDistance=100 ", 100},
                                                {"--MinorDistance=x", 20}};
  for (const auto& [text, interval] : rows) {
    Settings settings;
    settings.contour_options = text;
    CHECK(contour_interval(settings) == interval);
    store_contour_choices(settings, 50, 0.5);
    CHECK(contour_interval(settings) == 50);
    CHECK(contains(settings.contour_options, "DouglasPeucker=0.5"));
  }
  CHECK(tolerance_value(" 0,12 ") == 0.12);
  CHECK(tolerance_value("-3") == 0);
  CHECK(tolerance_value("x") == 0);
  CHECK(contour_summary(contour_option_text(25, 0.1), 0.1, 3) ==
        "WriteElevationType=False\r\nFakeDistance=-0.5\r\nMinVerticePoints=3\r\nMinBoundingbox=0.00016\r\n"
        "Interval: 25\r\nDouglas-Peucker: 0.1\r\n\r\nTotal files to create:3");
  for (const char* name : {"N46W007.hgt", "N46W007.zip", "n46w007.hgt.zip"})
    CHECK(contour_file_name(name) == "N46W007.osm");
  CHECK(contour_progress(2, 8, 61).text == "Contours: 2/8  1:01 min");
  CHECK(contour_progress(9, 8, 0).fraction == 1);
}

TEST_CASE("contour generation checks everything before it touches anything") {
  test::StandIn stage("h \u00fc");
  const std::string cell = stage.home.write("h/N46W007.hgt", heights());
  const std::string old = "<osm>old</osm>";
  stage.home.write("h/N46W007.osm.before", old);  // of a run that was killed
  const std::string gone = stage.home / "h/N47W007.hgt";
  stage.home.write("h/N48W007.hgt", "short");
  const auto refusal = [&](const Texts& files, long interval = 20) {
    stage.prompts.said.clear();
    ContourRequest request;
    request.height_files = files;
    request.interval = interval;
    const ContourOutcome report = make_contours(stage.workspace, stage.prompts, stage.progress, request);
    CHECK(report.result == StageResult::stopped);
    return join_texts(stage.prompts.texts(), "|");
  };
  stage.set("contour-tool={home}/none");
  CHECK(refusal({cell}) == "Please locate below\r\n\r\n HGT2OSM.exe");
  stage.set("contour-tool={home}/mkgmap.jar");
  for (const long interval : {4L, 1001L, -20L})
    CHECK(refusal({cell}, interval) == "Intervals  5 - 1000");
  for (const long interval : {5L, 1000L})
    CHECK(refusal({}, interval) == "Please select.");
  CHECK(refusal({stage.home / "h/N95W007.hgt"}) == "N95W007.hgt is not a valid .hgt label.");
  CHECK(refusal({gone}) == "N47W007.hgt\r\nPlease download or unzip:");
  CHECK(refusal({gone, cell}) == "N47W007.hgt\r\nPlease download or unzip:|" +
                                     (stage.home / "h/N46W007.osm") + "\r\nFile(s) exist. Tick 'overwrite' ");
  CHECK(refusal({stage.home / "h/N48W007.hgt"}) ==
        (stage.home / "h/N48W007.hgt") + " has 5 bytes; heights have 2884802 or 25934402.\r\n");
  CHECK(read_whole_file(stage.home / "h/N46W007.osm") == old);
  CHECK_FALSE(file_exists(stage.home / "contours.cmd"));
  CHECK_FALSE(file_exists(stage.home / "contours.sh"));
}

#ifndef _WIN32
TEST_CASE("contour files are judged by their end, and old ones come back") {
  test::StandIn stage("h $x");
  const std::string tool = stage.home.write(
      "my tool",
      "#!/bin/sh\nfor word; do case $word in --Outfile=*) out=${word#*=};; esac; done\n"
      "case $out in N47*) printf '<osm>' >$out; exit 1;; *) printf '<osm>%s</osm>\\n' \"$*\" >$out;; esac\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  stage.set("contour-tool={home}/my tool; contour-work-folder={home}/work");
  ContourRequest request;
  request.height_files = {stage.home.write("h/N46W007.hgt", heights()),
                          stage.home.write("h/N47W007.hgt", heights())};
  for (const char* name : {"h/N46W007.osm", "h/N47W007.osm"})
    stage.home.write(name, "old");
  request.overwrite = true;
  ContourOutcome report = make_contours(stage.workspace, stage.prompts, stage.progress, request);
  CHECK(report.result == StageResult::failed);
  CHECK(report.files == Texts{stage.home / "h/N46W007.osm"});
  CHECK(report.failed == Texts{stage.home / "h/N47W007.osm"});
  CHECK(contains(read_whole_file(stage.home / "h/N46W007.osm"), "--OutputOverwrite=True"));
  CHECK(read_whole_file(stage.home / "h/N47W007.osm") == "old");
  CHECK(stage.prompts.tells().back() == "Contours not created:\r\n" + (stage.home / "h/N47W007.osm"));
  request.height_files.pop_back();
  request.overwrite = false;
  request.copy_to_work_folder = true;
  // What cannot be used is left out and told; the others are made.
  request.height_files.push_back(stage.home.write("h/N48W007.hgt", "short"));
  request.height_files.push_back(stage.home / "h/N49W007.hgt");
  stage.home.write("h/n45w007.hgt", heights());
  request.height_files.push_back(stage.home / "h/N45W007.hgt");
  stage.prompts.answers = {Answer::no};
  report = make_contours(stage.workspace, stage.prompts, stage.progress, request);
  CHECK(report.result == StageResult::done);
  CHECK(report.missing == Texts{"N49W007.hgt", "N45W007.hgt", "N48W007.hgt"});
  CHECK(contains(join_texts(stage.prompts.asks(), ""), "n45w007.hgt --> N45W007.hgt"));
  CHECK(report.files == Texts{stage.home / "work/N46W007.osm"});
  CHECK(file_exists(stage.home / "work/contours.sh"));
  CHECK(stage.prompts.tells().back() == "Contours created in:\r\n" + (stage.home / "work"));
  CHECK(find_contour_files({"N46W007.hgt"}, searched_contour_folders(stage.workspace.settings)).found ==
        Texts{stage.home / "work/N46W007.osm"});
}
#endif

TEST_CASE("the contours that a selection still needs") {
  test::StandIn stage;
  stage.workspace.tiles = {{"1", "", {46.1, -6.5}, {47.2, -6.3}, false}};
  stage.workspace.land_list = "N46W007 N47W007";
  stage.set("hgt-folder-1={home}/h");
  CHECK_FALSE(chkcontours(stage.workspace, stage.prompts));
  stage.home.write("h/N46W007.osm", "<osm></osm>");
  stage.home.write("h/N47W007.osm", "<osm>cut o");
  stage.home.write("h/N47W007.zip", "x");
  CHECK_FALSE(chkcontours(stage.workspace, stage.prompts));
  stage.home.write("h/N47W007.osm", "<osm></osm>\n");
  CHECK(chkcontours(stage.workspace, stage.prompts));
  CHECK(stage.prompts.tells() == Texts{"Can't find HGT files", "Missing:\r\nN47W007.osm\r\n1 contour(s)",
                                       "All required contours have been created."});
}

TEST_CASE("a style draws contours when its rules or those below it speak of them") {
  const test::TempFolder folder;
  const std::tuple<const char*, const char*> files[] = {
      {"plain/lines", "highway=primary [0x02] # contour\n"},
      {"own/inc/height 1", "contour=elevation [0x20]\n"},
      {"own/lines", "highway=* [0x1]\ninclude 'inc/height 1';\n"},
      {"plain/info", "description { no contours }\n"},
      {"plain/inc/height", "contour=elevation [0x20]\n"},
      {"other/lines", "include lines from default;\n"},
      {"round/points", "include \"points\" from round;\n"},
      {"gone/lines", "include 'inc/contour_lines';\n"},
      {"over/info", "base-style: own\nbase-style: over\n"},
      {"glued/lines", "include'inc\\\\deep';\n"},
      {"glued/inc/deep", "contour=elevation [0x20]\n"},
      {"feet/info", "base-style: contours_ft\n"},
      {"builtin/info", "base-style=default\n"}};
  for (const auto& [name, text] : files)
    folder.write(name, text);
  Settings settings;
  settings.styles_folder = folder.path();
  const std::tuple<const char*, bool> rows[] = {{"plain", false},  {"own", true},     {"over", true},
                                                {"builtin", true}, {"default", true}, {"none", false},
                                                {"other", true},   {"round", false},  {"gone", false},
                                                {"glued", true},   {"feet", false}};
  for (const auto& [style, draws] : rows) {
    settings.style = style;
    CHECK(draws_contours(settings) == draws);
  }
  const std::string rules = "contour=elevation [0x20]\n";
  const auto size = static_cast<std::uint32_t>(rules.size());
  settings.mkgmap_jar = folder.write(
      "mkgmap.jar", test::zip_bytes({{"styles/contours_ft/lines", rules, 0, size, crc32(rules), 0}}));
  settings.style = "feet";
  CHECK(draws_contours(settings));
}
