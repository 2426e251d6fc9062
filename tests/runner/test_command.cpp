#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "base/text.hpp"
#include "runner/command.hpp"

using namespace ferrowen;

TEST_CASE("arguments as the two shells read them") {
  struct Case {
    Argument argument;
    const char* batch;
    const char* shell;
  };
  const Case cases[] = {
      {word("--route"), "--route", "--route"},
      {word("-Xmx1500m"), "-Xmx1500m", "-Xmx1500m"},
      {word("--x=a&b"), "\"--x=a&b\"", "\"--x=a&b\""},
      {option("--family-id", "1000"), "--family-id=1000", "--family-id=1000"},
      {option("--country-name", "United Kingdom"), "--country-name=\"United Kingdom\"",
       "--country-name=\"United Kingdom\""},
      {option("--name", ""), "--name=", "--name="},
      {option("--name", "Färöer"), "--name=Färöer", "--name=Färöer"},
      {option("--name", "#1"), "--name=#1", "--name=\"#1\""},
      {quoted_option("--output-dir", "/maps"), "--output-dir=\"/maps\"", "--output-dir=\"/maps\""},
      {quoted_option("--description", ""), "--description=\"\"", "--description=\"\""},
      {quoted("C:\\my maps\\"), "\"C:\\my maps\\\\\"", "\"C:\\\\my maps\\\\\""},
      {quoted("100%"), "\"100%%\"", "\"100%\""},
      {option("-o", "C:\\MAPS~1\\a.osm"), "-o=C:\\MAPS~1\\a.osm", "-o=\"C:\\\\MAPS~1\\\\a.osm\""},
      {quoted("$(x) `y`"), "\"$(x) `y`\"", "\"\\$(x) \\`y\\`\""},
      {word(""), "\"\"", "\"\""},
  };
  for (const Case& each : cases) {
    CAPTURE(each.batch);
    CHECK(render_argument(each.argument, Dialect::batch).value == each.batch);
    CHECK(render_argument(each.argument, Dialect::shell).value == each.shell);
  }
}

TEST_CASE("what a shell cannot carry is refused and named") {
  struct Case {
    std::string value;
    bool shell_carries;
    const char* named;
  };
  const Case cases[] = {
      {"5\" of rain", true, "a double quote"},
      {"two\nlines", true, "a line end"},
      {"two\rlines", true, "a line end"},
      {"end\x1A", true, "control character 26"},
      {std::string("n\0l", 3), false, "control character 0"},
  };
  for (const Case& each : cases) {
    for (const Argument& argument : {quoted(each.value), option("--x", each.value), word(each.value)}) {
      const Result<std::string> batch = render_argument(argument, Dialect::batch);
      CHECK(contains(batch.error, each.named));
      CHECK(contains(batch.error, each.value));
      CHECK(render_argument(argument, Dialect::shell).ok() == each.shell_carries);
    }
    CHECK_FALSE(render_path(each.value, Dialect::batch).ok());
  }
  CHECK_FALSE(render_path("", Dialect::shell).ok());
  CHECK(render_path("C:\\", Dialect::batch).value == "\"C:\\\"");  // taken as it is by cd, del and if
}

TEST_CASE("commands on one line") {
  const Command command{"java",
                        {word("-Xmx1500m"), word("-jar"), quoted("/a b/mkgmap.jar"), word("--route")}};
  CHECK(render_command(command, Dialect::shell).value == "java -Xmx1500m -jar \"/a b/mkgmap.jar\" --route");
  CHECK(plain_arguments(command) ==
        std::vector<std::string>{"-Xmx1500m", "-jar", "/a b/mkgmap.jar", "--route"});
  CHECK(render_command({"C:\\my tools\\7z.exe", {}}, Dialect::batch).value == "\"C:\\my tools\\7z.exe\"");
  CHECK(render_command({"A=b", {}}, Dialect::shell).value == "\"A=b\"");  // no assignment
  CHECK(render_command({"@x", {}}, Dialect::batch).value == "\"@x\"");
  CHECK_FALSE(render_command({"", {word("a")}}, Dialect::shell).ok());
  CHECK_FALSE(render_command({"java", {word("a\"b"), word("c")}}, Dialect::batch).ok());
}

TEST_CASE("options text as people write it") {
  struct Case {
    const char* text;
    std::vector<std::string> plain;
    const char* rendered;
  };
  const Case cases[] = {
      {"--route --latin1", {"--route", "--latin1"}, "x --route --latin1"},
      {" --a=1\r\n\t--b\n\n", {"--a=1", "--b"}, "x --a=1 --b"},
      {"--name=\"My  Map\" -c \"C:\\a b\"",
       {"--name=My  Map", "-c", "C:\\a b"},
       "x --name=\"My  Map\" -c \"C:\\a b\""},
      {"\"--name=My Map\"", {"--name=My Map"}, "x --name=\"My Map\""},
      {"--x=a&b;c", {"--x=a&b;c"}, "x --x=\"a&b;c\""},
      {"--x=\"\" y", {"--x=", "y"}, "x --x=\"\" y"},
      {"--open=\"a b\n--next", {"--open=a b", "--next"}, "x --open=\"a b\" --next"},
      {"", {}, "x"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.text);
    const Command command{"x", parse_arguments(each.text)};
    CHECK(plain_arguments(command) == each.plain);
    CHECK(render_command(command, Dialect::batch).value == each.rendered);
  }
}

TEST_CASE("one option per line, but never inside quotes or words") {
  CHECK(one_option_per_line("java -jar m.jar --a=1 --b=\"x --y\" c--d") ==
        "java -jar m.jar \r\n--a=1 \r\n--b=\"x --y\" c--d");
  CHECK(one_option_per_line("x \"a\\\" --b\" --c \"d\\\\\" --e") ==
        "x \"a\\\" --b\" \r\n--c \"d\\\\\" \r\n--e");
}
