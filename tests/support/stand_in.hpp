// A workspace in a temporary program folder whose Java is the stand-in program beside the tests.
#pragma once

#include <doctest/doctest.h>

#include <exception>
#include <string>

#include "app/start_up.hpp"
#include "app/workspace.hpp"
#include "platform/paths.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"
#include "support/settings_of.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

inline std::string stand_in_java() {
  const std::string folder = platform::join(platform::folder_of(platform::executable_path()), "stand-in");
  return platform::join(folder, platform::separator == '/' ? "java" : "java.exe");
}

struct StandIn {
  explicit StandIn(std::string_view name = "home") : home(name) {
    workspace.folder = ProgramFolder(home.path());
    REQUIRE(start_up(workspace, prompts).ok());
    home.write("splitter.jar", "jar");
    home.write("mkgmap.jar", "jar");
    home.write("map.osm",
               "<?xml version='1.0'?>\n<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
    workspace.settings = default_settings(home.path());
    workspace.settings.java = stand_in_java();
    workspace.settings.typ.clear();
    set("splitter={home}/splitter.jar; mkgmap={home}/mkgmap.jar; output-folder={home}/out; use-typ=0; "
        "gmapsupp=1; fid=1234; input={home}/map.osm; confirm-image-overwrite=0");
    workspace.java_version = "openjdk version 17";
    prompts.said.clear();
  }
  // Of a test that ends early, what the stages told is the only word on why.
  ~StandIn() {
    if (std::uncaught_exceptions() == 0) return;
    for (const std::string& text : prompts.tells())
      MESSAGE("told: ", text);
  }
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;
  // "{home}" stands for the program folder and a separator.
  void set(std::string_view assignments) {
    assign(workspace.settings, replace_all(assignments, "{home}/", platform::join(home.path(), "")));
  }
  // See tests/stand_in/java.cpp for the modes.
  void set_mode(std::string_view mode) const { home.write("stand-in-mode", mode); }

  TempFolder home;
  FakePrompts prompts;
  FakeProgress progress;
  Workspace workspace;
};

}  // namespace ferrowen::test
