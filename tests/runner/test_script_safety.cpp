// Scripts that are really run by this system's shell: nasty values arrive unchanged or are refused, and
// nothing in them runs as code.
#include <doctest/doctest.h>

#include <filesystem>
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

const std::vector<std::string> nasty_values = {
    "plain",
    "",
    " two  blanks ",
    "-x",
    "--",
    "/d",
    "it's",
    "%PATH%",
    "100%",
    "%%PATH%%",
    "%~dp0 %1 %*",
    "!PATH!",
    "^",
    "a^b^^c",
    "a&echo x>hacked",
    "a & echo x > hacked",
    "a|sort>hacked",
    "a;touch hacked;",
    "$(touch hacked)",
    "`touch hacked`",
    "${HOME}$HOME$$",
    "<in >out",
    "2>hacked",
    "(a) b)",
    "a,b;c=d",
    "*",
    "?.*",
    "#no comment",
    "~",
    "@a",
    "tab\there",
    "back\\slash",
    "C:\\maps\\",
    "C:\\my maps\\\\",
    "\\",
    "a \\",
    "\\\\server\\share",
    "two\nlines\ntouch hacked",
    "carriage\rreturn",
    "5\" of rain",
    "\" & echo x > hacked & \"",
    "\\\"",
    "F\xC3\xA4r\xC3\xB6"
    "er",
    "{a,b}",
    "[a-z]",
    "\x1A"
    "echo x>hacked",
};

// The same values in every form that an argument can have.
std::vector<Argument> forms_of(const std::string& value) {
  return {quoted(value), quoted_option("--path", value), option("--text", value), word("-D" + value)};
}

// Without a console of its own an interpreter may print in the ANSI code page what it read in the OEM one.
bool is_printed(const std::string& shown, const std::string& text) {
  return shown == text || (batch && (shown == encode_for(Consumer::batch_script, text, "").value ||
                                     shown == encode_for(Consumer::regedit4, text, "").value));
}

std::string run_script(const ConsoleScript& script, const TempFolder& folder) {
  const std::string path = folder / (batch ? "run.cmd" : "run.sh");
  REQUIRE(write_script(script, native_dialect, path).error == "");
  platform::ProcessRequest request;
  request.folder = folder.path();
  request.program = batch ? "cmd.exe" : "/bin/sh";
  request.arguments = batch ? std::vector<std::string>{"/d", "/c", path} : std::vector<std::string>{path};
  return platform::testing::run(request).output;
}

void check_nothing_else_in(const TempFolder& folder) {
  CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{batch ? "run.cmd" : "run.sh"});
}

}  // namespace

TEST_CASE("nasty arguments arrive unchanged or are refused") {
  const TempFolder folder("args");
  ConsoleScript script;
  script.add(step::Header{"@echo off"});
  std::vector<std::string> expected;
  int refused = 0;
  for (const std::string& value : nasty_values) {
    Command command{platform::testing::child_path(), {word("args")}};
    for (const Argument& argument : forms_of(value))
      command.arguments.push_back(argument);
    if (!render_command(command, native_dialect).ok()) {
      ++refused;
      continue;
    }
    const std::vector<std::string> plain = plain_arguments(command);
    expected.insert(expected.end(), plain.begin() + 1, plain.end());
    script.add(step::Run{command});
  }
  CHECK(refused == (batch ? 6 : 0));
  std::vector<std::string> arrived = split(run_script(script, folder), std::string_view("\0", 1));
  arrived.pop_back();
  REQUIRE(arrived.size() == expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    CHECK(arrived[i] == expected[i]);
  check_nothing_else_in(folder);
}

TEST_CASE("nasty texts are shown and never run, in and outside branches") {
  const TempFolder folder("echo");
  ConsoleScript script;
  script.add(step::Header{"@echo off"});
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
  script.add(step::IfExists{folder.path(), true, inner, inner})
      .add(step::IfExists{"none", true, inner, inner});
  const std::vector<std::string> once = expected;
  expected.insert(expected.end(), once.begin(), once.end());
  const std::vector<std::string> shown = split_lines(run_script(script, folder));
  REQUIRE(shown.size() == expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    CHECK_MESSAGE(is_printed(shown[i], expected[i]), shown[i], " for ", expected[i]);
  check_nothing_else_in(folder);
}

TEST_CASE("nasty folders and files are changed to, found and deleted") {
  const TempFolder folder("paths");
  for (const std::string name :
       {"-x", "a b & c", "%PATH%", "$(touch hacked)", "it's `x`", "a;b,c=d", "(x) ^!", "F\xC3\xA4r"}) {
    CAPTURE(name);
    const std::string file = folder.write(name + "/-f " + name, "x");
    ConsoleScript script;
    script.add(step::Header{"@echo off"})
        .add(step::ChangeFolder{folder / name})
        .add(step::ChangeFolder{".."})
        .add(step::ChangeFolder{name});
    auto found = std::make_shared<ConsoleScript>();
    found->add(step::Echo{"echo ", "found " + name}).add(step::Delete{"-f " + name});
    script.add(step::IfExists{"-f " + name, true, found, nullptr});
    CHECK(is_printed(std::string(trim(run_script(script, folder))), "found " + name));
    CHECK_FALSE(file_exists(file));
    check_nothing_else_in(folder);
  }
}

TEST_CASE("a script ends with the status of its last command, pause or not") {
  const TempFolder folder;
  for (const bool with_exit : {false, true}) {
    ConsoleScript script;
    script.add(step::Run{{platform::testing::child_path(), {word("exit"), word("3")}}}).add(step::Pause{});
    if (with_exit) script.add(step::Exit{5, true});
    const std::string path = folder / (batch ? "run.cmd" : "run.sh");
    REQUIRE(write_script(script, native_dialect, path).ok());
    platform::ProcessRequest request;
    request.program = batch ? "cmd.exe" : "/bin/sh";
    request.arguments = batch ? std::vector<std::string>{"/d", "/c", path} : std::vector<std::string>{path};
    CHECK(platform::testing::run(request).status == (with_exit ? 5 : 3));
  }
}
