#include <doctest/doctest.h>

#include "app/script_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

std::string prepared(const std::string& script, const ScriptSwitches& switches) {
  const Result<std::string> result = prepared_script(script, switches, MessageTable());
  return result.ok() ? result.value : "refused: " + result.error;
}

struct ScriptRun : StandIn {
  using StandIn::StandIn;
  VisibleRunEnd run() {
    return run_script(workspace, prompts, progress, script, [] {});
  }
  std::string script = "java -jar mkgmap.jar --mapname=13224385";
};

}  // namespace

TEST_CASE("a script is prepared in fixed steps") {
  const std::string conflict =
      "refused: Warning!\r\n'latin1' and 'unicode' conflict detected in options.\r\nRemove one.";
  const std::pair<std::string, std::string> cases[] = {
      {R"(java   -jar "C:\my  dir/mkgmap.jar"  -c a/b.args)",
       R"(java -jar "C:\my  dir/mkgmap.jar" -c a/b.args)"},
      {"java --mapname=1234567 x", "refused: mapname needs 8 digits"},
      {"java --mapname=1234567A x", "refused: mapname needs 8 digits"},
      {"java --mapname=12345678 --overview-mapname=\"My Map\"",
       "java --mapname=12345678 --overview-mapname=\"My Map\""},
      {"java --unicode --latin1 x", conflict},
      {"java --unicode --description=\"no --latin1\"", "java --unicode --description=\"no --latin1\""},
      // Code 250 stands for a blank, the letter with that number does not.
      {std::string("java --name=a\xFA") + "b \"\u00fa\"", "java --name=a b \"\u00fa\""},
  };
  ScriptSwitches switches;
  switches.dialect = Dialect::shell;
  for (const auto& [script, result] : cases)
    CHECK(prepared(script, switches) == result);
  switches.dialect = Dialect::batch;
  CHECK(prepared("java \"a/b\" -c a/b.args", switches) == "java \"a/b\" -c a\\b.args");
}

TEST_CASE("every Java command gets the log option, and the error stream is kept") {
  ScriptSwitches switches;
  switches.dialect = Dialect::shell;
  switches.log = switches.keep_error_stream = true;
  switches.logging_properties = "/pro gram/logging.properties";
  CHECK(prepared("java a\njava \"java c\"", switches) ==
        "java -Dlog.config=\"/pro gram/logging.properties\" a\n"
        "java -Dlog.config=\"/pro gram/logging.properties\" \"java c\" 2>dos.txt");
}

TEST_CASE("a run leaves its script, its error stream and the name of its input") {
  ScriptRun test("work & home");
  test.set_mode("fail");
  const VisibleRunEnd end = test.run();
  CHECK(end.started);
  CHECK(end.exit_status == 1);
  CHECK(contains(end.error_text, "not a readable file"));
  CHECK(test.script == "java -jar mkgmap.jar --mapname=13224385 2>dos.txt");
  CHECK(read_whole_file(test.workspace.path("system/lastfile")) == test.workspace.settings.input);
  CHECK(contains(read_whole_file(test.workspace.path(file_name::run_script)), "--mapname=13224385"));
}

TEST_CASE("the user's own script is asked about, and runs in place of the command") {
  ScriptRun test;
  test.set("own-script=1");
  const std::string path = test.workspace.path(file_name::own_script);
  test.prompts.answers = {Answer::yes};
  SUBCASE("cancelled") {
    test.prompts.answers = {Answer::cancel};
    CHECK_FALSE(test.run().started);
    CHECK(test.script == "cancelxyz");
    CHECK_FALSE(file_exists(test.workspace.path(file_name::run_script)));
  }
  SUBCASE("missing") {
    CHECK_FALSE(test.run().started);
    CHECK(test.script == "cancelxyz");
    CHECK(test.prompts.tells() == std::vector<std::string>{"Cannot find script\r\n" + path});
  }
  SUBCASE("there") {
    test.home.write("myscript.txt", "java -own one\r\njava -own two mkgmap.jar --output-dir=.\r\n");
    CHECK(test.run().started);
    CHECK(contains(read_whole_file(test.home / "stand-in-arguments"), "-own\ntwo\nmkgmap.jar"));
  }
  CHECK(test.prompts.asks() ==
        std::vector<std::string>{"Caution:  Your script is not checked for\r\n1) possible mkgmap errors\r\n"
                                 "2) FID conflicts.\r\n\r\n" +
                                 path + "\r\n(Use Own script is ticked in Settings / Advanced)"});
}

TEST_CASE("a stop request ends the tool; a splitter out of memory is given up, whatever it does next") {
  ScriptRun test;
  test.set_mode("out-of-memory");
  SUBCASE("stopped") {
    test.progress.stop_when = [&] { return contains(test.progress.output_text(), "OutOfMemory"); };
    const VisibleRunEnd end = test.run();
    CHECK(end.cancelled);
    CHECK(end.seconds < 60);
    CHECK(test.workspace.flags.cancel);
  }
  SUBCASE("given up") {
    test.script = "java -jar splitter.jar";
    const VisibleRunEnd end = test.run();
    CHECK(end.given_up);
    CHECK(end.seconds < 60);
  }
#ifdef __linux__
  SUBCASE("no space left for the tiles") {
    test.set_mode("hang");
    test.workspace.settings.split_folder = "/proc";  // has no space, ever
    test.script = "java -jar mkgmap.jar splitter.jar";
    const VisibleRunEnd end = test.run();
    CHECK(end.given_up);
    CHECK(end.problem == "No space left: /proc");
    CHECK(end.seconds < 60);
  }
#endif
}
