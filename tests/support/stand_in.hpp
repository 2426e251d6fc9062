// A workspace in a temporary program folder whose Java is the stand-in program beside the tests.
#pragma once

#include <doctest/doctest.h>

#include <string>

#include "app/start_up.hpp"
#include "app/workspace.hpp"
#include "platform/paths.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

inline std::string stand_in_java() {
  const std::string folder = platform::join(platform::folder_of(platform::executable_path()), "stand-in");
#ifdef _WIN32
  return platform::join(folder, "java.exe");
#else
  return platform::join(folder, "java");
#endif
}

struct StandIn {
  explicit StandIn(std::string_view name = "home") : home(name) {
    workspace.folder = ProgramFolder(home.path());
    REQUIRE(start_up(workspace, prompts).ok());
    Settings& settings = workspace.settings;
    settings = default_settings(home.path());
    settings.java = stand_in_java();
    settings.splitter_jar = home.write("splitter.jar", "jar");
    settings.mkgmap_jar = home.write("mkgmap.jar", "jar");
    settings.output_folder = home / "out";
    settings.typ.clear();
    settings.use_typ = false;
    settings.device_image = true;
    settings.fid = "1234";
    settings.input = home.write(
        "map.osm", "<?xml version='1.0'?>\n<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
    workspace.java_version = "openjdk version 17";
    prompts.said.clear();
  }
  // See tests/stand_in/java.cpp for the modes.
  void set_mode(std::string_view mode) const { home.write("stand-in-mode", mode); }

  TempFolder home;
  FakePrompts prompts;
  FakeProgress progress;
  Workspace workspace;
};

}  // namespace ferrowen::test
