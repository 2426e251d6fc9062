#include <doctest/doctest.h>

#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

TEST_CASE("start-up makes the folders, tells of missing styles and reads the identifier lists") {
  const TempFolder folder("start ü p");
  folder.write("home/mapids.txt", ",13224385,");
  FakePrompts prompts;
  Workspace workspace;
  workspace.folder = ProgramFolder(folder / "home");
  REQUIRE(start_up(workspace, prompts).ok());
  for (const char* name : {"files", "hgt/Europe/3", "backup/args", "plugs"})
    CHECK(folder_exists(workspace.path(name)));
  CHECK(prompts.tells() == std::vector<std::string>{"No styles could be found.Default style will be used"});
  CHECK(workspace.device_map_ids == ",13224385,");
  CHECK(workspace.settings.map_name == "Demo Map");
  CHECK(workspace.settings.clip_folders[0] == workspace.path("files"));

  // A folder that was chosen is no reason for another one.
  workspace.settings.clip_folders = {"", "", "/clips", "", ""};
  workspace.settings.clip_slot = 2;
  REQUIRE(savedata(workspace).ok());
  REQUIRE(start_up(workspace, prompts).ok());
  CHECK(workspace.settings.clip_folders[0].empty());
  CHECK(workspace.settings.clip_slot == 2);
}

TEST_CASE("shipped option sets become the options of a fresh record only") {
  const TempFolder folder;
  folder.write("mkopts", "--x-test\n");
  folder.write("splopts", "--output=o5m\n--no-trim\n");
  FakePrompts prompts;
  Workspace workspace;
  workspace.folder = ProgramFolder(folder.path());
  REQUIRE(start_up(workspace, prompts).ok());
  CHECK(workspace.settings.options_text == "--x-test\r\n");
  CHECK(contains(workspace.settings.splitter_options, "--no-trim"));
  workspace.settings.options_text.clear();
  REQUIRE(savedata(workspace).ok());
  REQUIRE(start_up(workspace, prompts).ok());
  CHECK(workspace.settings.options_text.empty());
}

TEST_CASE("the Java version text") {
  CHECK(java_version_text("openjdk version \"17.0.21\" 2026-11-17\r\nOpenJDK (build 17)\r\n") ==
        "openjdk version 17.0.21 2026-11-17");
  CHECK(java_version_text("Picked up JAVA_TOOL_OPTIONS: -Dx\njava version \"1.8\"\nJava(TM) (Build 25)") ==
        "java version 1.8");
  CHECK(java_version_text("sh: java: not found") == "Java not installed");

  StandIn stand_in("ja va");
  query_java_version(stand_in.workspace, stand_in.prompts, stand_in.progress);
  CHECK(stand_in.workspace.java_version == "openjdk version 17.0.21 2026-11-17");
}

TEST_CASE("a missing mkgmap.jar leads to the backup, or to the settings") {
  StandIn stand_in;
  Workspace& workspace = stand_in.workspace;
  CHECK(check_main_path(workspace, stand_in.prompts) == AfterStartUp::ready);
  workspace.settings.mkgmap_jar.clear();
  CHECK(check_main_path(workspace, stand_in.prompts) == AfterStartUp::ready);
  CHECK(stand_in.prompts.said.empty());
  workspace.settings.mkgmap_jar = "/gone/mkgmap.jar";
  CHECK(check_main_path(workspace, stand_in.prompts) == AfterStartUp::open_settings);
  CHECK(stand_in.prompts.tells().back() == "Cannot find /gone/mkgmap.jar --> Tools");
  stand_in.home.write("backupsettings.mpdat", "");
  CHECK(check_main_path(workspace, stand_in.prompts) == AfterStartUp::offer_restore);
  CHECK(stand_in.prompts.tells().back() == "Cannot find /gone/mkgmap.jar\r\n\r\nAvailable backup:");
}
