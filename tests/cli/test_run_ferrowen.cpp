#include <doctest/doctest.h>

#include "app/program_folder.hpp"
#include "app/version.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/command_line.hpp"
#include "cli/session.hpp"
#include "cli_run.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

TEST_CASE("wrong usage ends with 2 and a reason on the error stream") {
  using Arguments = std::vector<std::string>;
  for (const Arguments& arguments : {Arguments{},
                                     {"nonsense"},
                                     {"settings"},
                                     {"settings", "get"},
                                     {"settings", "set"},
                                     {"split"},
                                     {"build", "--no-such-option"},
                                     {"build", "--contours", "maybe"},
                                     {"build", "a.pbf", "b.pbf"},
                                     {"build", "--name"},
                                     {"tiles", "build"}}) {
    const CliResult result = run_cli(arguments);
    CAPTURE(join_texts(arguments, " "));
    CHECK(result.status == 2);
    CHECK_FALSE(result.error.empty());
    CHECK(result.output.empty());
  }
  const nlohmann::json object = run_cli({"build", "--no-such-option", "--json"}).json();
  CHECK(object.at("exit_status") == 2);
  CHECK(object.at("messages").size() == 1);
}

TEST_CASE("help and version go to standard output") {
  const CliResult version = run_cli({"--version"});
  CHECK(version.status == 0);
  CHECK(version.output == std::string("ferrowen ") + version_text + "\n");
  CHECK(run_cli({"tiles", "--version"}).output == version.output);
  using Arguments = std::vector<std::string>;
  for (const Arguments& arguments : {Arguments{"--help"}, {"build", "--help"}, {"settings", "set", "-h"}}) {
    const CliResult help = run_cli(arguments);
    CHECK(help.status == 0);
    CHECK(contains(help.output, "--home"));
    CHECK(help.error.empty());
  }
}

TEST_CASE("values of options") {
  const auto build = [](const std::vector<std::string>& arguments) {
    const ParsedCommandLine parsed = parse_command_line(arguments);
    CAPTURE(parsed.error);
    REQUIRE(parsed.line);
    return std::get<BuildArguments>(parsed.line->command);
  };
  SUBCASE("options for mkgmap may look like ours") {
    const BuildArguments arguments = build({"build", "--option", "--unicode", "in.pbf", "--option=--x=y z",
                                            "--option", "--json", "--option", "[a,b]"});
    CHECK(arguments.options == std::vector<std::string>{"--unicode", "--x=y z", "--json", "[a,b]"});
    CHECK(arguments.input == "in.pbf");
  }
  SUBCASE("blank and odd values arrive as they are") {
    const BuildArguments arguments =
        build({"build", "--description", "", "--name", "-- 100% {x} \"y\"", "--fid=auto"});
    CHECK(arguments.description == "");
    CHECK(arguments.name == "-- 100% {x} \"y\"");
    CHECK(arguments.fid == "auto");
    CHECK_FALSE(arguments.input);
  }
  SUBCASE("an input may be named like a command, or like an option behind --") {
    CHECK(build({"build", "tiles"}).input == "tiles");
    CHECK(build({"build", "--", "-x.pbf"}).input == "-x.pbf");
    CHECK(build({"build", "/files"}).input == "/files");
  }
}

TEST_CASE("a program folder that cannot be used ends with 2") {
  const TempFolder folder;
  const std::string home = platform::join(folder.write("file", "x"), "home");
  using Arguments = std::vector<std::string>;
  for (const Arguments& arguments : {Arguments{"settings", "show"},
                                     {"settings", "set", "fid=1"},
                                     {"tiles"},
                                     {"split", "a.pbf"},
                                     {"build"}}) {
    const CliResult result = run_cli_in(home, arguments);
    CAPTURE(arguments.front());
    CHECK(result.status == 2);
    CHECK(contains(result.error, home));
  }
}

TEST_CASE("one writing command at a time in a program folder") {
  const TempFolder home;
  REQUIRE(make_folder(home / "system").ok());
  platform::InstanceLock lock;
  REQUIRE(lock.acquire(ProgramFolder(home.path()) / file_name::lock) == platform::InstanceLock::Result::held);
  using Arguments = std::vector<std::string>;
  for (const Arguments& arguments : {Arguments{"settings", "set", "fid=1"},
                                     {"settings", "reset", "--yes"},
                                     {"split", "a.pbf"},
                                     {"build", "a.pbf"}}) {
    const CliResult result = run_cli_in(home.path(), arguments);
    CHECK(result.status == 3);
    CHECK(result.error == "Application is already running.\n");
  }
  CHECK(run_cli_in(home.path(), {"settings", "get", "fid"}).status == 0);
  CHECK(run_cli_in(home.path(), {"tiles"}).status == 0);
}

TEST_CASE("input that cannot be read ends with 2 and is not remembered") {
  const TempFolder home;
  struct Case {
    std::string path, said;
  };
  for (const Case& one :
       {Case{home / "none.pbf", "Cannot find file "}, Case{home.path(), ""},
        Case{home.write("empty.pbf", ""), ""}, Case{home.write("text.osm", "no map"), ""}}) {
    for (const char* command : {"split", "build"}) {
      const CliResult result = run_cli_in(home.path(), {command, one.path});
      CAPTURE(one.path);
      CHECK(result.status == 2);
      CHECK(contains(result.error, one.said + one.path));
    }
  }
  CHECK(run_cli_in(home.path(), {"build"}).status == 2);
  CHECK(setting(home.path(), "input").empty());
}

TEST_CASE("--json is one object of valid UTF-8") {
  const TempFolder home;
  const CliResult reset = run_cli_in(home.path(), {"settings", "reset", "--json"});
  const nlohmann::json object = reset.json();
  CHECK(object.at("result") == "stopped");
  CHECK(object.at("exit_status") == 3);
  CHECK(object.at("messages").at(0).at("answer") == "no");
  CHECK(object.at("messages").at(0).at("text") == "This will remove all previous settings\n\nAre you sure?");
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
