#include <doctest/doctest.h>

#include "app/program_folder.hpp"
#include "app/version.hpp"
#include "base/files.hpp"
#include "cli/command_line.hpp"
#include "cli/session.hpp"
#include "cli_run.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

TEST_CASE("wrong usage ends with 2 and a reason on the error stream, help goes to standard output") {
  for (const char* line : {"nonsense", "settings", "settings set", "split", "build --no-such-option",
                           "build --name", "build --contours maybe", "build a.pbf b.pbf", "tiles build"}) {
    const CliResult result = run_cli(words(line));
    CHECK_MESSAGE(result.status == 2, line);
    CHECK_FALSE(result.error.empty());
    CHECK(result.output.empty());
  }
  CHECK(run_cli(words("settings --yes bakup"))
            .told(2, "Unknown command 'bakup'. Did you mean backup? 'ferrowen settings --help' lists"));
  CHECK(run_cli(words("build --name --print")).told(2, "write --name=--print."));
  CHECK(run_cli({}).status == 2);
  CHECK(run_cli(words("build --no-such-option --json")).json().at("exit_status") == 2);
  CHECK(run_cli({"--version"}).output == std::string("ferrowen ") + version_text + "\n");
  for (const char* line : {"--help", "build --help", "settings set -h"}) {
    const CliResult help = run_cli(words(line));
    CHECK(help.status == 0);
    CHECK(contains(help.output, "--home"));
    CHECK(help.error.empty());
  }
}

TEST_CASE("odd values and options for mkgmap that look like ours arrive as they are") {
  const auto build = [](const Arguments& arguments) {
    const ParsedCommandLine parsed = parse_command_line(arguments);
    REQUIRE(parsed.line);
    return std::get<BuildArguments>(parsed.line->command);
  };
  const BuildArguments arguments =
      build({"build", "--option", "--unicode", "in.pbf", "--option=--x=y z", "--option", "--json", "--option",
             "[a,b]", "--description", "", "--name", "-- 100% {x} \"y\"", "--country=--print"});
  CHECK(arguments.options == Arguments{"--unicode", "--x=y z", "--json", "[a,b]"});
  CHECK(arguments.input == "in.pbf");
  CHECK(arguments.description == "");
  CHECK(arguments.country == "--print");
  CHECK(arguments.name == "-- 100% {x} \"y\"");
  CHECK(build(words("build tiles")).input == "tiles");
  CHECK(build(words("build -- -x.pbf")).input == "-x.pbf");
}

TEST_CASE("one writing command at a time, in a program folder that can be used") {
  const TempFolder home;
  REQUIRE(make_folder(home / "system").ok());
  platform::InstanceLock lock;
  REQUIRE(lock.acquire(ProgramFolder(home.path()) / file_name::lock) == platform::InstanceLock::Result::held);
  const std::string no_folder = platform::join(home.write("file", "x"), "home");
  for (const char* line : {"settings set fid=1", "settings reset --yes", "split a.pbf", "build a.pbf"}) {
    CHECK(run_cli_in(home.path(), words(line)).told(3, "Application is already running.\n"));
    CHECK(run_cli_in(no_folder, words(line)).told(2, no_folder));
  }
  CHECK(run_cli_in(home.path(), {"settings", "get", "fid"}).status == 0);
  CHECK(run_cli_in(home.path(), {"tiles"}).status == 0);
}

TEST_CASE("input that cannot be read ends with 2 and is not remembered") {
  const TempFolder home;
  for (const char* command : {"split", "build"})
    CHECK(run_cli_in(home.path(), {command, home.path()}).told(2, home.path()));
  CHECK(setting(home.path(), "input") != home.path());
}

TEST_CASE("--json is one object of valid UTF-8") {
  const TempFolder home;
  const nlohmann::json object = run_cli_in(home.path(), {"settings", "reset", "--json"}).json();
  CHECK(object.at("result") == "stopped");
  CHECK(object.at("exit_status") == 3);
  CHECK(object.at("messages").at(0).at("answer") == "no");
  const std::string text =
      json_text(json_object("done", ExitStatus::done, {{"bad \xff\xc3", Icon::warning, {}, ""}}));
  CHECK(is_valid_utf8(text));
  CHECK(nlohmann::json::parse(text).at("messages").at(0).at("icon") == "warning");
}

TEST_CASE("a result that cannot be written is a failed run") {
  const TempFolder home;
  std::istringstream input;
  std::ostringstream output;
  std::ostringstream error;
  output.setstate(std::ios::badbit);
  Streams streams{input, output, error};
  CHECK(run_ferrowen({"--home", home.path(), "settings", "show"}, streams) == 1);
  CHECK(contains(error.str(), "standard output"));
}

}  // namespace ferrowen::test
