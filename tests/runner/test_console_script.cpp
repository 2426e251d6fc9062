#include <doctest/doctest.h>

#include <tuple>

#include <filesystem>
#include <memory>
#include <string>

#include "base/files.hpp"
#include "base/text.hpp"
#include "runner/console_script.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;

namespace {

std::shared_ptr<ConsoleScript> branch(const Step& first) {
  auto script = std::make_shared<ConsoleScript>();
  script->add(first);
  return script;
}

}  // namespace

TEST_CASE("a batch file to the letter") {
  ConsoleScript script;
  script.add(step::Header{"@Echo Off"})
      .add(step::Echo{"@echo. ", "-- Clipping 2 (of 3) Contours --"})
      .add(step::ChangeFolder{"/maps of/50%"})
      .add(step::Run{{"osmconvert", {quoted("a b.osm"), quoted_option("-o", "c.pbf")}}})
      .add(step::IfExists{"c.pbf", true, branch(step::Delete{"c.pbf"}), branch(step::Exit{0, false})})
      .add(step::IfExists{"d.pbf", false, branch(step::Echo{"echo ", "d not included"}), nullptr})
      .add(step::Lines{"java -jar x.jar\r\njava -jar y.jar 2>dos.txt"})
      .add(step::Pause{"PAUSE"})
      .add(step::Exit{});
  CHECK(render(script, Dialect::batch).value == with_crlf(R"(@Echo Off
@echo. -- Clipping 2 ^(of 3^) Contours --
cd /d "/maps of/50%%"
osmconvert "a b.osm" -o="c.pbf"
if exist "c.pbf" (
del "c.pbf"
) else (
exit
)
if not exist "d.pbf" echo d not included
java -jar x.jar
java -jar y.jar 2>dos.txt
PAUSE
exit 0
)"));
}

TEST_CASE("texts that are orders to the interpreter are shown all the same") {
  struct Case {
    step::Echo echo;
    const char* batch;
  };
  for (const Case& each : {Case{{"echo ", "off"}, "echo.off\r\n"}, Case{{"@echo ", " ON"}, "@echo. ON\r\n"},
                           Case{{"echo ", ""}, "echo.\r\n"}, Case{{"echo ", "offer"}, "echo offer\r\n"},
                           Case{{"echo ", "a\nb"}, "echo a\r\necho b\r\n"},
                           Case{{"echo ", "\"a & b\" & c"}, "echo \"a & b\" ^& c\r\n"}}) {
    ConsoleScript script;
    script.add(each.echo);
    CHECK(render(script, Dialect::batch).value == each.batch);
  }
}

TEST_CASE("what cannot be written safely is refused in every step") {
  const test::TempFolder folder;
  const std::string path = folder.write("run.bat", "old");
  for (const Step& one :
       {Step{step::ChangeFolder{"a\"b"}}, Step{step::ChangeFolder{""}}, Step{step::Run{{"", {}}}},
        Step{step::Run{{"x", {quoted("a\nb")}}}}, Step{step::Run{{"x", {quoted(std::string(8200, 'x'))}}}},
        Step{step::Delete{"*.img"}}, Step{step::Delete{""}}, Step{step::Echo{"echo ", "a\x1A del x"}},
        Step{step::IfExists{"a\"b", true, nullptr, nullptr}},
        Step{step::IfExists{"a", true, branch(step::Delete{"b\"c"}), nullptr}},
        Step{step::IfExists{"a", true, nullptr, branch(step::Delete{"b\"c"})}}}) {
    CAPTURE(one.index());
    ConsoleScript script;
    script.add(one);
    CHECK_FALSE(write_script(script, Dialect::batch, path).ok());
  }
  CHECK(read_whole_file(path) == "old");
}

TEST_CASE("batch files are written in the encoding of their shell") {
  const test::TempFolder folder;
  ConsoleScript script;
  script.add(step::Run{{"x", {quoted("F\xC3\xA4r")}}});
  CHECK(write_script(script, Dialect::batch, folder / "run.bat").ok());
  CHECK(read_whole_file(folder / "run.bat") == "x \"F\x84r\"\r\n");
  script.add(step::Echo{"echo ", "\xE6\x97\xA5"});
  CHECK(contains(write_script(script, Dialect::batch, folder / "run.bat").error, "line 2"));
  CHECK_FALSE(write_script(script, Dialect::shell, folder / "missing/run.sh").ok());
}

TEST_CASE("a folder in a variable is quoted where its name means something to the interpreter") {
  const std::tuple<const char*, const char*> rows[] = {
      {"C:\\a b", "set V=C:\\a b\r\ncd /d %V%\r\n"},
      {"C:\\a & b", "set \"V=C:\\a & b\"\r\ncd /d \"%V%\"\r\n"},
      {"C:\\50% (x)", "set \"V=C:\\50%% (x)\"\r\ncd /d \"%V%\"\r\n"}};
  for (const auto& [folder, text] : rows)
    CHECK(render(ConsoleScript().add(step::NamedFolder{"V", folder}), Dialect::batch).value == text);
  CHECK_FALSE(render(ConsoleScript().add(step::NamedFolder{"V", "a\"b"}), Dialect::batch).ok());
}
