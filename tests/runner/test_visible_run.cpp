#include <doctest/doctest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/child_program.hpp"
#include "runner/console_script.hpp"
#include "runner/visible_run.hpp"
#include "support/fake_progress.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;

namespace {

constexpr bool batch = native_dialect == Dialect::batch;

// A folder with a script of child program calls, and a request to run it there.
struct Run {
  test::TempFolder folder{"a b & %PATH% \xC3\xBC"};
  test::FakeProgress progress;
  VisibleRunRequest request;
  ConsoleScript script;

  Run() {
    script.add(step::Header{"@echo off"});
    request.script_path = folder / (batch ? "run.bat" : "run.sh");
    request.folder = folder.path();
  }
  // One call; `behind` is what the shell is to do with it: " 2>dos.txt", " &".
  Run& call(const std::string& arguments, const std::string& behind = "") {
    const Command command{platform::testing::child_path(), parse_arguments(arguments)};
    script.add(step::Lines{render_command(command, native_dialect).value + behind});
    return *this;
  }
  VisibleRunEnd run() {
    REQUIRE(write_script(script, native_dialect, request.script_path).error == "");
    return run_visible(request, progress);
  }
};

}  // namespace

TEST_CASE("a script runs in its folder to its end, with its status") {
  Run test;
  test.request.environment = {{"FERROWEN_TEST", "from the request"}};
  test.call("folder", " >folder.txt").call("env FERROWEN_TEST", " >env.txt").call("sleep 500").call("exit 7");
  const VisibleRunEnd end = test.run();
  CHECK(end.problem == "");
  CHECK(end.exit_status == 7);
  CHECK(std::filesystem::equivalent(platform::file_system_path(read_whole_file(test.folder / "folder.txt")),
                                    platform::file_system_path(test.folder.path())));
  CHECK(read_whole_file(test.folder / "env.txt") == "from the request");
  CHECK(test.progress.elapsed_seconds.back() >= 0.5);
}

TEST_CASE("what cannot be started is told") {
  Run test;
  const std::string missing = test.folder / "missing";
  const std::string script = test.folder.write("dos.txt/in the way", "");
  test.request.error_file = test.folder / "dos.txt";
  const auto problem = [&](const std::string& path, const std::string& folder) {
    test.request.script_path = path;
    test.request.folder = folder;
    return run_visible(test.request, test.progress).problem;
  };
  CHECK(problem(missing, "") == missing + ": no such file");
  CHECK(problem(script, missing) == missing + ": no such folder");
  CHECK(problem(script, "").starts_with(test.folder / "dos.txt"));
}

TEST_CASE("the error file is followed live and to its last byte, an old one is forgotten") {
  Run test;
  test.folder.write("dos.txt", "of an earlier run, OutOfMemoryError");
  test.request.error_file = "dos.txt";
  bool seen_live = false;
  test.request.tick = [&] {
    const std::string seen = test.progress.output_text();
    seen_live = seen_live || (contains(seen, "piece 2") && !contains(seen, "piece 9"));
  };
  test.request.must_end = [](const std::string& text) { return contains(text, "earlier"); };
  test.call("pieces 10 100", " 1>dos.txt");
  const VisibleRunEnd end = test.run();
  CHECK(seen_live);
  CHECK_FALSE(end.given_up);
  CHECK(end.error_text == read_whole_file(test.folder / "dos.txt"));
  CHECK(end.error_text.ends_with("piece 9\n"));
}

TEST_CASE("a hopeless text of two pieces ends the script and all that it has started") {
  Run test;
  test.request.error_file = "dos.txt";
  test.request.must_end = [](const std::string& text) { return contains(text, "piece 2\npiece 3"); };
  test.call("pieces 100 200", " >dos.txt").call("exit 0");
  const VisibleRunEnd end = test.run();
  CHECK(end.given_up);
  CHECK_FALSE(end.cancelled);
  CHECK(end.seconds < 15);
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  CHECK(read_whole_file(test.folder / "dos.txt") == end.error_text);
}

TEST_CASE("an obstacle ends the script and is told") {
  Run test;
  test.request.error_file = "dos.txt";
  test.request.obstacle = [](std::uint64_t printed) { return printed >= 16 ? "in the way" : ""; };
  test.call("pieces 100 200", " >dos.txt");
  const VisibleRunEnd end = test.run();
  CHECK(end.given_up);
  CHECK(end.problem == "in the way");
  CHECK(end.error_text.size() >= 16);
  CHECK(end.seconds < 15);
}

#ifndef _WIN32
TEST_CASE("output comes live, in whole characters, and is kept and searched up to a limit") {
  Run test;
  bool live = false;
  test.request.tick = [&] { live = live || test.progress.output_text() == "first\n"; };
  test.script.add(
      step::Lines{"echo first; sleep 0.5; printf '\\303'; sleep 0.2; printf '\\274\\n'; "
                  "yes 'gr\xC3\xBCn' | head -c 20000000; echo END"});
  std::size_t searched = 0;
  test.request.must_end = [&](const std::string& text) {
    searched += text.size();
    return false;
  };
  const VisibleRunEnd end = test.run();
  CHECK(live);
  CHECK(test.progress.output_text().size() == 20000013);
  for (const std::string& piece : test.progress.outputs)
    REQUIRE(is_valid_utf8(piece));
  CHECK(end.output.size() > 4000000);
  CHECK(end.output.size() <= 4U << 20U);
  CHECK(searched < 25000000);
}

TEST_CASE("a process that the script leaves behind neither holds the run nor stays") {
  Run test;
  test.call("pieces 1 1").call("sleep 20000", " &");
  test.script.add(step::Lines{"echo $! >pid.txt"});
  const VisibleRunEnd end = test.run();
  CHECK(end.seconds < 6);
  CHECK(end.output == "piece 0\n");
  const std::string pid(trim(read_whole_file(test.folder / "pid.txt")));
  REQUIRE_FALSE(pid.empty());
  CHECK_FALSE(file_exists("/proc/" + pid));
}
#endif
