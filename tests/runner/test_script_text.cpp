#include <doctest/doctest.h>

#include <string>

#include "base/text.hpp"
#include "runner/script_text.hpp"

using namespace ferrowen;

TEST_CASE("the log option goes behind a command's own java, and nowhere else") {
  struct Case {
    Dialect dialect;
    const char *before, *after;  // $ stands for "java " with the option
  };
  for (const Case& each :
       {Case{Dialect::shell, "  java -a\njava -b\n", "  $-a\n$-b\n"},
        Case{Dialect::shell, "a && java -x||java -y;java -z & java -w|java -v",
             "a && $-x||$-y;$-z & $-w|$-v"},
        Case{Dialect::batch, "(java -x)\r\n@java -y\r\ncall java -z", "($-x)\r\n@$-y\r\ncall $-z"},
        Case{Dialect::shell, "recall java -x; x call java -x", "recall java -x; x call java -x"},
        Case{Dialect::shell, "myjava -x; javaw -x; cat java x", "myjava -x; javaw -x; cat java x"},
        Case{Dialect::shell, "/bin/java -c \"/java tiles/java \"", "/bin/java -c \"/java tiles/java \""},
        Case{Dialect::shell, "x '\njava -a\n' \"\njava -b\"\njava -c", "x '\njava -a\n' \"\njava -b\"\n$-c"},
        Case{Dialect::shell, "# don't\njava -a # it's\njava -b", "# don't\n$-a # it's\n$-b"},
        Case{Dialect::shell, "x \\\" ; exec time java -a", "x \\\" ; exec time $-a"},
        Case{Dialect::batch, "echo \"open\r\njava -a", "echo \"open\r\n$-a"},
        Case{Dialect::batch, "echo ^\" & java -a", "echo ^\" & $-a"}}) {
    CHECK(add_log_option(each.before, "/p q/l.properties", each.dialect).value ==
          replace_all(each.after, "$", "java  -Dlog.config=\"/p q/l.properties\" "));
  }
  CHECK_FALSE(add_log_option("java ", "a\"b", Dialect::batch).ok());
}

TEST_CASE("what stands inside quotes stays and is not found") {
  CHECK(backslashes_outside_quotes("cd /d \"a/b\"\r\nx c:/y/z -c=\"d/e\" f/g", Dialect::batch) ==
        "cd /d \"a/b\"\r\nx c:\\y\\z -c=\"d/e\" f\\g");
  CHECK(collapse_outside_quotes("a  'b  \"' c\\   d  \"\\\"  \"", Dialect::shell) ==
        "a 'b  \"' c\\  d \"\\\"  \"");
  CHECK(collapse_outside_quotes("a  b\\", Dialect::shell) == "a b\\");
  CHECK(collapse_outside_quotes("a  b^", Dialect::batch) == "a b^");
  CHECK(map_name_option("x --d=\"a --mapname=1\" --mapname=\"12 34\"\r\n", Dialect::batch) == "12 34");
}
