#include "pipeline/installer.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

constexpr const char* script_text =
    "!define DEFAULT_DIR \"C:\\Garmin\\Maps\\My Map\"\n!define INSTALLER_NAME \"My Map\"\n"
    "!define TYPNAME \"xlook me.typ\"\n  File \"xlook me.typ\"\n  Delete \"$INSTDIR\\xlook me.typ\"\n";

struct Installing : test::StandIn {
  Installing() {
    set("makensis={home}/makensis; use-typ=1; typ={home}/look me.typ");
    home.write("out/osmmap.nsi", script_text);
  }
  // A builder that does what these lines of the shell do.
  void builder(const std::string& lines) const {
    const std::string path = home.write("makensis", "#!/bin/sh\n" + lines + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
  InstallerResult run() { return creatensis(workspace, prompts, progress); }
  [[nodiscard]] std::string exe() const { return platform::join(home / "out", "My Map.exe"); }
};

}  // namespace

TEST_CASE("what the script says about its installer") {
  const NsisScript script = parse_nsis_script(script_text);
  CHECK(script.installer_name == "My Map");
  CHECK(script.typs == Texts{"xlook me.typ"});
  const std::vector<std::pair<const char*, Texts>> cases = {
      {"File a.TYP\r\nFile \"b.typ\"\r\nFile \"A.typ\"", {"a.TYP", "b.typ"}},
      {"File \"x~tmp.typ\"", {}},
      {"File \"$INSTDIR\\sub/c.typ\"", {"c.typ"}},
      {".typ", {}},
      {"", {}}};
  for (const auto& [text, typs] : cases)
    CHECK(parse_nsis_script(text).typs == typs);
  CHECK(parse_nsis_script("!Define Installer_Name plain\n").installer_name == "plain");
  CHECK(parse_nsis_script("!define INSTALLER_NAME \"a\"b\"").installer_name == "a\"b");
  for (const char* name : {"", " ", "a/b", "a\\b", "a:b", "a$b", "a\"b", "a\tb"})
    CHECK_FALSE(is_installer_name(name));
  CHECK(is_installer_name("M\u00f6\u00f0ru & (1) 100%"));
  CHECK(same_typ_name("xMine.typ", "mine.TYP"));
  CHECK(same_typ_name("xylo.typ", "XYLO.typ"));
  CHECK_FALSE(same_typ_name("xxmine.typ", "mine.typ"));
}

TEST_CASE("the TYP of the installer and that of the map") {
  const MessageTable messages;
  CHECK(typ_note({"n", {"xmine.typ"}}, "Mine.typ", messages).empty());
  CHECK(typ_note({"n", {}}, "", messages).empty());
  CHECK(typ_note({"n", {}}, "mine.typ", messages) == "Cannot find mine.typ TYP.");
  CHECK(typ_note({"n", {"other.typ"}}, "mine.typ", messages) ==
        "Using TYP file : other.typ\r\nCannot find mine.typ TYP.");
  CHECK(typ_note({"n", {"other.typ"}}, "", messages).ends_with(" TYP."));
}

TEST_CASE("runnsis") {
  InstallerPlan plan{"C:\\NSIS\\makensis.exe", "C:\\out\\a 100%.nsi", "C:\\out\\My Map.exe", "", true};
  const std::string before =
      "echo off\r\n\"C:\\NSIS\\makensis.exe\" \"C:\\out\\a 100%%.nsi\"\r\necho -\r\necho -\r\n"
      "echo File has been created\r\necho -  C:\\out\\My Map.exe\r\necho -\r\n";
  CHECK(render(installer_run(plan, Dialect::batch), Dialect::batch).value == before + "pause\r\nexit 0\r\n");
  plan.pause = false;
  CHECK(render(installer_run(plan, Dialect::batch), Dialect::batch).value == before + "exit 0\r\n");
  plan = {"/bin/makensis", "/o/$(x) \".nsi", "/o/x.exe", "CP1252", false};
  CHECK(contains(render(installer_run(plan, Dialect::shell), Dialect::shell).value,
                 "\"/bin/makensis\" -INPUTCHARSET CP1252 \"/o/\\$(x) \\\".nsi\"\n"));
  CHECK_FALSE(render(installer_run(plan, Dialect::batch), Dialect::batch).ok());
  CHECK(nsis_charset("plain", Dialect::shell).empty());
  CHECK(nsis_charset("M\u00f6", Dialect::shell).empty());
  CHECK(nsis_charset("M\xf6", Dialect::shell) == "CP1252");
  CHECK(nsis_charset("M\u00f6", Dialect::batch) == "UTF8");
  CHECK(nsis_charset("M\xf6", Dialect::batch).empty());
}

TEST_CASE("the checks before an installer is made write no script") {
  Installing made;
  std::string told;
  SUBCASE("no builder") {
    made.workspace.settings.makensis.clear();
    told = "Please locate makensis.exe in settings. Download from NSIS site";
  }
  SUBCASE("no script") {
    made.builder("exit 0");
    REQUIRE(remove_file(made.home / "out/osmmap.nsi").ok());
    told = "Cannot find a nsi file in output folder";
  }
  SUBCASE("a name that leads elsewhere") {
    made.builder("exit 0");
    made.home.write("out/osmmap.nsi", "!define INSTALLER_NAME \"../a\"");
    told = platform::join(made.home / "out", "osmmap.nsi") + ": '../a' cannot be the name of an installer.";
  }
  CHECK(made.run().result == StageResult::stopped);
  REQUIRE(made.prompts.tells().size() == 1);
  CHECK(made.prompts.tells().front().starts_with(told));
  CHECK(list_files(made.home.path(), {".bat", ".sh"}).empty());
}

#ifndef _WIN32
TEST_CASE("the installer is judged by its file, and an older one comes back") {
  Installing made;
  const std::string older = made.home.write("out/My Map.exe", "older");
  SUBCASE("made") {
    made.builder("printf new > \"$(dirname \"$1\")/My Map.exe\"");
    CHECK(made.run().path == made.exe());
    CHECK(read_whole_file(older) == "new");
    CHECK(made.prompts.tells() == Texts{"Creating .exe in OUTPUT DIR\r\nThis may take a while...\r\n"
                                        "When finished check your output folder."});
  }
  SUBCASE("a script runs: no key is waited for; what is told is for its report") {
    made.builder("printf new > \"$(dirname \"$1\")/My Map.exe\"");
    made.workspace.script_running = true;
    CHECK(made.run().result == StageResult::done);
    CHECK(made.prompts.tells().size() == 1);
    CHECK_FALSE(contains(read_whole_file(made.home / "runnsis.sh"), "Press Enter"));
  }
  SUBCASE("refused, whatever the exit status") {
    made.builder("echo 'File: \"x.img\" -> no files found.' >&2; exit 0");
    CHECK(made.run().result == StageResult::failed);
    CHECK(read_whole_file(older) == "older");
    CHECK(made.prompts.tells().back() ==
          "No files created. Check for errors.\r\nFile: \"x.img\" -> no files found.");
  }
  SUBCASE("stopped by the person") {
    made.builder("printf half > \"$(dirname \"$1\")/My Map.exe\"; sleep 60");
    made.progress.stop_when = [&] { return read_whole_file(made.exe()) == "half"; };
    CHECK(made.run().result == StageResult::cancelled);
    CHECK(read_whole_file(older) == "older");
  }
  CHECK(list_files(made.home / "out", {".before"}).empty());
}

TEST_CASE("of several scripts the first is taken, unless one belongs to the map just built") {
  Installing made;
  made.builder("printf '%s' \"$1\" > \"$(dirname \"$1\")/My Map.exe\"");
  made.home.write("out/another.nsi", script_text);
  std::string taken = "another.nsi";
  SUBCASE("first") {}
  SUBCASE("built") {
    made.workspace.built_files = {made.home / "out/1.img", made.home / "out/osmmap.nsi"};
    taken = "osmmap.nsi";
  }
  CHECK(made.run().result == StageResult::done);
  CHECK(read_whole_file(made.exe()) == platform::join(made.home / "out", taken));
  CHECK(made.prompts.tells().front() ==
        "Found more than one nsi file in output folder.\r\nWill select:" + taken);
}
#endif
