#include <doctest/doctest.h>

#include <filesystem>

#include "app/argument_backup.hpp"
#include "app/style_backup.hpp"
#include "base/date_text.hpp"
#include "base/files.hpp"
#include "support/fake_progress.hpp"
#include "support/fake_prompts.hpp"
#include "support/settings_of.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

constexpr std::time_t day = 24L * 60 * 60;

struct Backups {
  Backups() {
    workspace.folder = ProgramFolder(home.path());
    workspace.settings = default_settings(home.path());
    REQUIRE(workspace.folder.create_layout().ok());
  }
  bool back_up(const Texts& styles = {}) { return back_up_styles(workspace, prompts, progress, styles, now); }
  [[nodiscard]] std::string folder() const { return platform::join(home / "backup", time_stamp(now)); }
  [[nodiscard]] std::string reminder(std::time_t time) const {
    return style_backup_reminder(workspace, time);
  }

  std::time_t now = std::time(nullptr) + day;  // behind every change of a file
  test::TempFolder home{"back ups"};
  test::FakePrompts prompts;
  test::FakeProgress progress;
  Workspace workspace;
};

}  // namespace

TEST_CASE("styles are copied whole, links are not") {
  Backups test;
  CHECK_FALSE(test.back_up());
  CHECK(test.prompts.tells().back() == "Cannot find styles");
  test.home.write("styles/empty/readme", "x");
  CHECK_FALSE(test.back_up());
  CHECK(test.prompts.tells().back() == "Cannot find a style folder with a 'lines/polygons/points etc' file.");
  test.home.write("styles/one/lines", "highway=* [0x01]");
  test.home.write("styles/one/inc/roads", "r");
  test.home.write("styles/two/points", "p");
  const std::string outside = test.home.write("outside/secret", "s");
  SUBCASE("one of them") {
    CHECK(test.back_up({"one"}));
    CHECK(test.prompts.tells().back() == "Backed up style folder:one\r\nBackup folder: " + test.folder());
    CHECK(list_folders(test.folder()) == Texts{"one"});
  }
  SUBCASE("all of them") {
    CHECK(test.back_up());
    CHECK(test.prompts.tells().back() == "Backed up one, two\r\nBackup folder: " + test.folder());
    CHECK(read_whole_file(test.folder() + "/one/inc/roads") == "r");
  }
#ifndef _WIN32
  SUBCASE("with links in them") {
    std::filesystem::create_directory_symlink(test.home / "outside", test.home / "styles/two/link");
    std::filesystem::create_symlink(outside, test.home / "styles/two/file");
    CHECK_FALSE(test.back_up());
    CHECK(list_files(test.folder() + "/two", {""}) == Texts{"points"});
    CHECK(list_folders(test.folder() + "/two").empty());
    CHECK(test.prompts.tells()[2].starts_with("Not backed up because they are links:\r\n"));
  }
#endif
  SUBCASE("a name that leads out of the styles") {
    CHECK_FALSE(test.back_up({"../outside"}));
    CHECK(list_folders(test.home / "backup") == Texts{"args"});
  }
  SUBCASE("stopped") {
    test.progress.stop = true;
    CHECK_FALSE(test.back_up());
    CHECK(test.prompts.tells().back() == "Cannot create backup\r\nProcess cancelled");
    CHECK(list_folders(test.home / "backup") == Texts{"args"});
  }
  SUBCASE("no place for them") {
    std::filesystem::remove_all(platform::file_system_path(test.home / "backup"));
    test.home.write("backup", "a file");
    CHECK_FALSE(test.back_up());
    CHECK(test.prompts.tells().back().starts_with("Cannot create backup folder\r\n"));
  }
}

TEST_CASE("the reminder comes for a changed style without a backup of the last seven days") {
  Backups test;
  CHECK(test.reminder(test.now).empty());
  test.home.write("styles/one/lines", "x");
  const std::string text = "Time to backup styles. Go File --> Create Style Backup";
  CHECK(test.reminder(test.now) == text);
  const std::time_t backup = test.now - 20 * day;  // older than the style
  test.home.write("backup/" + time_stamp(backup) + "/one/lines", "x");
  CHECK(test.reminder(backup + 6 * day).empty());
  CHECK(test.reminder(backup + 8 * day) == text);
  test.home.write("backup/" + time_stamp(test.now) + "/two/lines", "x");
  CHECK(test.reminder(test.now) == text);
  REQUIRE(test.back_up());
  CHECK(test.reminder(test.now + 30 * day).empty());
}

TEST_CASE("argument files go to a backup and back to where they were") {
  Backups test;
  CHECK_FALSE(back_up_arguments(test.workspace, test.prompts, test.now));
  CHECK(test.prompts.tells().back() == "No files found");
  const std::string own = test.home.write("args/sel.args", "own");
  const std::string tiles = test.home.write("temp/template.args", "tiles");
  REQUIRE(back_up_arguments(test.workspace, test.prompts, test.now));
  const std::string folder = platform::join(test.home / "backup/args", time_stamp(test.now));
  CHECK(test.prompts.tells().back() == "Options backed up in " + folder);
  CHECK(argument_backups(test.workspace) == Texts{folder});
  test.home.write("args/sel.args", "changed");
  REQUIRE(remove_file(tiles).ok());
  test.prompts.chosen = {folder + "/sel.args", folder + "/sel.args", folder + "/tiles/template.args", own,
                         std::nullopt};
  test.prompts.answers = {Answer::no, Answer::yes};
  CHECK(restore_arguments(test.workspace, test.prompts).empty());
  CHECK(read_whole_file(own) == "changed");
  CHECK(restore_arguments(test.workspace, test.prompts) == own);
  CHECK(read_whole_file(own) == "own");
  CHECK(same_file(platform::folder_of(restore_arguments(test.workspace, test.prompts)), test.home / "temp"));
  CHECK(read_whole_file(tiles) == "tiles");
  CHECK(test.prompts.asks().back() == "File exists. Overwrite?\r\n" + own);
  CHECK(restore_arguments(test.workspace, test.prompts).empty());
  CHECK(test.prompts.tells().back() == "Please select a backup arg file");
  CHECK(restore_arguments(test.workspace, test.prompts).empty());
}
