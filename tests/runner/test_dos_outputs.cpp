#include <doctest/doctest.h>

#include <chrono>
#include <string>
#include <vector>

#include "base/text.hpp"
#include "platform/child_program.hpp"
#include "runner/command.hpp"
#include "runner/dos_outputs.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"

using namespace ferrowen;

namespace {

std::string child_line(const std::string& arguments) {
  return render_command({platform::testing::child_path(), parse_arguments(arguments)}, native_dialect).value;
}

struct Runner {
  RunFlags flags;
  test::FakePrompts prompts;
  test::FakeProgress progress;
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
  CHECK(join_texts(runner.chunks, "") == output);
  runner.outputs.environment = {{"FERROWEN_TEST", "a b"}};
  CHECK(runner.outputs.ExecuteCommand(child_line("env FERROWEN_TEST")) == "a b");
  CHECK(runner.outputs.ExecuteCommand(child_line("both")) == "out err out");
  CHECK(runner.outputs.ExecuteCommand("") == "out err out");  // an empty text replaces nothing
  runner.flags = {};
  CHECK(runner.outputs.ExecuteCommand("ferrowen-no-such-program -version") == "out err out");
  CHECK(runner.flags.finished);
  CHECK(runner.outputs.ExecuteCommand(child_line("exit 3")).empty());
  CHECK(runner.prompts.said.empty());
  runner.outputs.CommandLine.clear();
  runner.outputs.ExecuteCommand();
  CHECK(runner.prompts.tells() == std::vector<std::string>{"Command Line empty"});
}

TEST_CASE("the interface lives while a child is silent, and can cancel it without ending it") {
  Runner runner;
  const auto start = std::chrono::steady_clock::now();
  SUBCASE("by the cancel flag") {
    runner.progress.on_events = [&] { runner.flags.cancel = runner.progress.events_processed > 3; };
  }
  SUBCASE("by the reader") {
    runner.outputs.ReceiveOutputs = [&](std::string_view) { runner.flags.cancel = true; };
    CHECK(runner.outputs.ExecuteCommand(child_line("print 5000")).size() <= 256);
    return;
  }
  SUBCASE("by a stop request") {
    runner.progress.stop_when = [&] { return runner.progress.events_processed > 3; };
  }
  runner.outputs.ExecuteCommand(child_line("sleep 3000"));
  CHECK(std::chrono::steady_clock::now() - start < std::chrono::milliseconds(2500));
  CHECK(runner.flags.cancel);
  CHECK(runner.flags.finished);
}

TEST_CASE("the handler shows pieces, and stops the run at the abort words") {
  struct Case {
    std::vector<std::string> chunks;
    std::string shown;
    bool cancelled = false;
    bool is_help = false;
  };
  for (const Case& each : std::vector<Case>{{{"a\nb\r", "\nc\n"}, "a\r\nb\r\nc\r\n"},
                                            {{"at x.java:5\n"}, "at x.java:5\r\n", true},
                                            {{"Could not"}, "Could not", true},
                                            {{"please reduce it"}, "please reduce it", true},
                                            {{"COULD NOT, Reduce, .JAVA"}, "COULD NOT, Reduce, .JAVA"},
                                            {{"a ", "x.osm could not ", "b"}, "a b", true},
                                            {{"x.osm could not"}, "x.osm could not", false, true},
                                            {{"\xE2", "\x82", "\xAC"}, "\xE2\x82\xAC"},
                                            {{"\xC3", "\xFF", "x", "end\xE2\x82"}, "\xC3\xFFxend\xE2\x82"}}) {
    CAPTURE(each.shown);
    RunFlags flags;
    test::FakeProgress progress;
    OutputHandler handler(flags, progress);
    handler.show_all_output = each.is_help;
    handler.abort_test = !each.is_help;
    for (const std::string& chunk : each.chunks)
      handler.objDOS_ReceiveOutputs(chunk);
    handler.flush();
    CHECK(progress.output_text() == each.shown);
    CHECK(flags.cancel == each.cancelled);
  }
}
