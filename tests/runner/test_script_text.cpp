#include <doctest/doctest.h>

#include <string>

#include "runner/script_text.hpp"

using namespace ferrowen;

TEST_CASE("the log option goes behind a command's own java, and nowhere else") {
  const std::string option = "java  -Dlog.config=\"/p q/l.properties\" ";
  struct Case {
    const char* before;
    const char* after;  // # stands for "java " with the option
    Dialect dialect;
  };
  const Case cases[] = {
      {"java -jar a.jar", "#-jar a.jar", Dialect::shell},
      {"  java -a\njava -b\n", "  #-a\n#-b\n", Dialect::shell},
      {"java -a\r\njava -b\r\n", "#-a\r\n#-b\r\n", Dialect::batch},
      {"a && java -x||java -y;java -z & java -w|java -v", "a && #-x||#-y;#-z & #-w|#-v", Dialect::shell},
      {"(java -x)", "(#-x)", Dialect::batch},
      {"@java -x", "@#-x", Dialect::batch},
      {"call java -x", "call #-x", Dialect::batch},
      {"exec time java -x", "exec time #-x", Dialect::shell},
      {"recall java -x; x call java -x", "recall java -x; x call java -x", Dialect::shell},
      {"myjava -x; javaw -x; cat java x", "myjava -x; javaw -x; cat java x", Dialect::shell},
      {"java -c \"/my java tiles/java \"", "#-c \"/my java tiles/java \"", Dialect::shell},
      {"x '\njava -a\n' \"\njava -b\"\njava -c", "x '\njava -a\n' \"\njava -b\"\n#-c", Dialect::shell},
      {"# don't\njava -a # it's\njava -b", "# don't\n#-a # it's\n#-b", Dialect::shell},
      {"x \\\" ; java -a", "x \\\" ; #-a", Dialect::shell},
      {"echo \"open\r\njava -a", "echo \"open\r\n#-a", Dialect::batch},
      {"echo ^\" & java -a", "echo ^\" & #-a", Dialect::batch},
      {"/usr/bin/java -a", "/usr/bin/java -a", Dialect::shell},
  };
  for (const Case& each : cases) {
    CAPTURE(each.before);
    std::string expected = each.after;
    // A "#" that begins a comment in the case is followed by a blank.
    for (std::size_t at = 0; (at = expected.find('#', at)) != std::string::npos;) {
      const bool comment = expected.compare(at, 2, "# ") == 0;
      if (!comment) expected.replace(at, 1, option);
      at += comment ? 1 : option.size();
    }
    CHECK(add_log_option(each.before, "/p q/l.properties", each.dialect).value == expected);
  }
  CHECK_FALSE(add_log_option("java ", "a\"b", Dialect::batch).ok());
}

TEST_CASE("slashes and blanks change outside quotes only") {
  CHECK(backslashes_outside_quotes("cd /d \"a/b\"\r\nx c:/y/z -c=\"d/e\" f/g", Dialect::batch) ==
        "cd /d \"a/b\"\r\nx c:\\y\\z -c=\"d/e\" f\\g");
  CHECK(collapse_outside_quotes("a  b   \"c  d\"  e\n  f", Dialect::batch) == "a b \"c  d\" e\n f");
  CHECK(collapse_outside_quotes("a  'b  \"' c\\   d  \"\\\"  \"", Dialect::shell) ==
        "a 'b  \"' c\\  d \"\\\"  \"");
}

TEST_CASE("map name and options are found outside quotes") {
  CHECK(map_name_option("x --overview-mapname=\"My Map\" --mapname=63240001 --b", Dialect::shell) ==
        "63240001");
  CHECK(map_name_option("x --d=\"a --mapname=1\" --mapname=\"12 34\"\r\n", Dialect::batch) == "12 34");
  CHECK(map_name_option("--mapname=", Dialect::batch) == "");
  CHECK_FALSE(map_name_option("x --overview-mapname=1 \" --mapname=2\"", Dialect::shell));

  CHECK(has_option("x --latin1", "--latin", Dialect::shell));
  CHECK_FALSE(has_option("x --name=\"uses --latin1\" --no--latin1", "--latin", Dialect::shell));
}

TEST_CASE("code 250 is a blank, a letter that is not it stays") {
  CHECK(blanks_for_code_250("My\xFAMap \xC3\xBA\xFA") == "My Map \xC3\xBA ");
}
