#include <doctest/doctest.h>

#include <string>

#include "base/text.hpp"
#include "runner/command.hpp"

using namespace ferrowen;

TEST_CASE("arguments as the two shells read them") {
  struct Case {
    Argument argument;
    const char *batch, *shell;
  };
  for (const Case& each :
       {Case{option("--country-name", "United Kingdom"), "--country-name=\"United Kingdom\"",
             "--country-name=\"United Kingdom\""},
        Case{option("--name", "#1"), "--name=#1", "--name=\"#1\""},
        Case{quoted_option("--description", ""), "--description=\"\"", "--description=\"\""},
        Case{quoted("C:\\my maps\\"), R"("C:\my maps\\")", R"("C:\\my maps\\")"},
        Case{quoted("100%"), "\"100%%\"", "\"100%\""},
        Case{option("-o", "C:\\MAPS~1\\a.osm"), "-o=C:\\MAPS~1\\a.osm", R"(-o="C:\\MAPS~1\\a.osm")"}}) {
    CAPTURE(each.batch);
    CHECK(render_argument(each.argument, Dialect::batch).value == each.batch);
    CHECK(render_argument(each.argument, Dialect::shell).value == each.shell);
  }
}

TEST_CASE("what a shell cannot carry is refused and named") {
  struct Case {
    std::string value, named;
  };
  for (const auto& [value, named] :
       {Case{"5\" of rain", "a double quote"}, Case{"two\nlines", "a line end"},
        Case{"end\x1A", "control character 26"}, Case{std::string("n\0l", 3), "control character 0"}}) {
    for (const Argument& argument : {quoted(value), option("--x", value), word(value)}) {
      const Result<std::string> batch = render_argument(argument, Dialect::batch);
      CHECK(contains(batch.error, named));
      CHECK(contains(batch.error, value));
      CHECK(render_argument(argument, Dialect::shell).ok() == !contains(value, std::string(1, '\0')));
    }
    CHECK_FALSE(render_path(value, Dialect::batch).ok());
  }
  CHECK_FALSE(render_path("", Dialect::shell).ok());
  CHECK(render_path("C:\\", Dialect::batch).value == "\"C:\\\"");  // taken as it is by cd, del and if
}

TEST_CASE("program names") {
  CHECK(render_command({"C:\\my tools\\7z.exe", {}}, Dialect::batch).value == "\"C:\\my tools\\7z.exe\"");
  CHECK(render_command({"A=b", {}}, Dialect::shell).value == "\"A=b\"");  // no assignment
  CHECK(render_command({"@x", {}}, Dialect::batch).value == "\"@x\"");
  CHECK_FALSE(render_command({"", {word("a")}}, Dialect::shell).ok());
}

TEST_CASE("options text as people write it") {
  struct Case {
    const char *text, *rendered;
  };
  for (const auto& [text, rendered] :
       {Case{" --a=1\r\n\t--b\n\n", "x --a=1 --b"},
        Case{R"(--name="My  Map" -c "C:\a b")", R"(x --name="My  Map" -c "C:\a b")"},
        Case{"\"--name=My Map\"", "x --name=\"My Map\""}, Case{"--x=a&b;c", "x --x=\"a&b;c\""},
        Case{"--x=\"\" y", "x --x=\"\" y"}, Case{"--open=\"a b\n--next", "x --open=\"a b\" --next"}})
    CHECK(render_command({"x", parse_arguments(text)}, Dialect::batch).value == rendered);
  CHECK(one_option_per_line("x \"a\\\" --b\" c--d --e=\"d\\\\\" --f") ==
        "x \"a\\\" --b\" c--d \r\n--e=\"d\\\\\" \r\n--f");
}
