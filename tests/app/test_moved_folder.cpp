#include <doctest/doctest.h>

#include <filesystem>

#include "app/moved_folder.hpp"
#include "app/recent_files.hpp"
#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

Workspace started(const std::string& home, FakePrompts& prompts) {
  Workspace workspace;
  workspace.folder = ProgramFolder(home);
  REQUIRE(start_up(workspace, prompts).ok());
  return workspace;
}

void rename_folder(const std::string& from, const std::string& to) {
  std::filesystem::rename(platform::file_system_path(from), platform::file_system_path(to));
}

}  // namespace

TEST_CASE("a path moves with the folder that it lies in, and no other path does") {
  const PathRules posix{'/', false};
  const PathRules windows{'\\', true};
  struct Case {
    const PathRules& rules;
    const char *path, *from, *to, *moved;
  };
  const Case cases[] = {
      {posix, "/a/Ferrowen/styles", "/a/Ferrowen", "/b/Neu er", "/b/Neu er/styles"},
      {posix, "/a/Ferrowen", "/a/Ferrowen/", "/b/", "/b/"},
      {posix, "/a//Ferrowen/x", "/a/Ferrowen", "/b", "/b/x"},
      {posix, "/a/Ferrowen 2/x", "/a/Ferrowen", "/b", nullptr},
      {posix, "/a/Ferrowen", "/a/Ferrowen 2", "/b", nullptr},
      {posix, "/a/ferrowen/x", "/a/Ferrowen", "/b", nullptr},
      {posix, "a/Ferrowen/x", "/a/Ferrowen", "/b", nullptr},
      {posix, "/a/Ferrowen/../mine", "/a/Ferrowen", "/b", nullptr},
      {posix, "", "/a", "/b", nullptr},
      {windows, R"(E:\Ferrowen\styles)", R"(E:\Ferrowen)", R"(F:\Ferrowen)", R"(F:\Ferrowen\styles)"},
      {windows, R"(e:/KÄRTEN/hgt/Europe)", R"(E:\kärten)", R"(F:\neu)", R"(F:\neu\hgt/Europe)"},
      {windows, R"(E:\maps)", R"(E:\)", R"(F:\)", R"(F:\maps)"},
      {windows, R"(E:\Ferrowen 2\x)", R"(E:\Ferrowen)", R"(F:\Ferrowen)", nullptr},
      {windows, R"(\\server\stick\x)", R"(\\Server\Stick)", R"(E:\)", R"(E:\x)"},
  };
  for (const Case& tried : cases) {
    CAPTURE(tried.path);
    const auto moved = moved_path(tried.path, tried.from, tried.to, tried.rules);
    CHECK(moved.has_value() == (tried.moved != nullptr));
    if (moved && tried.moved != nullptr) CHECK(*moved == tried.moved);
  }
  CHECK(moved_line("--a=/x/y,\"/a/z\",/a/q", "/a", "/b", posix) == "--a=/x/y,\"/b/z\",/b/q");
  CHECK(moved_line("--a=b", "/a", "/b", posix) == "--a=b");
}

TEST_CASE("a program folder that was renamed works on, with its own paths alone set anew") {
  const TempFolder place("mo ve");
  const std::string old_home = place / "Ferrowen";
  const std::string new_home = place / "Kärten alt 2";
  const std::string neighbour = place / "Ferrowen 2/typ.typ";
  place.write("Ferrowen/styles/mine/lines", "");
  place.write("Ferrowen/map.pbf", "data");
  FakePrompts prompts;
  {
    Workspace workspace = started(old_home, prompts);
    Settings& settings = workspace.settings;
    settings.input = place / "Ferrowen/map.pbf";
    settings.typ = neighbour;
    settings.osmconvert = place / "tools/osmconvert";
    settings.options_text = "--x\r\n--coast=" + place / "Ferrowen/coast.pbf";
    add_recent_file(settings, settings.input);
    REQUIRE(save_on_exit(workspace).ok());
  }
  rename_folder(old_home, new_home);
  prompts.said.clear();
  Workspace workspace = started(new_home, prompts);
  const Settings& settings = workspace.settings;
  CHECK(prompts.said.empty());
  CHECK_FALSE(file_exists(old_home));
  CHECK(file_exists(settings.input));
  CHECK(settings.styles_folder == workspace.path("styles"));
  CHECK(settings.archive_folder == workspace.path("archives"));
  CHECK(settings.hgt_folders.front() == workspace.path("hgt/Europe/3"));
  CHECK(settings.options_text == "--x\r\n--coast=" + workspace.path("coast.pbf"));
  CHECK(recent_files(settings) == std::vector<std::string>{settings.input});
  CHECK(settings.typ == neighbour);
  CHECK(settings.osmconvert == place / "tools/osmconvert");

  SUBCASE("and once more after it was saved") {
    REQUIRE(savedata(workspace).ok());
    CHECK_FALSE(contains(read_whole_file(workspace.path(file_name::settings)), old_home + "/"));
    rename_folder(new_home, old_home);
    CHECK(started(old_home, prompts).settings.styles_folder == place / "Ferrowen/styles");
  }
  SUBCASE("and a backup from the old place is restored for the new one") {
    prompts.chosen = {workspace.path(file_name::settings_backup)};
    prompts.answers = {Answer::yes};
    REQUIRE(restore_settings(workspace, prompts));
    CHECK(workspace.settings.styles_folder == workspace.path("styles"));
  }
  SUBCASE("and a trailing separator is no move") {
    const std::string before = settings_text(workspace.settings);
    REQUIRE(savedata(workspace).ok());
    CHECK(settings_text(started(new_home + platform::separator, prompts).settings) == before);
  }
}
