#include "platform/process.hpp"

#include <doctest/doctest.h>

#include <tuple>

#include "child_program.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;
using ferrowen::test::TempFolder;
using Texts = std::vector<std::string>;

namespace {

// The parts of a text whose every part ends with the mark.
Texts split_at(const std::string& text, char mark) {
  Texts parts;
  for (std::size_t at = 0; at < text.size(); at += parts.back().size() + 1)
    parts.push_back(text.substr(at, text.find(mark, at) - at));
  return parts;
}

}  // namespace

TEST_CASE("a program that does not exist is not started and the reason is told") {
  const std::string gone = join(folder_of(child_path()), "no such thing");
  const std::pair<const char*, ProcessRequest> cases[] = {
      {"a bare name", request_for("ferrowen-no-such-program")},
      {"a path", request_for(gone)},
      {"a command line", line_request("ferrowen-no-such-program --version")},
      {"an empty command line", line_request("  ")},
      {"a folder", request_for(folder_of(child_path()))},
      {"a missing working folder", request_for(child_path(), {}, gone)},
      {"a NUL in an argument", child_request({"args", std::string("a\0b", 3)})},
  };
  for (const auto& each : cases) {
    CAPTURE(each.first);
    ChildProcess child;
    CHECK(child.start(each.second) == StartResult::not_started);
    CHECK_FALSE(child.error().empty());
    CHECK_FALSE(child.poll_exit().has_value());
    child.end_group(0);
  }
}

TEST_CASE("output arrives whole, both streams joined, and the exit status after it") {
  std::string megabyte;
  for (int i = 0; i < 1 << 20; ++i)
    megabyte += static_cast<char>(i % 251);
  const std::tuple<Texts, std::string, int> cases[] = {
      {{"exit", "7"}, "", 7},
      {{"print", "1048576"}, megabyte, 0},
      {{"pieces", "3", "30"}, "piece 0\npiece 1\npiece 2\n", 0},
      {{"both"}, "out err out", 0},
      {{"stdin"}, "at its end", 0},
  };
  for (const auto& each : cases) {
    const auto& [arguments, output, status] = each;
    CAPTURE(std::get<0>(each).front());
    const Outcome outcome = run(child_request(arguments));
    CHECK((outcome.output == output));
    CHECK(outcome.status == status);
  }
}

TEST_CASE("waiting for output and polling for the end do not block, also when the output ends early") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"close", "300", "400"})) == StartResult::started);
  CHECK_FALSE(child.wait_readable(0));
  CHECK_FALSE(child.wait_readable(20));
  CHECK_FALSE(child.poll_exit().has_value());
  CHECK(read_all(child) == "before");
  CHECK_FALSE(child.poll_exit().has_value());
  CHECK(child.wait() == 7);
  CHECK(child.poll_exit() == 7);
}

TEST_CASE("a child writes on into a closed pipe and ends of itself") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"pieces", "3", "50"})) == StartResult::started);
  REQUIRE(reads(child, "piece 0\n"));
  child.close_output();
  CHECK(child.wait() == (on_windows ? 65 : 128 + 13));
}

TEST_CASE("the end of the child is seen while a grandchild still holds the output") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"grandchild", "15000", "0"})) == StartResult::started);
  CHECK(child.wait() == 0);
  CHECK(reads(child, "ready"));
  CHECK_FALSE(child.wait_readable(100));
  child.end_group(2000);
  CHECK(read_all(child, 5000) == "");
  CHECK(child.poll_exit() == 0);
}

TEST_CASE("ending the group reaches everybody in it and may be repeated") {
  const std::pair<Texts, std::string> cases[] = {
      {{"sleep", "15000"}, ""},
      {{"grandchild", "15000", "15000"}, "ready"},
      {{"pieces", "1000", "15"}, "piece 0\n"},
  };
  ChildProcess child;
  for (const auto& each : cases) {
    CAPTURE(each.first.front());
    REQUIRE(child.start(child_request(each.first)) == StartResult::started);
    REQUIRE(reads(child, each.second));
    child.end_group(2000);
    child.end_group(2000);
    // The end of the output proves that nobody is left who holds it.
    CHECK(read_all(child, 5000).find("(no end)") == std::string::npos);
    CHECK(child.poll_exit().value_or(0) > 128);
  }
}

TEST_CASE("arguments arrive unchanged") {
  Texts words = split_at(R"(args@two words@@ @"@say "hi"@it's@%PATH%@100%@a&b|<>^!@$(touch x)`id`$HOME;@*@)"
                         R"(?.cpp@~@#@(x)@C:\dir\@C:\a b\@\\@\"@a\\"b c\\@--opt="a b"@)",
                         '@');
  words.insert(words.end(), {"tab\there", "\u00fc \u65e5\u0142"});
  if (!on_windows)
    words.insert(words.end(), {"line\nbreak", "\r\n", "\xFF not UTF-8", std::string(100000, 'x')});
  const Texts arrived = split_at(run(child_request(words)).output, '\0');
  CHECK(arrived == Texts(words.begin() + 1, words.end()));
}

TEST_CASE("a command line is taken apart by the system's rules") {
  using Cases = std::vector<std::pair<const char*, Texts>>;
  const Cases common = {
      {"  \t ", {}},
      {"  java   -jar  x.jar ", {"java", "-jar", "x.jar"}},
      {R"(java -jar "a b.jar" "")", {"java", "-jar", "a b.jar", ""}},
      {R"(x --opt="a b" "say \"hi\"")", {"x", "--opt=a b", "say \"hi\""}},
      {"x %PATH% $HOME $(id) *", {"x", "%PATH%", "$HOME", "$(id)", "*"}},
  };
  const Cases posix = {
      {R"(x 'a "b" \c' d'e f'g)", {"x", R"(a "b" \c)", "de fg"}},
      {R"(x a\ b \"q\" "a\\b" end\)", {"x", "a b", "\"q\"", "a\\b", "end\\"}},
  };
  const Cases windows = {
      {R"(x C:\a\b "C:\a b\\" it's 'a b')", {"x", "C:\\a\\b", "C:\\a b\\", "it's", "'a", "b'"}},
  };
  for (const Cases& cases : {common, on_windows ? windows : posix})
    for (const auto& [line, words] : cases)
      CHECK(split_command_line(line) == words);
  CHECK(split_at(run(line_request("\"" + child_path() + R"(" args "a  b" c)")).output, '\0') ==
        Texts{"a  b", "c"});
}

TEST_CASE("a program is looked for where the child will be") {
  const TempFolder folder("pr\u00fcf process");
  // A bare name is searched in the PATH that the child will have, a path without a root from its folder.
  const std::string name = "ferrowen-other" FERROWEN_TEST_CHILD;
  std::filesystem::copy_file(file_system_path(child_path()), file_system_path(folder / name));
  CHECK(run(request_for(name)).started == StartResult::not_started);
  ProcessRequest request = request_for(name, {"exit", "5"});
  request.environment = {{"PATH", folder.path()}};
  CHECK(run(request).status == 5);
  request.environment = {{"PATH", folder / "none"}, {"PATH", folder.path()}};
  CHECK(run(request).status == 5);
  CHECK(run(request_for(join(".", name), {"exit", "5"}, folder.path())).status == 5);
}
