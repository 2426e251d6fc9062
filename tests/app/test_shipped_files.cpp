#include <doctest/doctest.h>

#include <chrono>
#include <filesystem>

#include "app/program_folder.hpp"
#include "base/files.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

// A program folder, and the shipped files of one version after another.
struct Versions {
  TempFolder folder = TempFolder("ver sions");
  ProgramFolder program = ProgramFolder(folder / "home");
  int version = 0;

  Versions() { REQUIRE(program.create_layout().ok()); }
  void start() const { REQUIRE(program.copy_assets(folder / "share").ok()); }
  // Every version has times of its own.
  std::string ship(std::string_view text) {
    const auto path = platform::file_system_path(folder.write("share/mkopts", text));
    const auto time = std::filesystem::last_write_time(path) + std::chrono::seconds(++version * 10);
    std::filesystem::last_write_time(path, time);
    start();
    return mine();
  }
  [[nodiscard]] std::string mine() const { return read_whole_file(program / "mkopts"); }
};

}  // namespace

TEST_CASE("a shipped file that nobody changed is renewed, a changed one stays") {
  Versions versions;
  CHECK(versions.ship("one") == "one");
  CHECK(versions.ship("two") == "two");
  CHECK(versions.ship("a longer one") == "a longer one");
  SUBCASE("changed") {
    versions.folder.write("home/mkopts", "a person's..");  // as long as what was shipped
    CHECK(versions.ship("four") == "a person's..");
    CHECK(versions.ship("five") == "a person's..");
    REQUIRE(remove_file(versions.program / "mkopts").ok());
    versions.start();
    CHECK(versions.mine() == "five");
    CHECK(versions.ship("six") == "six");
  }
  SUBCASE("changed to what is shipped next") {
    versions.folder.write("home/mkopts", "four");
    CHECK(versions.ship("four") == "four");
    CHECK(versions.ship("five") == "five");
  }
  SUBCASE("the list is lost") {
    REQUIRE(remove_file(versions.program / "system/shipped").ok());
    CHECK(versions.ship("four") == "a longer one");
    REQUIRE(remove_file(versions.program / "mkopts").ok());
    CHECK(versions.ship("five") == "five");
  }
  SUBCASE("it cannot be replaced now: the old one serves until the next start") {
    versions.folder.write("home/mkopts.new/in the way", "");
    CHECK(versions.ship("four") == "a longer one");
    std::filesystem::remove_all(platform::file_system_path(versions.program / "mkopts.new"));
    versions.start();
    CHECK(versions.mine() == "four");
  }
}

TEST_CASE("a program folder made by an older version takes part from the first file that is its own") {
  Versions versions;
  versions.folder.write("home/mkopts", "one");
  CHECK(versions.ship("one") == "one");
  CHECK(versions.ship("two") == "two");
}
