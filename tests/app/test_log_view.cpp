#include "app/log_view.hpp"

#include <doctest/doctest.h>

#include "app/own_script.hpp"
#include "app/recent_files.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/fake_prompts.hpp"
#include "support/settings_of.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

struct Home {
  Home() { workspace.folder = ProgramFolder(home.path()); }
  test::TempFolder home;
  test::FakePrompts prompts;
  Workspace workspace;
};

}  // namespace

TEST_CASE("lines of a log by their weight") {
  using enum LogLevel;
  const std::vector<std::pair<const char*, LogLevel>> lines = {
      {"Mkgmap version 4905", plain},
      {"2026/11/21 17:01:17 INFO (Main): Submitting job nix.osm", information},
      {"Number of MapFailedExceptions: 0", information},
      {"Number of ExitExceptions: 1", error},
      {"2026/11/21 17:01:17 SEVERE (Main): nix.osm: input file 'nix.osm' is gone", error},
      {"SEVERE (RoundaboutCheck): tile", warning},
      {"2026/11/21 17:01:17 SEVERE (LineSizeSplitterFilter): 63240001.img: line too long", warning},
      {"WARNUNG (x): Error of a kind", warning},
      {"java.lang.OutOfMemoryError: Java heap space", error},
      {"\tat uk.me.parabola.Main.main(Main.java:1)", error},
      {"", plain},
      {"\tat nothing", plain},
  };
  std::string text;
  for (const auto& [line, level] : lines)
    text.append(line).append("\r\n");
  const std::vector<LogLine> read = classify_log(text);
  REQUIRE(read.size() == lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    CAPTURE(lines[i].first);
    CHECK(read[i].text == lines[i].first);
    CHECK(read[i].level == lines[i].second);
  }
}

TEST_CASE("a log that is not there, and one that is too long to show") {
  Home test;
  Settings& settings = test.workspace.settings;
  settings.keep_log = false;
  CHECK(load_log(test.workspace, LogFile::mkgmap_log).error == "Cannot find log file");
  settings.keep_log = true;
  CHECK(load_log(test.workspace, LogFile::mkgmap_log).error ==
        "Cannot find log file " + (test.home / "mkgmap.log.0"));
  test.home.write("dos.txt", "first line\r\nsecond\r\nError\r\n");
  const Result<LogView> whole = load_log(test.workspace, LogFile::error_stream);
  CHECK(whole.value.lines.size() == 3);
  CHECK(whole.value.left_out == 0);
  const Result<LogView> end = load_log(test.workspace, LogFile::error_stream, 17);
  REQUIRE(end.value.lines.size() == 2);
  CHECK(end.value.lines[0].text == "second");
  CHECK(end.value.left_out == 12);
}

TEST_CASE("recent files: newest first, none twice, ten at most, missing ones only hidden") {
  Home test;
  Settings& settings = test.workspace.settings;
  const std::string there = test.home.write("ü b.osm", "x");
  for (int i = 0; i < 12; ++i)
    add_recent_file(settings, test.home / ("none" + std::to_string(i)));
  add_recent_file(settings, there);
  add_recent_file(settings, test.home / "none11");
  add_recent_file(settings, "bad\nname");
  add_recent_file(settings, "");
  const Texts kept = kept_recent_files(settings);
  REQUIRE(kept.size() == most_recent_files);
  CHECK(kept[0] == test.home / "none11");
  CHECK(kept[1] == there);
  CHECK(kept[9] == test.home / "none3");
  CHECK(recent_files(settings) == Texts{there});
  const Field& field = *find_field("recent-files");
  Settings loaded;
  assign_stored(loaded, field, stored_text(settings, field), "");
  CHECK(kept_recent_files(loaded) == kept);
  remove_recent_file(settings, there);
  CHECK(kept_recent_files(settings).size() == most_recent_files - 1);
}

TEST_CASE("an own script begins as a copy of the last build") {
  Home test;
  const std::string path = test.home / "myscript.txt";
  CHECK(own_script_for_editing(test.workspace, test.prompts).empty());
  test.home.write("last_run.txt", "java -jar splitter.jar 2>dos.txt\r\n");
  CHECK(own_script_for_editing(test.workspace, test.prompts).empty());
  CHECK(test.prompts.tells() == Texts(2, "Cannot find script\r\n" + path));
  test.home.write("last_run.txt", "java -jar mkgmap.jar --route 2>dos.txt\r\n");
  CHECK(own_script_for_editing(test.workspace, test.prompts) == path);
  CHECK(read_whole_file(path) == "java -jar mkgmap.jar --route\r\n");
  test.home.write("myscript.txt", "mine");
  CHECK(own_script_for_editing(test.workspace, test.prompts) == path);
  CHECK(read_whole_file(path) == "mine");
}
