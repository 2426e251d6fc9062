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
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using ferrowen::test::FakeProgress;
using ferrowen::test::FakePrompts;
using ferrowen::test::TempFolder;

namespace {

constexpr bool batch = native_dialect == Dialect::batch;

double seconds_since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A folder with a script of child program calls, and a request to run it there.
struct Run {
  TempFolder folder{"a b & %PATH% \xC3\xBC"};
  FakeProgress progress;
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
  int ticks = 0;
  test.request.tick = [&] { ++ticks; };
  test.request.environment = {{"FERROWEN_TEST", "from the request"}};
  test.call("folder", " >folder.txt").call("env FERROWEN_TEST", " >env.txt").call("sleep 500").call("exit 7");
  const VisibleRunEnd end = test.run();
  CHECK(end.problem == "");
  CHECK(end.started);
  CHECK_FALSE(end.cancelled);
  CHECK_FALSE(end.given_up);
  CHECK(end.exit_status == 7);
  CHECK(std::filesystem::equivalent(platform::file_system_path(read_whole_file(test.folder / "folder.txt")),
                                    platform::file_system_path(test.folder.path())));
  CHECK(read_whole_file(test.folder / "env.txt") == "from the request");
  CHECK(end.seconds >= 0.5);
  CHECK(ticks >= 3);
  REQUIRE(test.progress.elapsed_seconds.size() == static_cast<std::size_t>(ticks));
  CHECK(test.progress.elapsed_seconds.back() >= 0.5);
  CHECK(test.progress.events_processed > ticks);
}

TEST_CASE("what cannot be started is told") {
  Run test;
  test.call("exit 0");
  SUBCASE("no script") {
    const VisibleRunEnd end = run_visible(test.request, test.progress);
    CHECK(end.problem == test.request.script_path + ": no such file");
    CHECK_FALSE(end.started);
  }
  SUBCASE("no folder") {
    test.request.folder = test.folder / "missing";
    const VisibleRunEnd end = test.run();
    CHECK(end.problem == test.request.folder + ": no such folder");
    CHECK_FALSE(end.started);
  }
  SUBCASE("an error file that cannot be renewed") {
    test.folder.write("dos.txt/in the way", "");
    test.request.error_file = test.folder / "dos.txt";
    const VisibleRunEnd end = test.run();
    CHECK(end.problem.starts_with(test.folder / "dos.txt"));
    CHECK_FALSE(end.started);
  }
}

TEST_CASE("the error file is followed live and to its last byte, an old one is forgotten") {
  Run test;
  test.folder.write("dos.txt", "of an earlier run, OutOfMemoryError");
  test.request.error_file = "dos.txt";
  bool seen_live = false;
  bool old_seen = false;
  test.request.tick = [&] {
    seen_live = seen_live || (contains(test.progress.output_text(), "piece 2") &&
                              !contains(test.progress.output_text(), "piece 9"));
  };
  test.request.must_end = [&](const std::string& text) {
    old_seen = old_seen || contains(text, "earlier");
    return false;
  };
  test.call("pieces 10 100", " 1>dos.txt");
  const VisibleRunEnd end = test.run();
  CHECK(seen_live);
  CHECK_FALSE(old_seen);
  CHECK(end.error_text == read_whole_file(test.folder / "dos.txt"));
  CHECK(end.error_text.ends_with("piece 9\n"));
  CHECK(contains(test.progress.output_text(), end.error_text));
}

TEST_CASE("a stop request or a hopeless text ends the script and all that it has started") {
  Run test;
  const auto start = std::chrono::steady_clock::now();
  const std::string written = test.folder / "dos.txt";
  test.request.error_file = written;
  test.call("pieces 100 200", " >dos.txt").call("exit 0");
  VisibleRunEnd end;
  SUBCASE("a stop request") {
    test.progress.stop_when = [&] { return file_has_content(written); };
    end = test.run();
    CHECK(end.cancelled);
    CHECK_FALSE(end.given_up);
  }
  SUBCASE("a text") {
    test.request.must_end = [](const std::string& text) { return contains(text, "piece 2"); };
    end = test.run();
    CHECK(end.given_up);
    CHECK_FALSE(end.cancelled);
  }
  CHECK(end.started);
  CHECK(seconds_since(start) < 15);
  const std::string left = read_whole_file(written);
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  CHECK(read_whole_file(written) == left);
}

#ifndef _WIN32
TEST_CASE("output comes live, whole characters at a time, and is kept up to a limit") {
  Run test;
  bool live = false;
  test.request.tick = [&] { live = live || test.progress.output_text() == "first\n"; };
  test.script.add(step::Lines{"echo first; sleep 0.5; printf '\\303'; sleep 0.2; printf '\\274\\n'; exit 3"});
  const VisibleRunEnd end = test.run();
  CHECK(live);
  CHECK(end.output == "first\n\xC3\xBC\n");
  CHECK(end.exit_status == 3);
  for (const std::string& piece : test.progress.outputs)
    CHECK(is_valid_utf8(piece));

  Run much;
  much.script.add(step::Lines{"yes 'gr\xC3\xBCn' | head -c 20000000; echo END"});
  std::size_t searched = 0;
  much.request.must_end = [&](const std::string& text) {
    searched += text.size();
    return false;
  };
  const VisibleRunEnd kept = much.run();
  CHECK(kept.output.size() <= 4U << 20U);
  CHECK(kept.output.size() > 4000000);
  CHECK(kept.output.ends_with("END\n"));
  CHECK(is_valid_utf8(kept.output));
  CHECK(much.progress.output_text().size() == 20000004);
  CHECK(searched < 25000000);
}

TEST_CASE("words of a hopeless text are found across pieces") {
  Run test;
  test.script.add(step::Lines{"printf OutOfMem; sleep 0.3; echo oryError; sleep 20"});
  test.request.must_end = [](const std::string& text) { return contains(text, "OutOfMemoryError"); };
  const VisibleRunEnd end = test.run();
  CHECK(end.given_up);
  CHECK(end.seconds < 10);
}

TEST_CASE("a process that the script leaves behind neither holds the run nor stays") {
  Run test;
  test.call("pieces 1 1").call("sleep 20000", " &");
  test.script.add(step::Lines{"echo $! >pid.txt"});
  const VisibleRunEnd end = test.run();
  CHECK(end.exit_status == 0);
  CHECK(end.seconds < 6);
  CHECK(end.output == "piece 0\n");
  const std::string pid(trim(read_whole_file(test.folder / "pid.txt")));
  REQUIRE_FALSE(pid.empty());
  CHECK_FALSE(file_exists("/proc/" + pid));
}

TEST_CASE("without console windows there is nothing to close") {
  FakePrompts prompts;
  FakeProgress progress;
  CHECK_FALSE(finddos());
  CHECK(close_dos(true, "There is a dos window active. Close this ?", prompts, progress));
  CHECK(prompts.said.empty());
}
#endif
