#include "elevation/merge.hpp"

#include <doctest/doctest.h>

#include <filesystem>
#include <tuple>

#include "base/files.hpp"
#include "base/text.hpp"
#include "support/stand_in.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

TEST_CASE("conv.cmd to the letter") {
  const MergeScript script{"C:\\osmconvert.exe", {"D:\\a.pbf", "D:\\b.pbf"}, "D:\\all.pbf", "C:\\w"};
  const std::string text =
      "@ECHO OFF\r\n@echo Merging 2 files.\r\n@echo .\r\n@echo .\r\n@echo .\r\n@echo Please "
      "Wait...\r\n@echo .\r\n"
      "@echo converting D:\\a.pbf\r\nC:\\osmconvert.exe D:\\a.pbf -o=C:\\w\\p1.o5m\r\n"
      "if not \"%errorlevel%\"==\"0\" if not \"%errorlevel%\"==\"92\" if exist \"C:\\w\\p1.o5m\" del "
      "\"C:\\w\\p1.o5m\"\r\n"
      "for %%f in (\"C:\\w\\p1.o5m\") do if \"%%~zf\"==\"0\" del \"C:\\w\\p1.o5m\"\r\n"
      "if not exist \"C:\\w\\p1.o5m\" echo D:\\a.pbf not included\r\n"
      "if not exist \"C:\\w\\p1.o5m\" type nul >\"C:\\w\\p1.o5m.left\"\r\n"
      "@echo converting D:\\b.pbf\r\nC:\\osmconvert.exe D:\\b.pbf -o=C:\\w\\p2.o5m\r\n"
      "if not \"%errorlevel%\"==\"0\" if not \"%errorlevel%\"==\"92\" if exist \"C:\\w\\p2.o5m\" del "
      "\"C:\\w\\p2.o5m\"\r\n"
      "for %%f in (\"C:\\w\\p2.o5m\") do if \"%%~zf\"==\"0\" del \"C:\\w\\p2.o5m\"\r\n"
      "if not exist \"C:\\w\\p2.o5m\" echo D:\\b.pbf not included\r\n"
      "if not exist \"C:\\w\\p2.o5m\" type nul >\"C:\\w\\p2.o5m.left\"\r\n"
      "set collected=\r\n"
      "if exist \"C:\\w\\p1.o5m\" set collected=%collected% \"C:\\w\\p1.o5m\"\r\n"
      "if exist \"C:\\w\\p2.o5m\" set collected=%collected% \"C:\\w\\p2.o5m\"\r\n"
      "if defined collected C:\\osmconvert.exe%collected% -o=C:\\w\\all.o5m\r\n"
      "if not \"%errorlevel%\"==\"0\" if not \"%errorlevel%\"==\"92\" if exist \"C:\\w\\all.o5m\" del "
      "\"C:\\w\\all.o5m\"\r\n"
      "@echo .\r\n@echo Creating:D:\\all.pbf\r\n@echo .\r\n"
      "C:\\osmconvert.exe C:\\w\\all.o5m -o=D:\\all.pbf\r\n"
      "if not \"%errorlevel%\"==\"0\" if not \"%errorlevel%\"==\"92\" if exist \"D:\\all.pbf\" del "
      "\"D:\\all.pbf\"\r\n"
      "if exist \"C:\\w\\p1.o5m\" del \"C:\\w\\p1.o5m\"\r\nif exist \"C:\\w\\p2.o5m\" del "
      "\"C:\\w\\p2.o5m\"\r\n"
      "if exist \"C:\\w\\all.o5m\" del \"C:\\w\\all.o5m\"\r\n"
      "if exist \"D:\\all.pbf\" echo D:\\all.pbf created.\r\n"
      "if not exist \"D:\\all.pbf\" echo Not successful D:\\all.pbf\r\n@echo .\r\n@echo .\r\npause\r\n";
  // Names are joined as this system does it.
  CHECK(render(merge_script(script, Dialect::batch), Dialect::batch).value ==
        replace_all(text, "C:\\w\\", platform::join("C:\\w", "")));
}

TEST_CASE("a list file survives both systems' writing") {
  const char* text = "C:/maps/a.pbf\r\n\r\nC:\\\\maps\\\\b.pbf\n";
  CHECK(parse_merge_list(text, Dialect::batch) == Texts{"C:\\maps\\a.pbf", "C:\\maps\\b.pbf"});
  CHECK(parse_merge_list("/a/b.pbf\r\n/c\\d.pbf", Dialect::shell) == Texts{"/a/b.pbf", "/c\\d.pbf"});
  CHECK(merge_list_text({"a", "b"}) == "a\r\nb\r\n");
  const test::TempFolder folder("l \u00fc");
  REQUIRE(save_merge_list(folder / "x.lst", {folder / "\u00fc.pbf"}).ok());
  CHECK(load_merge_list(folder / "x.lst").value == Texts{folder / "\u00fc.pbf"});
  folder.write("y.lst", "a b.pbf\r\n\"c.pbf\"\r\n");
  CHECK(load_merge_list(folder / "y.lst").value == Texts{folder / "a b.pbf", folder / "c.pbf"});
  CHECK_FALSE(load_merge_list(folder / "none.lst").ok());
  CHECK_FALSE(save_merge_list(folder / "x.lst", {"a\nb"}).ok());
}

TEST_CASE("merge refuses before it runs anything") {
  test::StandIn stage;
  const auto file = [&](const char* name) { return stage.home.write(name, "pbf"); };
  const std::string one = file("one.pbf");
  const std::string two = file("two.PBF");
  const std::string text = file("three.osm");
  const std::string target = stage.home / "out.pbf";
  const auto refusal = [&](const Texts& files, const std::string& to) {
    stage.prompts.said.clear();
    CHECK(merg(stage.workspace, stage.prompts, stage.progress, files, to).result == StageResult::stopped);
    return join_texts(stage.prompts.texts(), "|");
  };
  stage.set("osmconvert={home}/none");
  CHECK(refusal({one, two}, target) == "Please locate osmvonvert 32 bit");
  stage.set("osmconvert={home}/mkgmap.jar");
  REQUIRE(make_folder(stage.home / "x.pbf").ok());
  const std::tuple<Texts, std::string, std::string> rows[] = {
      {{one, stage.home / "x.pbf"}, target, (stage.home / "x.pbf") + " is a folder."},
      {{one, text}, target, text + " not a valid pbf"},
      {{one}, target, "Must contain at least 2 files"},
      {{}, target, "Must contain at least 2 files"},
      {{one, stage.home / "gone.pbf"}, target, (stage.home / "gone.pbf") + " does not exist."},
      {{one, two}, one, one + " cannot be the result too."},
      {{one, two}, "", "Please select"},
      {{one, two}, stage.home / "out.xyz", (stage.home / "out.xyz") + " not a valid pbf"},
      {{one, two}, stage.home / "none/out.pbf", "Cannot find folder:" + (stage.home / "none")},
  };
  for (const auto& [files, to, message] : rows)
    CHECK(refusal(files, to) == message);
  file("out.pbf");
  stage.prompts.answers = {Answer::no};
  CHECK(refusal({one, two}, target) == "Target PBF File exists.\r\n\r\nReplace " + target + "?");
  CHECK(read_whole_file(target) == "pbf");
  CHECK(merge_target("A.PBF").value == "A.pbf");
  // What keeps it from beginning costs nothing that lies there.
  stage.prompts.default_answer = Answer::yes;
  const std::string in_the_way = stage.home.write("temp/merge", "mine");
  CHECK(refusal({one, two}, target).find(in_the_way) != std::string::npos);
  CHECK(read_whole_file(target) == "pbf");
  CHECK(read_whole_file(in_the_way) == "mine");
}

#ifndef _WIN32
TEST_CASE("an input that a failed tool wrote in part is left out") {
  test::StandIn stage("h $x");
  const std::string tool = stage.home.write(
      "osm convert",
      "#!/bin/sh\nfor word; do case $word in -o=*) out=${word#-o=};; *bad*) status=2;; *turned*) status=92;; "
      "*) cat \"$word\" >>\"$0.read\";; esac; case $word in *cut*) cut=1;; esac; done\n"
      "case $out in *.pbf) cp \"$0.pbf\" \"$out\";; *) printf 'part\\376' >\"$out\";; esac\n"
      "[ -z \"$cut\" ] || printf part >\"$out\"; exit ${status:-0}\n");
  stage.home.write("osm convert.pbf", test::small_pbf());
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  stage.set("osmconvert={home}/osm convert");
  const std::string bad = stage.home.write("bad.pbf", "x");
  const std::string cut = stage.home.write("cut.pbf", "x");  // a full disk: no status tells it
  const std::string target = stage.home / "out.pbf";
  const MergeReport report =
      merg(stage.workspace, stage.prompts, stage.progress,
           {stage.home.write("one.pbf", "x"), bad, cut, stage.home.write("turned.pbf", "x")}, target);
  CHECK(report.result == StageResult::done);
  CHECK(report.left_out == Texts{bad, cut});
  CHECK(file_has_content(target));
  // The last step fails without a status: what it wrote is no result.
  stage.home.write("bad.out.pbf", "old");
  stage.prompts.default_answer = Answer::yes;
  stage.home.write("osm convert",
                   "#!/bin/sh\nfor word; do case $word in -o=*) out=${word#-o=};; esac; done\n"
                   "printf 'part\\376' >\"$out\"\n");
  const MergeReport failed =
      merg(stage.workspace, stage.prompts, stage.progress,
           {stage.home / "one.pbf", stage.home / "turned.pbf"}, stage.home / "bad.out.pbf");
  CHECK(failed.result == StageResult::failed);
  CHECK(read_whole_file(stage.home / "bad.out.pbf") == "old");
}
#endif
