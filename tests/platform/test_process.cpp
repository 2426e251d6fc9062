#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>

#include "child_program.hpp"
#include "platform/process.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

namespace {

#ifdef _WIN32
constexpr bool on_windows = true;
#else
constexpr bool on_windows = false;
#endif

class Stopwatch {
 public:
  [[nodiscard]] long milliseconds() const {
    const auto passed = std::chrono::steady_clock::now() - m_start;
    return static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count());
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

std::vector<std::string> split_at_nul(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\0', at);
    parts.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

}  // namespace

TEST_CASE("a program that does not exist is not started and the reason is told") {
  struct Case {
    const char* what;
    std::string program;
    std::string command_line;
    std::string folder;
  };
  const Case cases[] = {
      {"a bare name", "ferrowen-no-such-program", "", ""},
      {"a path", join(folder_of(child_path()), "no such program"), "", ""},
      {"a command line", "", "ferrowen-no-such-program --version", ""},
      {"an empty command line", "", "  ", ""},
      {"a folder", folder_of(child_path()), "", ""},
      {"a missing working folder", child_path(), "", join(folder_of(child_path()), "no such folder")},
  };
  for (const Case& each : cases) {
    CAPTURE(each.what);
    ProcessRequest request;
    request.program = each.program;
    request.command_line = each.command_line;
    request.folder = each.folder;
    ChildProcess child;
    CHECK(child.start(request) == StartResult::not_started);
    CHECK_FALSE(child.error().empty());
    CHECK(child.id() == 0);
    CHECK_FALSE(child.poll_exit().has_value());
    char byte = 0;
    CHECK(child.read(&byte, 1) == 0);
    child.end_group(0);
  }
}

TEST_CASE("output arrives whole, both streams joined, and the exit status after it") {
  std::string megabyte;
  for (int i = 0; i < 1 << 20; ++i)
    megabyte += static_cast<char>(i % 251);
  struct Case {
    std::vector<std::string> arguments;
    std::string output;
    int status;
  };
  const Case cases[] = {
      {{"exit", "0"}, "", 0},
      {{"exit", "7"}, "", 7},
      {{"print", "0"}, "", 0},
      {{"print", "1000"}, megabyte.substr(0, 1000), 0},
      {{"print", "1048576"}, megabyte, 0},
      {{"pieces", "3", "30"}, "piece 0\npiece 1\npiece 2\n", 0},
      {{"both"}, "out err out", 0},
      {{"stdin"}, "0", 0},
      {{"close", "200"}, "before", 7},
  };
  for (const Case& each : cases) {
    CAPTURE(each.arguments.front());
    const Outcome outcome = run(child_request(each.arguments));
    CHECK(outcome.started == StartResult::started);
    CHECK((outcome.output == each.output));
    CHECK(outcome.status == each.status);
  }
}

TEST_CASE("waiting for output and polling for the end do not block") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"sleep", "400"})) == StartResult::started);
  const Stopwatch watch;
  CHECK_FALSE(child.wait_readable(0));
  CHECK_FALSE(child.wait_readable(20));
  CHECK_FALSE(child.poll_exit().has_value());
  CHECK(watch.milliseconds() < 350);
  CHECK(child.wait_readable(10000));
  CHECK(child.wait() == 0);
  CHECK(child.poll_exit() == 0);
}

TEST_CASE("a child writes on into a closed pipe and ends of itself") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"pieces", "3", "50"})) == StartResult::started);
  REQUIRE(reads(child, "piece 0\n"));
  child.close_output();
  char byte = 0;
  CHECK(child.read(&byte, 1) == 0);
  const int status = child.wait();
  CHECK(status == (on_windows ? 65 : 128 + 13));
}

TEST_CASE("the end of the child is seen while a grandchild still holds the output") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"grandchild", "15000", "leave"})) == StartResult::started);
  const Stopwatch watch;
  CHECK(child.wait() == 0);
  CHECK(reads(child, "ready"));
  CHECK_FALSE(child.wait_readable(100));
  child.end_group(2000);
  CHECK(read_all(child, 5000) == "");
  CHECK(watch.milliseconds() < 10000);
  CHECK(child.poll_exit() == 0);
}

TEST_CASE("ending the group reaches everybody in it and may be repeated") {
  struct Case {
    std::vector<std::string> arguments;
    std::string first_output;
    int grace;
  };
  const Case cases[] = {
      {{"sleep", "15000"}, "", 2000},
      {{"grandchild", "15000", "stay"}, "ready", 2000},
      {{"stubborn", "15000"}, "ready", 200},
      {{"pieces", "1000", "15"}, "piece 0\n", 2000},
  };
  for (const Case& each : cases) {
    CAPTURE(each.arguments.front());
    ChildProcess child;
    REQUIRE(child.start(child_request(each.arguments)) == StartResult::started);
    REQUIRE(reads(child, each.first_output));
    const Stopwatch watch;
    child.end_group(each.grace);
    child.end_group(each.grace);
    CHECK(watch.milliseconds() < 10000);
    // The end of the output proves that nobody is left who holds it.
    CHECK(read_all(child, 5000).find("(no end)") == std::string::npos);
    REQUIRE(child.poll_exit().has_value());
    CHECK(child.wait() > 128);
  }
}

TEST_CASE("a child outlives its object, and an object can start another") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"pieces", "2", "50"})) == StartResult::started);
  ChildProcess moved = std::move(child);
  CHECK(read_all(moved) == "piece 0\npiece 1\n");
  REQUIRE(moved.start(child_request({"exit", "3"})) == StartResult::started);
  CHECK(moved.wait() == 3);
  CHECK(moved.start({}) == StartResult::not_started);
}

TEST_CASE("arguments arrive unchanged") {
  std::vector<std::string> arguments = {"plain",
                                        "two words",
                                        "",
                                        " ",
                                        "\"",
                                        "say \"hi\"",
                                        "it's",
                                        "%",
                                        "%PATH%",
                                        "100%",
                                        "&",
                                        "a&b",
                                        "|",
                                        "<>",
                                        "^",
                                        "!",
                                        "$(touch x)",
                                        "`id`",
                                        "$HOME",
                                        ";",
                                        "*",
                                        "?.cpp",
                                        "~",
                                        "#",
                                        "(x)",
                                        "C:\\dir\\",
                                        "C:\\a b\\",
                                        "\\",
                                        "\\\\",
                                        "\\\"",
                                        R"(a\\"b c\\)",
                                        "tab\there",
                                        "--opt=\"a b\"",
                                        "-",
                                        "\xC3\xBC\xC3\xB6 \xC3\x9F",
                                        "\xE6\x97\xA5\xE6\x9C\xAC",
                                        "\xC5\x82"};
  if (!on_windows) {
    arguments.insert(arguments.end(), {"line\nbreak", "\r\n", "\xFF not UTF-8", std::string(100000, 'x')});
  }
  std::vector<std::string> words = {"args"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::vector<std::string> arrived = split_at_nul(run(child_request(words)).output);
  REQUIRE(arrived.size() == arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i)
    CHECK(arrived[i] == arguments[i]);

  ChildProcess child;
  CHECK(child.start(child_request({"args", std::string("a\0b", 3)})) == StartResult::not_started);
}

TEST_CASE("a command line is taken apart by the system's rules") {
  struct Case {
    const char* line;
    std::vector<std::string> words;
  };
  const std::vector<Case> common = {
      {"", {}},
      {"  \t ", {}},
      {"java -version", {"java", "-version"}},
      {"  java   -jar  x.jar ", {"java", "-jar", "x.jar"}},
      {R"(java -jar "a b.jar" "")", {"java", "-jar", "a b.jar", ""}},
      {R"(x --opt="a b" "say \"hi\"")", {"x", "--opt=a b", "say \"hi\""}},
      {"x %PATH% $HOME $(id) *", {"x", "%PATH%", "$HOME", "$(id)", "*"}},
      {R"(x "C:\a b\c")", {"x", "C:\\a b\\c"}},
      {"\xC3\xBC \"\xE6\x97\xA5 x\"", {"\xC3\xBC", "\xE6\x97\xA5 x"}},
  };
  const std::vector<Case> posix = {
      {R"(x 'a "b" \c' d'e f'g)", {"x", R"(a "b" \c)", "de fg"}},
      {R"(x a\ b \"q\" "a\\b" end\)", {"x", "a b", "\"q\"", "a\\b", "end\\"}},
      {"x \"open end", {"x", "open end"}},
  };
  const std::vector<Case> windows = {
      {R"(x C:\a\b "C:\a b\\" it's 'a b')", {"x", "C:\\a\\b", "C:\\a b\\", "it's", "'a", "b'"}},
  };
  for (const auto* cases : {&common, on_windows ? &windows : &posix})
    for (const Case& each : *cases) {
      CAPTURE(each.line);
      CHECK(split_command_line(each.line) == each.words);
    }
  ProcessRequest request;
  request.command_line = "\"" + child_path() + R"(" args "a  b" c)";
  CHECK(split_at_nul(run(request).output) == std::vector<std::string>{"a  b", "c"});
}

TEST_CASE("environment and working folder are the child's own") {
  const TestFolder folder("process");
  ProcessRequest request = child_request({"env", "FERROWEN_TEST_VARIABLE"});
  CHECK(run(request).output == "(not set)");
  request.environment = {{"FERROWEN_TEST_VARIABLE", "first"}, {"FERROWEN_TEST_VARIABLE", "\xC3\xBC = 1"}};
  CHECK(run(request).output == "\xC3\xBC = 1");
  request.arguments = {"env", "PATH"};
  CHECK(run(request).output == environment("PATH").value_or("?"));

  request = child_request({"folder"});
  request.folder = folder.path();
  CHECK(std::filesystem::equivalent(file_system_path(run(request).output), file_system_path(folder.path())));

  // A bare name is searched in the PATH that the child will have.
  std::filesystem::copy_file(file_system_path(child_path()), folder.at("ferrowen-other" FERROWEN_TEST_CHILD));
  request = child_request({"exit", "5"});
  request.program = "ferrowen-other" FERROWEN_TEST_CHILD;
  CHECK(run(request).started == StartResult::not_started);
  request.environment = {{"PATH", folder.path()}};
  CHECK(run(request).status == 5);
  // A path without a root counts from the working folder.
  request.environment.clear();
  request.program = join(".", request.program);
  request.folder = folder.path();
  CHECK(run(request).status == 5);
}
