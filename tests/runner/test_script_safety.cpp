// Scripts that are really run by this system's shell: nasty values arrive unchanged or are refused, and
// nothing in them runs as code.
#include <doctest/doctest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/child_program.hpp"
#include "runner/console_script.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using ferrowen::test::TempFolder;

namespace {

constexpr bool batch = native_dialect == Dialect::batch;

const std::vector<std::string> nasty_values = split(
    "plain¦¦ two  blanks ¦-x¦--¦/d¦it's¦%PATH%¦100%¦%%PATH%%¦%~dp0 %1 %*¦!PATH!¦^¦a^b^^c¦a&echo x>hacked¦"
    "a & echo x > hacked¦a|sort>hacked¦a;touch hacked;¦$(touch hacked)¦`touch hacked`¦${HOME}$HOME$$¦"
    "<in >out¦2>hacked¦(a) b)¦a,b;c=d¦*¦?.*¦#no comment¦~¦@a¦tab\there¦back\\slash¦C:\\maps\\¦"
    "C:\\my maps\\\\¦\\¦a \\¦\\\\server\\share¦two\nlines\ntouch hacked¦carriage\rreturn¦5\" of rain¦"
    "\" & echo x > hacked & \"¦\\\"¦Färöer¦{a,b}¦[a-z]¦\032echo x>hacked",
    "¦");

// Without a console of its own an interpreter may print in the ANSI code page what it read in the OEM one.
bool is_printed(const std::string& shown, const std::string& text) {
  return shown == text || (batch && (shown == encode_for(Consumer::batch_script, text, "").value ||
                                     shown == encode_for(Consumer::regedit4, text, "").value));
}

// A script in a folder of its own, run by this system's shell.
struct Run {
  TempFolder folder;
  ConsoleScript script;
  Run() { script.add(step::Header{"@echo off"}); }
  [[nodiscard]] platform::testing::Outcome run() const {
    const std::string path = folder / (batch ? "run.cmd" : "run.sh");
    REQUIRE(write_script(script, native_dialect, path).error == "");
    platform::ProcessRequest request;
    request.folder = folder.path();
    request.program = batch ? "cmd.exe" : "/bin/sh";
    request.arguments = batch ? std::vector<std::string>{"/d", "/c", path} : std::vector<std::string>{path};
    platform::testing::Outcome outcome = platform::testing::run(request);
    CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{batch ? "run.cmd" : "run.sh"});
    return outcome;
  }
};

}  // namespace

TEST_CASE("nasty arguments arrive unchanged or are refused, in every form") {
  Run test;
  std::vector<std::string> expected;
  int refused = 0;
  for (const std::string& value : nasty_values) {
    const Command command{platform::testing::child_path(),
                          {word("args"), quoted(value), quoted_option("--path", value),
                           option("--text", value), word("-D" + value)}};
    if (!render_command(command, native_dialect).ok()) {
      ++refused;
      continue;
    }
    for (const Argument& argument : command.arguments)
      expected.push_back(argument.name + argument.value);
    test.script.add(step::Run{command});
  }
  CHECK(refused == (batch ? 6 : 0));
  std::vector<std::string> arrived = split(test.run().output, std::string_view("\0", 1));
  arrived.pop_back();
  std::erase(expected, "args");
  CHECK(arrived == expected);
}

TEST_CASE("nasty texts are shown and never run, in and outside branches") {
  Run test;
  auto inner = std::make_shared<ConsoleScript>();
  std::vector<std::string> expected;
  for (const std::string& value : nasty_values) {
    if (value.find_first_of("\r\x1A") != std::string::npos) continue;
    for (const std::string& text : {"text " + value, value + " end"}) {
      inner->add(step::Echo{"echo ", text});
      const std::vector<std::string> text_lines = split_lines(text);
      expected.insert(expected.end(), text_lines.begin(), text_lines.end());
    }
  }
  test.script.add(step::IfExists{test.folder.path(), false, inner, inner})
      .add(step::IfExists{"none", false, inner, nullptr});
  const std::vector<std::string> shown = split_lines(test.run().output);
  REQUIRE(shown.size() == 2 * expected.size());
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const std::string& wanted = expected[i % expected.size()];
    CHECK_MESSAGE(is_printed(shown[i], wanted), shown[i], " for ", wanted);
  }
}

TEST_CASE("nasty folders and files are changed to, found and deleted") {
  for (const std::string name :
       {"-x", "a b & c", "%PATH%", "$(touch hacked)", "it's `x`", "a;b,c=d", "(x) ^!", "F\xC3\xA4r"}) {
    CAPTURE(name);
    Run test;
    const std::string file = test.folder.write(std::string(name).append("/-f ").append(name), "x");
    auto found = std::make_shared<ConsoleScript>();
    found->add(step::Echo{"echo ", "found " + name}).add(step::Delete{"-f " + name});
    test.script.add(step::ChangeFolder{test.folder / name})
        .add(step::ChangeFolder{".."})
        .add(step::ChangeFolder{name})
        .add(step::IfExists{"-f " + name, true, found, nullptr});
    CHECK(is_printed(std::string(trim(test.run().output)), "found " + name));
    CHECK_FALSE(file_exists(file));
  }
}

TEST_CASE("a script ends with the status of its last command, pause or not") {
  Run test;
  test.script.add(step::Run{{platform::testing::child_path(), {word("exit"), word("3")}}}).add(step::Pause{});
  CHECK(test.run().status == 3);
  test.script.add(step::Exit{5, true});
  CHECK(test.run().status == 5);
}
