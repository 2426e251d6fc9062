#include "elevation/contour_clip.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/hgt_coverage.hpp"
#include "support/stand_in.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

TileList two_tiles(bool first, bool second) {
  return {{"13224385", "", {46.1, -6.5}, {47.2, -5.3}, first},
          {"13224386", "", {45.0, -5.3}, {46.1, -4.0}, second}};
}

}  // namespace

TEST_CASE("the polygon is the box around the selected tiles") {
  CHECK(box_text(selection_box(two_tiles(true, true))) == "-6.5,45,-4,47.2");
  CHECK(polygon_text(selection_box(two_tiles(true, true))) ==
        "area\r\n1\r\n -6.5 45\r\n -6.5 47.2\r\n -4 47.2\r\n -4 45\r\n -6.5 45\r\nEND\r\nEND\r\n");
  CHECK(box_text(selection_box(two_tiles(false, true))) == "-5.3,45,-4,46.1");
  CHECK(box_text(selection_box(two_tiles(false, false))) == "360,180,-360,-180");
  const TileList tiny = {{"1", "", {0.00001, -0.000005}, {0.5, 0.25}, true}};
  CHECK(box_text(selection_box(tiny)) == "-0.000005,0.00001,0.25,0.5");
}

TEST_CASE("clip.cmd to the letter, and its shell sister") {
  const ClipScript batch{
      "C:\\osmconvert.exe",
      "C:\\home\\clip2.poly",
      {{"D:\\N46W007.osm", "D:\\c l\\N46W007clp.pbf"}, {"D:\\N46W006.osm", "D:\\c l\\N46W006clp.pbf"}},
      2};
#ifdef _WIN32
  const std::string first = "N46W007.osm";
  const std::string second = "N46W006.osm";
#else
  const std::string first = "D:\\N46W007.osm";  // a name may hold a backslash here
  const std::string second = "D:\\N46W006.osm";
#endif
  CHECK(
      render(clip_script(batch, Dialect::batch), Dialect::batch).value ==
      "@Echo Off\r\n@echo. -- Clipping 2 Contours --\r\n@echo[ \r\n@echo. 1) " + first +
          "\r\nC:\\osmconvert.exe D:\\N46W007.osm -B=C:\\home\\clip2.poly -o=\"D:\\c l\\N46W007clp.pbf\"\r\n"
          "if not \"%errorlevel%\"==\"0\" if not \"%errorlevel%\"==\"92\" if exist \"D:\\c "
          "l\\N46W007clp.pbf\" "
          "type nul >\"D:\\c l\\N46W007clp.pbf\"\r\n"
          "if exist \"D:\\c l\\N46W007clp.pbf\" (\r\n@echo ... Folder OK) else (\r\n"
          " @echo D:\\c l\\N46W007clp.pbf Folder Is Protected.Cannot save clipped "
          "contours\r\npause\r\nexit\r\n)\r\n"
          "@echo. 2) " +
          second +
          "\r\nC:\\osmconvert.exe D:\\N46W006.osm -B=C:\\home\\clip2.poly -o=\"D:\\c "
          "l\\N46W006clp.pbf\"\r\n"
          "if not \"%errorlevel%\"==\"0\" if not \"%errorlevel%\"==\"92\" if exist \"D:\\c "
          "l\\N46W006clp.pbf\" "
          "type nul >\"D:\\c l\\N46W006clp.pbf\"\r\n");
  const ClipScript shell{
      "/usr/bin/osmconvert", "/h ome/clip2.poly", {{"/h $x/N46W007.osm", "/c/N46W007clp.pbf"}}, 1};
  const std::string text = render(clip_script(shell, Dialect::shell), Dialect::shell).value;
  CHECK(contains(text,
                 "printf '%s\\n' \"1) N46W007.osm\"\n/usr/bin/osmconvert \"/h \\$x/N46W007.osm\" "
                 "-B=\"/h ome/clip2.poly\" -o=\"/c/N46W007clp.pbf\"\n"
                 "case $? in 0|92) ;; *) [ ! -e \"/c/N46W007clp.pbf\" ] || : >\"/c/N46W007clp.pbf\";; "
                 "esac\nif [ -e \"/c/N46W007clp.pbf\" ]; then\n"));
  CHECK(contains(text, "Folder Is Protected.Cannot save clipped contours"));
}

TEST_CASE("clipping checks everything before it touches anything") {
  test::StandIn stage;
  Workspace& workspace = stage.workspace;
  const auto refused = [&] {
    stage.prompts.said.clear();
    CHECK(clip(workspace, stage.prompts, stage.progress).result == StageResult::stopped);
    return join_texts(stage.prompts.texts(), "|");
  };
  stage.home.write("hgt_land", "N46W007\r\nN45W006\r\n");
  CHECK(refused() == "Please SPLIT file to obtain hgt files needed.");
  workspace.tiles = two_tiles(false, false);
  CHECK(refused() == "Please select Tile.");
  workspace.tiles = two_tiles(true, true);
  stage.set("clip-folder-2={home}/clips; clip-slot=1; hgt-folder-1={home}/h; osmconvert={home}/none");
  const std::string clips = stage.home / "clips";
  CHECK(refused() == "\r\n\r\nClip path : " + clips + " ?\r\n\r\n --> Contours,Clip Settings");
  stage.home.write("clips/N46W007clp.pbf", "old");
  const std::string question = "Path : " + clips + "\r\nClip file(s)?";
  stage.prompts.answers = {Answer::no};
  CHECK(refused() == question);
  stage.prompts.default_answer = Answer::yes;
  CHECK(refused() ==
        question +
            "|Clipping contours:\r\n\r\nPlease locate osmconvert.exe in Contour/Contour Clip Settings.");
  stage.set("osmconvert={home}/mkgmap.jar");
  stage.home.write("h/N46W007.osm", "<osm></osm>");
  CHECK(refused() == question + "|13224385,13224386\r\nClipping cancelled :Can't find\r\n\r\n" +
                         (stage.home / "h/N45W006.osm"));
  CHECK(contains(stage.progress.output_text(),
                 "Clipping cancelled:Can't find\r\n" + (stage.home / "h/N45W006.osm")));
  CHECK(read_whole_file(stage.home / "clips/N46W007clp.pbf") == "old");
}

#ifndef _WIN32
namespace {

// A converter that behaves as it does: writes what it is told to, or fails and leaves an empty file.
void write_converter(test::StandIn& stage, const char* body) {
  const std::string path =
      stage.home.write("osm convert", std::string("#!/bin/sh\nfor word; do case $word in -o=*) "
                                                  "out=${word#-o=};; esac; done\n") +
                                          body + "\n");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  stage.set("osmconvert={home}/osm convert");
  stage.home.write("osm convert.pbf", test::small_pbf());
}

}  // namespace

TEST_CASE("clips are judged by what is there, and old ones come back") {
  test::StandIn stage("h $x");
  Workspace& workspace = stage.workspace;
  workspace.tiles = two_tiles(true, true);
  workspace.land_list = "N46W007 N45W006";
  stage.set("clip-folder-1={home}/clips; hgt-folder-1={home}/h");
  for (const char* name : {"h/N46W007.osm", "h/N45W006.osm"})
    stage.home.write(name, "<osm></osm>");
  stage.home.write("clips/N45W006clp.pbf", "old");
  stage.prompts.default_answer = Answer::yes;
  SUBCASE("all good") {
    write_converter(stage, "cp \"$0.pbf\" \"$out\"; chmod 600 \"$out\"");
    const ClipReport report = clip(workspace, stage.prompts, stage.progress);
    CHECK(report.result == StageResult::done);
    CHECK(report.files == Texts{stage.home / "clips/N46W007clp.pbf", stage.home / "clips/N45W006clp.pbf"});
    const auto mode = std::filesystem::status(stage.home / "clips/N46W007clp.pbf").permissions();
    CHECK((mode & std::filesystem::perms::others_read) != std::filesystem::perms::none);
    CHECK(workspace.land_list.empty());
    CHECK(stage.prompts.tells().empty());
  }
  SUBCASE("one fails") {
    SUBCASE("with a status, whatever it wrote") {
      write_converter(stage, "cp \"$0.pbf\" \"$out\"; case $out in *N45*) echo bad; exit 5;; esac");
    }
    SUBCASE("on a full disk, which its status does not tell") {
      write_converter(stage, "head -c 40 \"$0.pbf\" >\"$out\"");
    }
    const ClipReport report = clip1tile(workspace, stage.prompts, stage.progress, "13224386");
    CHECK(report.result == StageResult::failed);
    CHECK(report.files.empty());
    CHECK(workspace.tiles[0].selected);
    REQUIRE(stage.prompts.tells().size() == 1);
    CHECK(stage.prompts.tells()[0].starts_with("Clipped contours missing:\r\n" +
                                               (stage.home / "clips/N45W006clp.pbf") +
                                               "\r\n\r\nosmconvert has failed."));
    CHECK_FALSE(contains(stage.prompts.tells()[0], "Folder Is Protected"));
    CHECK(read_whole_file(stage.home / "clips/N45W006clp.pbf") == "old");
    CHECK_FALSE(file_exists(stage.home / "clips/N45W006clp.pbf.before"));
  }
}
#endif
