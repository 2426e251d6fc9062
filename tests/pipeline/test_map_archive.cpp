#include "pipeline/map_archive.hpp"

#include <doctest/doctest.h>

#include <algorithm>

#include "base/files.hpp"
#include "pipeline/build.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

struct Archive : test::StandIn {
  Archive() : StandIn("arch ive") { set("map-name=My Map: 1; country=X"); }
  void build() {
    REQUIRE(make_map(workspace, prompts, progress, BuildServices{}, {true, {}, false}).result ==
            StageResult::done);
    prompts.said.clear();
  }
  std::string archive() { return archive_map(workspace, prompts, progress, now); }

  std::time_t now = 1751621400;  // July 2025
};

}  // namespace

TEST_CASE("a built map goes into a folder of its name and date, with its argument files") {
  Archive test;
  CHECK(test.archive().empty());
  CHECK(test.prompts.tells().back() == "Cannot find any files.");
  test.build();
  const std::string folder = test.archive();
  CHECK(folder == platform::join(test.home / "archives", "My Map- 1 07-2025"));
  CHECK(test.prompts.tells().back() == "Copied files to " + folder);
  const Texts copied = list_files(folder, {""});
  CHECK(copied.size() == test.workspace.built_files.size());
  CHECK(read_whole_file(platform::join(folder, "13224386.img")) == "image 13224386");
  CHECK(list_files(platform::join(folder, "args"), {""}) == Texts{"template.args"});

  SUBCASE("once is enough") {
    CHECK(test.archive().empty());
    CHECK(test.prompts.tells().back() == "Already archived.\r\n" + folder);
  }
  SUBCASE("a changed map is asked about") {
    test.home.write("out/13224386.img", "a newer image");
    test.prompts.answers = {Answer::no, Answer::yes};
    CHECK(test.archive().empty());
    CHECK(test.prompts.asks().back() == "File exists:\r\n" + folder + "\r\nContinue anyway?");
    CHECK(read_whole_file(platform::join(folder, "13224386.img")) == "image 13224386");
    CHECK(test.archive() == folder);
    CHECK(read_whole_file(platform::join(folder, "13224386.img")) == "a newer image");
  }
  SUBCASE("after a restart of the program, beside the images of another map") {
    std::vector<std::string> built;
    std::swap(built, test.workspace.built_files);
    test.home.write("out/77777777.img", "another map");
    test.set("archive-date=yyyy");
    const std::string again = test.archive();
    CHECK(again == platform::join(test.home / "archives", "My Map- 1 2025"));
    CHECK(list_files(again, {".img"}) == list_files(folder, {".img"}));
  }
}

TEST_CASE("a registered map is archived with its .reg file or not at all; a stop leaves nothing") {
  Archive test;
  test.set("map-name=My Map");
  test.build();
  test.workspace.registered_products = {"Other", "My Map"};
  CHECK(test.archive().empty());
  CHECK(test.prompts.tells().back() == "Cannot find .reg file. Archive has been cancelled.");
  test.home.write("out/My_Map/My Map.reg", "REGEDIT4");
  test.progress.stop = true;
  CHECK(test.archive().empty());
  CHECK(test.prompts.tells().back() == "Process cancelled");
  CHECK(list_folders(test.home / "archives").empty());
  test.progress.stop = false;
  CHECK(file_exists(platform::join(test.archive(), "My Map.reg")));
}
