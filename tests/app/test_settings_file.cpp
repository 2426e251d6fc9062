#include "app/settings_file.hpp"

#include <doctest/doctest.h>

#include "base/files.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using test::StandIn;
using Texts = std::vector<std::string>;

TEST_CASE("the previous version's file is read only while there is no current one") {
  StandIn app;
  app.home.write("ferrow5.dat", "\r\n\r\n\r\n\r\nold.pbf\r\n");
  loaddata(app.workspace, app.prompts);
  CHECK(app.workspace.settings.input == "old.pbf");
  app.set("input=new.pbf; map-name=M\u00f6\u00f0ruvellir");
  REQUIRE(save_on_exit(app.workspace).ok());
  app.set("input=other.pbf");
  loaddata(app.workspace, app.prompts);
  CHECK(app.workspace.settings.input == "new.pbf");
  const std::string saved = read_whole_file(app.home / "ferrow6.dat");
  CHECK(contains(saved, "M\u00f6\u00f0ruvellir\r\n"));
  CHECK(saved == read_whole_file(app.home / "backupsettings.mpdat"));
}

TEST_CASE("settings are backed up, and restored only after a Yes") {
  StandIn app;
  Settings& settings = app.workspace.settings;
  settings.map_name = "First";
  const std::string backup = app.home / "mine.mpdat";
  app.prompts.chosen = {app.home / "mine", app.home / "gone.mpdat", backup, backup, backup + "/x.mpdat"};
  CHECK(back_up_settings(app.workspace, app.prompts));
  CHECK(app.prompts.file_questions.front().proposal == "ferrow6.mpdat");
  settings.map_name = "Second";
  CHECK_FALSE(restore_settings(app.workspace, app.prompts));
  app.prompts.answers = {Answer::no, Answer::yes};
  CHECK_FALSE(restore_settings(app.workspace, app.prompts));
  CHECK(settings.map_name == "Second");
  CHECK(restore_settings(app.workspace, app.prompts));
  CHECK(settings.map_name == "First");
  CHECK(app.prompts.asks().back() == "Are you sure you want to use backup?");
  CHECK(app.prompts.tells() ==
        Texts{"Settings have been backed up.", "Cannot find backup.", "Backup Settings loaded"});
  CHECK_FALSE(back_up_settings(app.workspace, app.prompts));
  CHECK(contains(app.prompts.tells().back(), "x.mpdat"));
}

TEST_CASE("reset sets what a reset sets, and an unset field is saved as a blank line") {
  StandIn app;
  app.set("map-name=Mine; description=text");
  app.prompts.answers = {Answer::yes};
  CHECK(reset_settings(app.workspace, app.prompts));
  CHECK(app.prompts.asks() == Texts{"This will remove all previous settings\r\n\r\nAre you sure?"});
  CHECK(app.workspace.settings.map_name == "Demo Map");
  CHECK(app.workspace.settings.input == app.home / "faroe-islands.osm.pbf");
  REQUIRE(savedata(app.workspace).ok());
  const Texts lines = split_lines(read_whole_file(app.home / "ferrow6.dat"));
  CHECK(lines[static_cast<std::size_t>(find_field("description")->line)].empty());
}

TEST_CASE("a damaged settings file is kept, told, and its backup is not overwritten") {
  StandIn app;
  app.home.write("ferrow6.dat", std::string(3000, '\0'));
  app.home.write("backupsettings.mpdat", "\r\n\r\n\r\n\r\ngood.pbf\r\n");
  REQUIRE(start_up(app.workspace, app.prompts).ok());
  REQUIRE_FALSE(app.prompts.tells().empty());
  CHECK(contains(app.prompts.tells().front(), "the settings file is damaged.\r\nIt was kept as "));
  CHECK(contains(app.prompts.tells().front(), "Available backup:"));
  CHECK(file_size(app.home / "ferrow6.dat.damaged") == 3000);
  REQUIRE(save_on_exit(app.workspace).ok());
  CHECK(contains(read_whole_file(app.home / "backupsettings.mpdat"), "good.pbf"));
  app.prompts.chosen = {app.home / "backupsettings.mpdat"};
  app.prompts.answers = {Answer::yes};
  CHECK(restore_settings(app.workspace, app.prompts));
  CHECK(app.workspace.settings.input == "good.pbf");
}

TEST_CASE("a backup under a name that had no ending asks before it overwrites") {
  StandIn app;
  app.home.write("mine.mpdat", "older");
  app.prompts.chosen = {app.home / "mine"};
  app.prompts.answers = {Answer::no};
  CHECK_FALSE(back_up_settings(app.workspace, app.prompts));
  CHECK(app.prompts.asks().front().starts_with("File exists. Overwrite?"));
  CHECK(read_whole_file(app.home / "mine.mpdat") == "older");
}
