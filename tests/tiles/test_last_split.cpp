#include "pipeline/tiles/last_split.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "pipeline/tiles/splitter.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

TEST_CASE("back to the last split, when its files are still there") {
  test::StandIn stand;
  Settings& settings = stand.workspace.settings;
  const auto check = [&] {
    stand.prompts.said.clear();
    return check_last_split(stand.workspace, stand.prompts);
  };
  CHECK_FALSE(check());
  CHECK(stand.prompts.tells() == Texts{"Can't locate last splitter files"});
  const std::string input = settings.input;
  REQUIRE(do_splitter(stand.workspace, stand.prompts, stand.progress) == StageResult::done);
  stand.workspace.tiles.front().selected = true;
  settings.input = stand.home.write("other.osm", "x");
  settings.unsplit_input = true;
  const std::string kept = settings.input;
  SUBCASE("as they were") {
    CHECK(check());
    CHECK(stand.prompts.tells() == Texts{"Cancelled previous spltter selection", "Already split"});
    CHECK(settings.input == input);
    CHECK(stand.workspace.tiles.size() == 3);
    CHECK_FALSE(settings.unsplit_input);
  }
  SUBCASE("with a newer input") {
    std::filesystem::last_write_time(platform::file_system_path(input),
                                     std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
    CHECK(check());
    CHECK(stand.prompts.tells().back() == "Splitter files Not up to date");
  }
  SUBCASE("without a tile") {
    std::filesystem::remove(platform::file_system_path(stand.home / "temp/13224386.o5m"));
    CHECK_FALSE(check());
    CHECK(stand.prompts.tells() == Texts{"Can't locate last splitter files\r\n" + (stand.home / "temp")});
    CHECK(settings.input == kept);
    CHECK(stand.workspace.tiles.front().selected);
  }
  SUBCASE("without their input") {
    std::filesystem::remove(platform::file_system_path(input));
    CHECK_FALSE(check());
    CHECK(stand.prompts.tells() == Texts{"Can't locate last splitter files\r\nCannot find file " + input});
    CHECK(settings.input == kept);
  }
}
