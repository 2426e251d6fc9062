#include <doctest/doctest.h>

#include <chrono>
#include <string>
#include <vector>

#include "platform/child_program.hpp"
#include "runner/command.hpp"
#include "runner/dos_outputs.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"

using namespace ferrowen;
using ferrowen::test::FakeProgress;
using ferrowen::test::FakePrompts;

namespace {

std::string child_line(const std::string& arguments) {
  return render_command({platform::testing::child_path(), parse_arguments(arguments)}, native_dialect).value;
}

struct Runner {
  RunFlags flags;
  FakePrompts prompts;
  FakeProgress progress;
  DOSOutputs outputs{flags, prompts, progress};
  std::vector<std::string> chunks;
  Runner() {
    outputs.ReceiveOutputs = [this](std::string_view chunk) { chunks.emplace_back(chunk); };
  }
};

}  // namespace

TEST_CASE("a captured run hands on every piece and keeps the whole") {
  Runner runner;
  runner.flags.cancel = true;  // left from an earlier run
  runner.outputs.CommandLine = child_line("print 700");
  const std::string output = runner.outputs.ExecuteCommand();
  CHECK(output.size() == 700);
  CHECK(runner.chunks.size() >= 3);
  std::string joined;
  for (const std::string& chunk : runner.chunks) {
    CHECK(chunk.size() <= 256);
    joined += chunk;
  }
  CHECK(joined == output);
  CHECK(runner.flags.finished);
  CHECK(runner.prompts.said.empty());

  CHECK(runner.outputs.ExecuteCommand(child_line("both")) == "out err out");
  CHECK(runner.outputs.CommandLine == child_line("both"));
  CHECK(runner.outputs.ExecuteCommand("") == "out err out");  // an empty text replaces nothing
  runner.outputs.environment = {{"FERROWEN_TEST", "a b"}};
  CHECK(runner.outputs.ExecuteCommand(child_line("env FERROWEN_TEST")) == "a b");
}

TEST_CASE("no command, no program, no output") {
  Runner runner;
  CHECK(runner.outputs.ExecuteCommand() == "");
  REQUIRE(runner.prompts.said.size() == 1);
  CHECK(runner.prompts.said[0].text == "Command Line empty");
  CHECK(runner.prompts.said[0].icon == Icon::critical);
  CHECK(runner.flags.finished);

  runner.prompts.said.clear();
  runner.outputs.ExecuteCommand(child_line("both"));
  runner.flags.cancel = true;
  CHECK(runner.outputs.ExecuteCommand("ferrowen-no-such-program -version") == "out err out");
  CHECK(runner.flags.finished);
  CHECK(runner.flags.cancel);
  CHECK(runner.outputs.ExecuteCommand(child_line("exit 3")).empty());
  CHECK(runner.prompts.said.empty());
}

TEST_CASE("the interface lives while a child is silent, and can cancel it without ending it") {
  Runner runner;
  const auto start = std::chrono::steady_clock::now();
  SUBCASE("by the cancel flag") {
    runner.progress.on_events = [&] { runner.flags.cancel = runner.progress.events_processed > 3; };
  }
  SUBCASE("by a stop request") {
    runner.progress.stop_when = [&] { return runner.progress.events_processed > 3; };
  }
  runner.outputs.ExecuteCommand(child_line("sleep 3000"));
  CHECK(std::chrono::steady_clock::now() - start < std::chrono::milliseconds(2500));
  CHECK(runner.flags.cancel);
  CHECK(runner.flags.finished);
  CHECK(runner.progress.events_processed > 3);
}

TEST_CASE("cancelling stops the reading after the current piece") {
  Runner runner;
  runner.outputs.ReceiveOutputs = [&](std::string_view chunk) {
    runner.chunks.emplace_back(chunk);
    runner.flags.cancel = true;
  };
  const std::string output = runner.outputs.ExecuteCommand(child_line("print 5000"));
  CHECK(runner.chunks == std::vector<std::string>{output});
  CHECK(output.size() <= 256);
}

TEST_CASE("the handler shows pieces, and stops the run at the abort words") {
  struct Case {
    std::vector<std::string> chunks;
    const char* shown;
    bool cancelled;
  };
  const Case cases[] = {
      {{"a\nb\r\n", "c"}, "a\r\nb\r\nc", false},
      {{"a\r", "\nb\n"}, "a\r\nb\r\n", false},
      {{"at x.java:5\n"}, "at x.java:5\r\n", true},
      {{"Could not"}, "Could not", true},
      {{"could not"}, "could not", true},
      {{"please reduce it"}, "please reduce it", true},
      {{"COULD NOT, Reduce, .JAVA"}, "COULD NOT, Reduce, .JAVA", false},
      {{"re", "duce"}, "reduce", false},
      {{"a ", "x.osm ", "b"}, "a b", false},
      {{"x.osm could not"}, "", true},
      {{"gr\xC3", "\xBCn"}, "gr\xC3\xBCn", false},
      {{"\xE2", "\x82", "\xAC"}, "\xE2\x82\xAC", false},
      {{"bad\xC3", "bad\xFF", "x"},
       "bad\xC3"
       "bad\xFFx",
       false},
      {{"end\xE2\x82"}, "end\xE2\x82", false},
  };
  for (const Case& each : cases) {
    CAPTURE(each.shown);
    RunFlags flags;
    FakeProgress progress;
    OutputHandler handler(flags, progress);
    for (const std::string& chunk : each.chunks)
      handler.objDOS_ReceiveOutputs(chunk);
    CHECK(progress.events_processed == 3 * static_cast<int>(each.chunks.size()));
    handler.flush();
    CHECK(progress.output_text() == each.shown);
    CHECK(flags.cancel == each.cancelled);
  }
  RunFlags flags;
  FakeProgress progress;
  OutputHandler handler(flags, progress);
  handler.show_all_output = true;
  handler.abort_test = false;
  handler.objDOS_ReceiveOutputs("x.osm could not reduce .java");
  CHECK(progress.output_text() == "x.osm could not reduce .java");
  CHECK_FALSE(flags.cancel);
}
