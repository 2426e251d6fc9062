#include "pipeline/build_run.hpp"

#include <doctest/doctest.h>

#include "base/text.hpp"
#include "support/settings_of.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

TEST_CASE("files are judged first, then the tool's words, then its status") {
  struct Case {
    Verdict verdict;
    int status;
    std::vector<ResultFile> files;
    const char* error_text = "";
    const char* log = "";
  };
  const std::vector<ResultFile> whole = {{"a.img", 10, true}, {"b.img", 20, true}};
  const Case cases[] = {
      {Verdict::good, 0, whole, "SEVERE (RoundaboutCheck): x\nNumber of MapFailedExceptions: 0\n"},
      {Verdict::good, 0, whole, "", "SEVERE (LineSizeSplitterFilter): a.img: long line\n"},
      {Verdict::good, 0, whole, "note: SEVERE (x)\n"},
      {Verdict::good, 0, whole, "", "uk.me.parabola.mkgmap INFO x\n"},
      {Verdict::incomplete, 0, {{"a.img", 10, true}, {"empty.img", 0, true}}},
      {Verdict::incomplete, 0, {{"old.img", 10, false}, {"b.img", 5, true}}},
      {Verdict::nothing, 0, {{"a.img", 0, false}, {"b.img", 0, false}}},
      {Verdict::doubtful, 0, whole, "SEVERE (global): Error in style\n"},
      {Verdict::doubtful, 0, whole, "SCHWERWIEGEND (global): Fehler\n"},
      {Verdict::doubtful, 0, whole, "Number of ExitExceptions: 12\n"},
      {Verdict::doubtful, 0, whole, "\tat uk.me.parabola.Main\n"},
      {Verdict::doubtful, 0, whole, "", "SEVERE (x): y\n"},
      {Verdict::doubtful, 1, whole},
  };
  for (const Case& each : cases) {
    CAPTURE(each.error_text);
    VisibleRunEnd end;
    end.started = true;
    end.exit_status = each.status;
    end.error_text = each.error_text;
    const Judgement judgement = judge_build(each.files, end, each.log);
    CHECK(judgement.verdict == each.verdict);
    CHECK(judgement.reasons.empty() == (each.verdict == Verdict::good));
  }
}

TEST_CASE("the explanation has the known words and ends with what was found") {
  const Settings settings =
      test::settings_of("max-nodes=800000; java-options=-Xmx1500m; use-max-jobs=1; max-jobs=2");
  CHECK(failure_explanation({Verdict::incomplete, {"not made: x.img"}}, settings) ==
        "This may be have unsuccessful.\r\n"
        "1) There may be an error in one of your style files,points,lines or polygons.\r\n"
        "2) The size of your osm could also be large:\r\n"
        "Max Jobs:2\r\nMemory:1500\r\nMax Nodes:800000\r\n"
        "3) Tick/untick 'add java' option\r\n4) there is an error in the script\r\n"
        "Check you have latest version of mkgmap.jar\r\n\r\nnot made: x.img");
}

TEST_CASE("complaints are the lines that say what went wrong") {
  const std::string output =
      "Mkgmap version 4905\nSEVERE (global): Error in style: Error: (lines:304): Unrecognised type\n"
      "SEVERE (RoundaboutCheck): Roundabout\n\tat uk.me.parabola.X(Error.java)\n"
      "Number of MapFailedExceptions: 0\nNumber of ExitExceptions: 1\nExiting - if you want to carry on\n";
  CHECK(complaints(output) == Texts{"SEVERE (global): Error in style: Error: (lines:304): Unrecognised type",
                                    "Number of ExitExceptions: 1", "Exiting - if you want to carry on"});
}
