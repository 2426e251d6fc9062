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

ScriptSwitches plain(Dialect dialect) {
  ScriptSwitches switches;
  switches.dialect = dialect;
  return switches;
}

}  // namespace

TEST_CASE("a script is prepared in fixed steps") {
  const MessageTable messages;
  SUBCASE("blanks collapse and slashes turn outside quotes only") {
    const std::string script = "java   -jar \"C:\\my  dir/mkgmap.jar\"  -c a/b.args";
    CHECK(prepared(script, plain(Dialect::batch)) == "java -jar \"C:\\my  dir/mkgmap.jar\" -c a\\b.args");
    CHECK(prepared(script, plain(Dialect::shell)) == "java -jar \"C:\\my  dir/mkgmap.jar\" -c a/b.args");
  }
  SUBCASE("the map name needs eight digits") {
    for (const char* wrong : {"1234567", "123456789", "1234567A", ""})
      CHECK(prepared("java --mapname=" + std::string(wrong) + " x", plain(Dialect::shell)) ==
            "refused: " + messages(84));
    CHECK(prepared("java --mapname=12345678 x", plain(Dialect::shell)) == "java --mapname=12345678 x");
    CHECK(prepared("java --overview-mapname=\"My Map\" x", plain(Dialect::shell)) ==
          "java --overview-mapname=\"My Map\" x");
  }
  SUBCASE("two character sets are refused") {
    CHECK(prepared("java --unicode --latin1 x", plain(Dialect::shell)) ==
          "refused: Warning!\r\n'latin1' and 'unicode' conflict detected in options.\r\nRemove one.");
    CHECK(prepared("java --unicode --description=\"no --latin1\"", plain(Dialect::shell)) ==
          "java --unicode --description=\"no --latin1\"");
  }
  SUBCASE("every Java command gets the log option, and the error stream is kept") {
    ScriptSwitches switches = plain(Dialect::shell);
    switches.log = true;
    switches.keep_error_stream = true;
    switches.logging_properties = "/pro gram/logging.properties";
    CHECK(prepared("java a\njava b\njava \"java c\"", switches) ==
          "java -Dlog.config=\"/pro gram/logging.properties\" a\n"
          "java -Dlog.config=\"/pro gram/logging.properties\" b\n"
          "java -Dlog.config=\"/pro gram/logging.properties\" \"java c\" 2>dos.txt");
    switches.logging_properties.clear();
    CHECK(prepared("java a", switches) == "java a 2>dos.txt");
  }
  SUBCASE("code 250 stands for a blank, the letter with that number does not") {
    CHECK(prepared("java --name=a\xFA"
                   "b \"ú\"",
                   plain(Dialect::shell)) == "java --name=a b \"ú\"");
  }
}

TEST_CASE("elapsed time") {
  CHECK(timetaken(0) == "0:00 min");
  CHECK(timetaken(61.9) == "1:01 min");
  CHECK(timetaken(3600) == "60:00 min");
}

TEST_CASE("a run leaves its script, its error stream and the name of its input") {
  StandIn stand_in("work & home");
  stand_in.set_mode("fail");
  std::string script = "java -jar mkgmap.jar --mapname=13224385";
  const VisibleRunEnd end =
      run_script(stand_in.workspace, stand_in.prompts, stand_in.progress, script, [] {});
  CHECK(end.started);
  CHECK(end.exit_status == 1);
  CHECK(contains(end.error_text, "not a readable file"));
  CHECK(script == "java -jar mkgmap.jar --mapname=13224385 2>dos.txt");
  CHECK(contains(read_whole_file(stand_in.home / "dos.txt"), "not a readable file"));
  CHECK(read_whole_file(stand_in.workspace.path("system/lastfile")) == stand_in.workspace.settings.input);
  CHECK(contains(read_whole_file(stand_in.workspace.path(file_name::run_script)), "--mapname=13224385"));
  CHECK(contains(read_whole_file(stand_in.home / "stand-in-arguments"), "--mapname=13224385"));
}

TEST_CASE("the user's own script is asked about, and runs in place of the command") {
  StandIn stand_in;
  stand_in.workspace.settings.own_script = true;
  std::string script = "java -jar mkgmap.jar --built";
  const std::string path = stand_in.workspace.path(file_name::own_script);
  const std::string question =
      "Caution:  Your script is not checked for\r\n1) possible mkgmap errors\r\n2) FID conflicts.\r\n\r\n" +
      path + "\r\n(Use Own script is ticked in Settings / Advanced)";
  SUBCASE("cancelled") {
    stand_in.prompts.answers = {Answer::cancel};
    static_cast<void>(run_script(stand_in.workspace, stand_in.prompts, stand_in.progress, script, [] {}));
    CHECK(script == "cancelxyz");
    CHECK_FALSE(file_exists(stand_in.workspace.path(file_name::run_script)));
  }
  SUBCASE("missing") {
    stand_in.prompts.answers = {Answer::yes};
    static_cast<void>(run_script(stand_in.workspace, stand_in.prompts, stand_in.progress, script, [] {}));
    CHECK(script == "cancelxyz");
    CHECK(stand_in.prompts.tells() == std::vector<std::string>{"Cannot find script\r\n" + path});
  }
  SUBCASE("there") {
    stand_in.home.write("myscript.txt", "java -own one\r\njava -own two mkgmap.jar --output-dir=.\r\n");
    stand_in.prompts.answers = {Answer::yes};
    static_cast<void>(run_script(stand_in.workspace, stand_in.prompts, stand_in.progress, script, [] {}));
    CHECK(contains(read_whole_file(stand_in.home / "stand-in-arguments"), "-own\ntwo\nmkgmap.jar"));
  }
  CHECK(stand_in.prompts.asks() == std::vector<std::string>{question});
}

TEST_CASE("a stop request ends the tool") {
  StandIn stand_in;
  stand_in.set_mode("out-of-memory");
  stand_in.progress.stop_when = [&] { return contains(stand_in.progress.output_text(), "OutOfMemory"); };
  std::string script = "java -jar mkgmap.jar";
  const VisibleRunEnd end =
      run_script(stand_in.workspace, stand_in.prompts, stand_in.progress, script, [] {});
  CHECK(end.cancelled);
  CHECK(end.seconds < 60);
  CHECK(stand_in.workspace.flags.cancel);
}

TEST_CASE("a splitter that ran out of memory is given up, whatever it does next") {
  StandIn stand_in;
  stand_in.set_mode("out-of-memory");
  std::string script = "java -jar splitter.jar";
  const VisibleRunEnd end =
      run_script(stand_in.workspace, stand_in.prompts, stand_in.progress, script, [] {});
  CHECK(end.given_up);
  CHECK(end.seconds < 60);
}
