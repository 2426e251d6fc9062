#include "app/tool_states.hpp"

#include <doctest/doctest.h>

#include "app/tool_query.hpp"
#include "base/text.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;

TEST_CASE("version lines are found among the rest") {
  struct Case {
    const char *output, *word, *version;
  };
  for (const auto& [output, word, version] :
       {Case{"\nosmconvert 0.8.10\n\nThis program\n", "osmconvert", "osmconvert 0.8.10"},
        Case{"\n7-Zip [64] 26.02 : Copyright (c) 1999\n", "7-Zip", "7-Zip [64] 26.02"},
        Case{"v3.08-3+deb12u1", "v", "v3.08-3+deb12u1"},
        Case{"Picked up JAVA_TOOL_OPTIONS: x\r\nMkgmap version 4905\r\n4905\r\n", "Mkgmap version",
             "Mkgmap version 4905"},
        Case{"very much output\nusage: v\n", "v", ""}, Case{"", "v", ""}})
    CHECK(version_line(output, word) == version);
}

TEST_CASE("each tool is found, missing or another program; only tools of the right name are started") {
  test::StandIn stand("my tools & more");
  stand.home.write("bin/osmconvert", "no program");
  stand.home.write("bin/notepad", "never started");
  stand.set(
      "7z={home}/bin/notepad; makensis={home}/none; osmconvert={home}/bin; contour-tool={home}/bin/notepad");
  struct Case {
    const char* field;
    ToolState state;
    std::string version, problem;
  };
  const auto check = [&](const Case& wanted) {
    CAPTURE(wanted.field);
    const ToolReport report = tool_state(stand.workspace, stand.prompts, stand.progress, wanted.field);
    CHECK(report.state == wanted.state);
    CHECK(report.version == wanted.version);
    CHECK(report.problem == wanted.problem);
  };
  stand.workspace.settings.editor.clear();
  for (const Case& wanted :
       {Case{"java", ToolState::found, "openjdk version 17.0.21 2026-11-17", ""},
        Case{"mkgmap", ToolState::found, "Mkgmap version 4905", ""},
        Case{"splitter", ToolState::found, "splitter 653 compiled 2022-12-27T06:20:39+0000", ""},
        Case{"osmconvert", ToolState::wrong_program, "", "You have selected:\r\nbin"},
        Case{"7z", ToolState::wrong_program, "", "You have selected:\r\nnotepad"},
        Case{"makensis", ToolState::missing, "", "Cannot find " + (stand.home / "none")},
        Case{"contour-tool", ToolState::found, "", ""},
        Case{"editor", ToolState::not_set, "", "Please locate a text editor"}})
    check(wanted);
  stand.set_mode("rubbish");
  stand.home.write("stand-in-mode", "rubbish");
  stand.workspace.settings.splitter_jar.clear();
  stand.workspace.settings.osmconvert = stand.home / "bin/osmconvert";
  CHECK(tool_state(stand.workspace, stand.prompts, stand.progress, "osmconvert").state ==
        ToolState::wrong_program);
  check({"splitter", ToolState::not_set, "", "Please locate splitter.jar in Settings"});
  stand.workspace.settings.java = "/none/java";
  check({"mkgmap", ToolState::found, "", "Please install Java or restart Ferrowen."});
  for (const ToolAdvice& advice : tool_advice())
    CHECK(find_field(advice.field) != nullptr);
}

TEST_CASE("the version query shows its output, and a stop ends it") {
  // A double quote can stand in a name on one of the two systems alone.
  test::StandIn stand(platform::separator == '/' ? "a $(b) \" c" : "a $(b) % c");
  CHECK(mkgmap_version(stand.workspace, stand.prompts, stand.progress).value == "Mkgmap version 4905");
  CHECK(contains(stand.progress.output_text(), "4905"));
  stand.progress.stop = true;
  CHECK(splitter_version(stand.workspace, stand.prompts, stand.progress).error == "Process cancelled");
  stand.workspace.settings.mkgmap_jar.clear();
  CHECK(mkgmap_version(stand.workspace, stand.prompts, stand.progress).error ==
        "Please locate mkgmap.jar in Settings");
}
