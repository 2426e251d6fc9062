#include <doctest/doctest.h>

#include "base/text.hpp"
#include "pipeline/build_run.hpp"

using namespace ferrowen;

namespace {

VisibleRunEnd ended(int status, const std::string& error_text) {
  VisibleRunEnd end;
  end.started = true;
  end.exit_status = status;
  end.error_text = error_text;
  return end;
}

const std::vector<ResultFile> all_there = {{"a.img", 10, true}, {"b.img", 20, true}};

}  // namespace

TEST_CASE("files are judged first, then the tool's words, then its status") {
  struct Case {
    const char* what;
    std::vector<ResultFile> files;
    int status;
    const char* error_text;
    const char* log;
    Verdict verdict;
  };
  const Case cases[] = {
      {"good", all_there, 0, "SEVERE (RoundaboutCheck): x\nNumber of MapFailedExceptions: 0\n", "",
       Verdict::good},
      {"one empty", {{"a.img", 10, true}, {"b.img", 0, true}}, 0, "", "", Verdict::incomplete},
      {"one old", {{"a.img", 10, false}, {"b.img", 5, true}}, 0, "", "", Verdict::incomplete},
      {"none", {{"a.img", 0, false}, {"b.img", 0, false}}, 0, "", "", Verdict::nothing},
      {"a level word", all_there, 0, "SEVERE (global): Error in style\n", "", Verdict::doubtful},
      {"a German level word", all_there, 0, "SCHWERWIEGEND (global): Fehler\n", "", Verdict::doubtful},
      {"not at the line's start", all_there, 0, "note: SEVERE (x)\n", "", Verdict::good},
      {"a counter", all_there, 0, "Number of ExitExceptions: 12\n", "", Verdict::doubtful},
      {"a status", all_there, 1, "", "", Verdict::doubtful},
      {"a stack trace", all_there, 0, "\tat uk.me.parabola.Main\n", "", Verdict::doubtful},
      {"the log's class names", all_there, 0, "", "uk.me.parabola.mkgmap INFO x\n", Verdict::good},
      {"the log's level words", all_there, 0, "", "SEVERE (x): y\n", Verdict::doubtful},
  };
  for (const Case& one : cases) {
    CAPTURE(one.what);
    const Judgement judgement = judge_build(one.files, ended(one.status, one.error_text), one.log);
    CHECK(judgement.verdict == one.verdict);
    CHECK(judgement.reasons.empty() == (one.verdict == Verdict::good));
  }
}

TEST_CASE("the explanation has the known words and ends with what was found") {
  Settings settings;
  settings.max_nodes = "800000";
  settings.java_options = "-Xmx1500m";
  settings.use_max_jobs = true;
  settings.max_jobs = 2;
  const std::string text = failure_explanation({Verdict::incomplete, {"not made: x.img"}}, settings);
  CHECK(text ==
        "This may be have unsuccessful.\r\n"
        "1) There may be an error in one of your style files,points,lines or polygons.\r\n"
        "2) The size of your osm could also be large:\r\n"
        "Max Jobs:2\r\nMemory:1500\r\nMax Nodes:800000\r\n"
        "3) Tick/untick 'add java' option\r\n4) there is an error in the script\r\n"
        "Check you have latest version of mkgmap.jar\r\n\r\nnot made: x.img");
  CHECK(failure_explanation({Verdict::nothing, {}}, settings).starts_with("This has been unsuccessful.\r\n"));
}

TEST_CASE("complaints are the lines that say what went wrong") {
  const std::string output =
      "Mkgmap version 4905\nSEVERE (global): Error in style: Error: (lines:304): Unrecognised type\n"
      "SEVERE (RoundaboutCheck): Roundabout\n\tat uk.me.parabola.X(Error.java)\n"
      "Number of MapFailedExceptions: 0\nNumber of ExitExceptions: 1\nExiting - if you want to carry on\n";
  CHECK(complaints(output) ==
        std::vector<std::string>{"SEVERE (global): Error in style: Error: (lines:304): Unrecognised type",
                                 "Number of ExitExceptions: 1", "Exiting - if you want to carry on"});
}

TEST_CASE("expected and further files follow the map names and the overview name") {
  Settings settings;
  settings.device_image = true;
  BuildPlan plan;
  plan.map_names = {"13224385"};
  plan.typ_source = "/typ/My.TYP";
  plan.typ_copy = "/out/My.TYP";
  CHECK(expected_files(settings, plan, "/out").size() == 2);
  const std::string further = join_texts(further_files(settings, plan, "/out"), " ");
  for (const char* name : {"ovm_13224385.img", "osmmap.tdb", "osmmap_mdr.img", "xMy.TYP"})
    CHECK(contains(further, name));
  plan.typ_source = plan.typ_copy;
  CHECK_FALSE(contains(join_texts(further_files(settings, plan, "/out"), " "), "My.TYP"));
}
