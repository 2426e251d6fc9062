#include <doctest/doctest.h>

#include <algorithm>

#include "app/tool_places.hpp"
#include "app/tools.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

// A machine inside a folder, of either system, on which PATH holds these programs.
ToolPlaces machine(const TempFolder& folder, bool windows, std::vector<std::string> in_path = {}) {
  ToolPlaces places;
  places.windows = windows;
  places.program_in_path = [in_path](const std::string& name) -> std::string {
    return std::find(in_path.begin(), in_path.end(), name) == in_path.end() ? "" : "in path: " + name;
  };
  places.path_folders = {"", ".", folder / "bin"};
  if (windows) places.program_files = {folder / "Program Files", folder / "Program Files (x86)"};
  places.program_folder = folder / "home";
  places.own_folder = folder / "own";
  return places;
}

}  // namespace

TEST_CASE("of several 7-Zip programs in PATH the full one is taken, then the one of its setup") {
  const TempFolder folder("7 z");
  const std::string installed = folder.write("Program Files (x86)/7-Zip/7z.exe", "");
  using Names = std::vector<std::string>;
  CHECK(find_tool("7z", machine(folder, true, {"7za", "7zz", "7z"})) == "in path: 7z");
  CHECK(find_tool("7z", machine(folder, true, {"7za", "7zz"})) == "in path: 7zz");
  CHECK(find_tool("7z", machine(folder, false, {"7za"})) == "in path: 7za");
  CHECK(find_tool("7z", machine(folder, true)) == installed);
  CHECK(find_tool("7z", machine(folder, false)).empty());
  CHECK(tool_candidates("7z", machine(folder, false)) == Names{});
  const std::string makensis = folder.write("Program Files/NSIS/makensis.exe", "");
  CHECK(find_tool("makensis", machine(folder, true)) == makensis);
}

TEST_CASE("Java is found where its setups put it, the newest one, and by JAVA_HOME first of all") {
  const TempFolder folder("ja va");
  const auto put = [&](const std::string& where) { return folder.write(where + "/bin/java.exe", ""); };
  CHECK(find_tool("java", machine(folder, true)).empty());
  const std::string x86 = put("Program Files (x86)/Java/jre-21");
  CHECK(find_tool("java", machine(folder, true)) == x86);
  put("Program Files/Microsoft/Edge 99");
  CHECK(find_tool("java", machine(folder, true)) == x86);
  const std::string microsoft = put("Program Files/Microsoft/jdk-17.0.9.8-hotspot");
  CHECK(find_tool("java", machine(folder, true)) == microsoft);
  put("Program Files/Eclipse Adoptium/jdk-8.0.392.8-hotspot");
  const std::string adoptium = put("Program Files/Eclipse Adoptium/jdk-21.0.10.7-hotspot");
  put("Program Files/Eclipse Adoptium/jdk-21.0.9.10-hotspot");
  CHECK(find_tool("java", machine(folder, true)) == adoptium);
  for (const bool windows : {true, false}) {
    ToolPlaces places = machine(folder, windows);
    places.java_home = folder / "set";
    const std::string set = folder.write(windows ? "set/bin/java.exe" : "set/bin/java", "");
    CHECK(find_tool("java", places) == set);
    places.java_home = "relative";
    CHECK(find_tool("java", places) == (windows ? adoptium : ""));
  }
}

TEST_CASE("tools without a setup are found in the folder for them, of several the highest number") {
  const TempFolder folder("pl ügs");
  const ToolPlaces places = machine(folder, true);
  const std::string beside = folder.write("own/mkgmap.jar", "");
  CHECK(find_tool("mkgmap", places) == beside);
  folder.write("home/plugs/mkgmap-r921/mkgmap.jar", "");
  folder.write("home/plugs/mkgmap-r9999/doc/readme.txt", "");
  const std::string newest = folder.write("home/plugs/mkgmap-r4916/mkgmap.jar", "");
  CHECK(find_tool("mkgmap", places) == newest);
  const std::string directly = folder.write("home/plugs/mkgmap.jar", "");
  CHECK(find_tool("mkgmap", places) == directly);
  const std::string in_path = folder.write("bin/mkgmap.jar", "");
  CHECK(find_tool("mkgmap", places) == in_path);
  const std::string converter = folder.write("home/plugs/osmconvert64.exe", "");
  CHECK(find_tool("osmconvert", places) == converter);
  CHECK(find_tool("osmconvert", machine(folder, false)).empty());
  folder.write("home/plugs/osmconvert/osmconvert", "");  // the folder of that name is no program
  CHECK(find_tool("osmconvert", machine(folder, false)) == folder / "home/plugs/osmconvert/osmconvert");
}

TEST_CASE("a tool that an update has moved is found again; what a person chose stays") {
  const TempFolder folder("up date");
  const ToolPlaces places = machine(folder, true);
  const std::string java = folder.write("Program Files/Eclipse Adoptium/jdk-17.0.5/bin/java.exe", "");
  const std::string mkgmap = folder.write("home/plugs/mkgmap-r4905/mkgmap.jar", "");
  Settings settings;
  settings.osmconvert = folder / "home/tools/osmconvert64.exe";
  const std::string chosen = settings.osmconvert;
  find_tools(settings, places);
  CHECK(settings.java == java);
  CHECK(settings.mkgmap_jar == mkgmap);

  const std::string newer = folder.write("Program Files/Eclipse Adoptium/jdk-21.0.1/bin/java.exe", "");
  const std::string newer_mkgmap = folder.write("home/plugs/mkgmap-r4923/mkgmap.jar", "");
  folder.write("home/plugs/osmconvert.exe", "");
  find_tools(settings, places);
  CHECK(settings.java == java);  // still there
  REQUIRE((remove_file(java).ok() && remove_file(mkgmap).ok()));
  settings.java = replace_all(settings.java, "Program Files", "PROGRAM FILES");
  find_tools(settings, places);
  CHECK(settings.java == newer);
  CHECK(settings.mkgmap_jar == newer_mkgmap);
  CHECK(settings.osmconvert == chosen);

  REQUIRE((remove_file(newer).ok() && remove_file(newer_mkgmap).ok()));
  find_tools(settings, machine(folder, true, {"java"}));
  CHECK(settings.java.empty());
  CHECK(settings.mkgmap_jar == newer_mkgmap);  // nothing better is known: the message names it
}

TEST_CASE("on Windows no place is looked into that depends on the current drive or folder") {
  const TempFolder folder;
  for (const char* setting : {"java", "mkgmap", "splitter", "osmconvert", "7z", "makensis"})
    for (const std::string& candidate : tool_candidates(setting, machine(folder, true)))
      CHECK_MESSAGE(candidate.starts_with(folder.path()), candidate);
  CHECK(tool_candidates("mkgmap", machine(folder, false)).front() ==
        platform::join("/usr/share/mkgmap", "mkgmap.jar"));
}
