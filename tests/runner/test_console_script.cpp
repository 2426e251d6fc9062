#include <doctest/doctest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "base/files.hpp"
#include "base/text.hpp"
#include "runner/console_script.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using ferrowen::test::TempFolder;

namespace {

std::shared_ptr<ConsoleScript> branch(const Step& first) {
  auto script = std::make_shared<ConsoleScript>();
  script->add(first);
  return script;
}

ConsoleScript sample_script() {
  ConsoleScript script;
  auto refused = branch(step::Echo{" @echo ", "Folder Is Protected."});
  refused->add(step::Pause{}).add(step::Exit{0, false});
  script.add(step::Header{"@Echo Off"})
      .add(step::Echo{"@echo. ", "-- Clipping 2 (of 3) Contours --"})
      .add(step::Echo{"@echo[ ", ""})
      .add(step::ChangeFolder{"/maps of/50%"})
      .add(step::Run{{"osmconvert", {quoted("a b.osm"), quoted_option("-o", "c.pbf")}}})
      .add(step::IfExists{"c.pbf", true, branch(step::Echo{"@echo ", "... Folder OK"}), refused})
      .add(step::IfExists{"d.pbf", false, branch(step::Echo{"echo ", "d not included"}), nullptr})
      .add(step::IfExists{"c.pbf", true, branch(step::Delete{"c.pbf"}), nullptr})
      .add(step::Lines{"java -jar x.jar\r\njava -jar y.jar 2>dos.txt"})
      .add(step::Pause{"PAUSE"})
      .add(step::Exit{});
  return script;
}

}  // namespace

TEST_CASE("a batch file to the letter") {
  CHECK(render(sample_script(), Dialect::batch).value ==
        "@Echo Off\r\n"
        "@echo. -- Clipping 2 ^(of 3^) Contours --\r\n"
        "@echo[ \r\n"
        "cd /d \"/maps of/50%%\"\r\n"
        "osmconvert \"a b.osm\" -o=\"c.pbf\"\r\n"
        "if exist \"c.pbf\" (\r\n"
        "@echo ... Folder OK\r\n"
        ") else (\r\n"
        " @echo Folder Is Protected.\r\n"
        "pause\r\n"
        "exit\r\n"
        ")\r\n"
        "if not exist \"d.pbf\" echo d not included\r\n"
        "if exist \"c.pbf\" del \"c.pbf\"\r\n"
        "java -jar x.jar\r\n"
        "java -jar y.jar 2>dos.txt\r\n"
        "PAUSE\r\n"
        "exit 0\r\n");
}

TEST_CASE("the same as a shell script") {
  CHECK(render(sample_script(), Dialect::shell).value ==
        "#!/bin/sh\n"
        "printf '%s\\n' \"-- Clipping 2 (of 3) Contours --\"\n"
        "printf '%s\\n' \"\"\n"
        "cd -- \"/maps of/50%\" || exit 1\n"
        "osmconvert \"a b.osm\" -o=\"c.pbf\"\n"
        "if [ -e \"c.pbf\" ]; then\n"
        "printf '%s\\n' \"... Folder OK\"\n"
        "else\n"
        "printf '%s\\n' \"Folder Is Protected.\"\n"
        "status=$?\n"
        "if [ -t 0 ]; then printf '%s' \"Press Enter to continue . . . \"; read -r answer; fi\n"
        "(exit \"$status\")\n"
        "exit\n"
        "fi\n"
        "if [ ! -e \"d.pbf\" ]; then\n"
        "printf '%s\\n' \"d not included\"\n"
        "fi\n"
        "if [ -e \"c.pbf\" ]; then\n"
        "rm -f -- \"c.pbf\"\n"
        "fi\n"
        "java -jar x.jar\n"
        "java -jar y.jar 2>dos.txt\n"
        "status=$?\n"
        "if [ -t 0 ]; then printf '%s' \"Press Enter to continue . . . \"; read -r answer; fi\n"
        "(exit \"$status\")\n"
        "exit 0\n");
}

TEST_CASE("texts that are orders to the interpreter are shown all the same") {
  struct Case {
    step::Echo echo;
    const char* batch;
  };
  const Case cases[] = {
      {{"echo ", "off"}, "echo.off\r\n"},
      {{"@echo ", " ON"}, "@echo. ON\r\n"},
      {{"echo ", ""}, "echo.\r\n"},
      {{"@echo. ", "off"}, "@echo. off\r\n"},
      {{"echo ", "offer"}, "echo offer\r\n"},
      {{"echo ", "a\nb"}, "echo a\r\necho b\r\n"},
      {{"echo ", "\"a & b\" & c"}, "echo \"a & b\" ^& c\r\n"},
  };
  for (const Case& each : cases) {
    ConsoleScript script;
    script.add(each.echo);
    CHECK(render(script, Dialect::batch).value == each.batch);
  }
}

TEST_CASE("what cannot be written safely is refused in every step") {
  const Step steps[] = {
      step::ChangeFolder{"a\"b"},
      step::ChangeFolder{""},
      step::Run{{"x", {quoted("a\nb")}}},
      step::Run{{"", {}}},
      step::Delete{"*.img"},
      step::Delete{""},
      step::Echo{"echo ", "a\x1A del x"},
      step::IfExists{"a\"b", true, nullptr, nullptr},
      step::IfExists{"a", true, branch(step::Delete{"b\"c"}), nullptr},
      step::IfExists{"a", true, nullptr, branch(step::Delete{"b\"c"})},
      step::Run{{"x", {quoted(std::string(8200, 'x'))}}},
  };
  const TempFolder folder;
  const std::string path = folder.write("run.bat", "old");
  for (const Step& one : steps) {
    CAPTURE(one.index());
    ConsoleScript script;
    script.add(one);
    CHECK_FALSE(write_script(script, Dialect::batch, path).ok());
  }
  CHECK(read_whole_file(path) == "old");
}

TEST_CASE("scripts are written in the encoding of their shell") {
  const TempFolder folder;
  ConsoleScript script;
  script.add(step::Run{{"x", {quoted("F\xC3\xA4r")}}});
  CHECK(write_script(script, Dialect::batch, folder / "run.bat").ok());
  CHECK(read_whole_file(folder / "run.bat") == "x \"F\x84r\"\r\n");
  CHECK(write_script(script, Dialect::shell, folder / "run.sh").ok());
  CHECK(read_whole_file(folder / "run.sh") == "#!/bin/sh\nx \"F\xC3\xA4r\"\n");
#ifndef _WIN32
  const auto modes = std::filesystem::status(platform::file_system_path(folder / "run.sh")).permissions();
  CHECK((modes & std::filesystem::perms::owner_exec) != std::filesystem::perms::none);
#endif
  script.add(step::Echo{"echo ", "\xE6\x97\xA5"});
  CHECK(contains(write_script(script, Dialect::batch, folder / "run.bat").error, "line 2"));
  CHECK_FALSE(write_script(script, Dialect::shell, folder / "missing/run.sh").ok());
}
