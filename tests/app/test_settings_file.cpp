#include <doctest/doctest.h>

#include "app/settings_file.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

struct Home {
  Home() : folder("settings") {
    workspace.folder = ProgramFolder(folder.path());
    REQUIRE(workspace.folder.create_layout().ok());
    loaddata(workspace, prompts);
    prompts.said.clear();
  }
  TempFolder folder;
  FakePrompts prompts;
  Workspace workspace;
};

}  // namespace

TEST_CASE("the previous version's file is read only while there is no current one") {
  Home home;
  home.folder.write("ferrow5.dat", "\r\n\r\n\r\n\r\nold.pbf\r\n");
  loaddata(home.workspace, home.prompts);
  CHECK(home.workspace.settings.input == "old.pbf");
  home.workspace.settings.input = "new.pbf";
  REQUIRE(savedata(home.workspace).ok());
  loaddata(home.workspace, home.prompts);
  CHECK(home.workspace.settings.input == "new.pbf");
}

TEST_CASE("exit writes the settings and their backup alike") {
  Home home;
  home.workspace.settings.map_name = "Möðruvellir";
  REQUIRE(save_on_exit(home.workspace).ok());
  const std::string saved = read_whole_file(home.folder / "ferrow6.dat");
  CHECK(contains(saved, "Möðruvellir\r\n"));
  CHECK(saved == read_whole_file(home.folder / "backupsettings.mpdat"));
}

TEST_CASE("back up and restore") {
  Home home;
  home.workspace.settings.map_name = "First";
  home.prompts.chosen = {home.folder / "mine"};
  CHECK(back_up_settings(home.workspace, home.prompts));
  CHECK(file_exists(home.folder / "mine.mpdat"));
  CHECK(home.prompts.tells() == std::vector<std::string>{"Settings have been backed up."});
  CHECK(home.prompts.file_questions.front().proposal == "ferrow6.mpdat");
  CHECK(home.prompts.file_questions.front().filters.front().name == "Backup Files (*.mpdat)");

  home.workspace.settings.map_name = "Second";
  home.prompts.said.clear();
  SUBCASE("a No leaves the record alone") {
    home.prompts.chosen = {home.folder / "mine.mpdat"};
    home.prompts.answers = {Answer::no};
    CHECK_FALSE(restore_settings(home.workspace, home.prompts));
    CHECK(home.workspace.settings.map_name == "Second");
  }
  SUBCASE("a Yes loads it") {
    home.prompts.chosen = {home.folder / "mine.mpdat"};
    home.prompts.answers = {Answer::yes};
    CHECK(restore_settings(home.workspace, home.prompts));
    CHECK(home.workspace.settings.map_name == "First");
    CHECK(home.prompts.texts() ==
          std::vector<std::string>{"", "Are you sure you want to use backup?", "Backup Settings loaded"});
    CHECK(home.prompts.said[1].buttons == Buttons::yes_no_cancel);
  }
  SUBCASE("a missing file is told") {
    home.prompts.chosen = {home.folder / "gone.mpdat"};
    CHECK_FALSE(restore_settings(home.workspace, home.prompts));
    CHECK(home.prompts.tells() == std::vector<std::string>{"Cannot find backup."});
    CHECK(home.workspace.settings.map_name == "Second");
  }
}

TEST_CASE("a backup that cannot be written is told with path and reason") {
  Home home;
  home.folder.write("file", "in the way");
  home.prompts.chosen = {(home.folder / "file") + "/x.mpdat"};
  CHECK_FALSE(back_up_settings(home.workspace, home.prompts));
  REQUIRE(home.prompts.tells().size() == 1);
  CHECK(contains(home.prompts.tells().front(), "x.mpdat"));
}

TEST_CASE("reset sets what a reset sets, and an unset field is saved as a blank line") {
  Home home;
  home.workspace.settings.map_name = "Mine";
  home.workspace.settings.description = "text";
  home.prompts.answers = {Answer::yes};
  CHECK(reset_settings(home.workspace, home.prompts));
  CHECK(home.prompts.asks() ==
        std::vector<std::string>{"This will remove all previous settings\r\n\r\nAre you sure?"});
  const Settings& settings = home.workspace.settings;
  CHECK(settings.map_name == "Demo Map");
  CHECK(settings.input == home.folder / "faroe-islands.osm.pbf");
  CHECK(settings.typ == home.folder / "mapnik65001.typ");
  CHECK(settings.map_folder != default_settings(home.folder.path()).map_folder);
  REQUIRE(savedata(home.workspace).ok());
  const auto lines = split_lines(read_whole_file(home.folder / "ferrow6.dat"));
  CHECK(lines[static_cast<std::size_t>(find_field("description")->line)].empty());
  CHECK(lines[4] == settings.input);
}
