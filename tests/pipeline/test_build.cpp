#include "pipeline/build.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;

namespace {

struct Made : test::StandIn {
  using StandIn::StandIn;
  BuildReport make(const BuildRequest& request = {}) {
    return make_map(workspace, prompts, progress, BuildServices{}, request);
  }
  [[nodiscard]] std::string image(const std::string& number) const {
    return platform::join(home / "out", number + ".img");
  }
  [[nodiscard]] std::string arguments() const { return read_whole_file(home / "stand-in-arguments"); }
};

}  // namespace

TEST_CASE("an input that needs no split is built as it is, with its TYP") {
  Made made("plain home");
  made.home.write("look/My.TYP", std::string("\x5b\0GARMIN TYP", 12) + " and more");
  made.set("use-typ=1; typ={home}/look/My.TYP");
  const BuildReport report = made.make();
  CHECK(report.result == StageResult::done);
  CHECK(file_exists(made.image("13224385")));
  CHECK(contains(made.arguments(), platform::join(made.home / "args", "template1.args")));
  CHECK(contains(made.arguments(), platform::join(made.home / "out", "My.TYP")));
  CHECK(file_exists(made.home / "out/My.TYP"));
  CHECK(made.workspace.built_files.size() == report.files.size());
}

TEST_CASE("the default clip folder is taken for one build and no longer") {
  Made made;
  for (const char* folder : {"clips", "files", "hgt"})
    std::filesystem::create_directories(made.home / folder);
  made.set(
      "contours=1; clip-contours=1; clip-folder-3={home}/clips; clip-slot=2; hgt-folder-1={home}/hgt; "
      "hgt-slot=0");
  made.prompts.default_answer = Answer::yes;
  made.make({true, {}, false});
  REQUIRE_FALSE(made.prompts.asks().empty());
  CHECK(made.prompts.asks().front() ==
        "Clip folder" + (made.home / "clips") + " contains no files.\r\nUse default folder?");
  CHECK(made.workspace.settings.clip_slot == 2);
  CHECK(made.workspace.settings.clip_folders[0].empty());
  made.prompts.said.clear();
  create_map(made.workspace, made.prompts, made.progress, BuildServices{});
  CHECK(made.workspace.settings.clip_slot == 2);
}

#ifndef _WIN32
TEST_CASE("a TYP that lies in the output folder under another name is used where it is") {
  Made made;
  const std::string bytes = std::string("\x5b\0GARMIN TYP", 12) + " mine";
  made.home.write("out/My.TYP", bytes);
  std::filesystem::create_directory_symlink(made.home / "out", made.home / "link");
  made.set("use-typ=1; typ={home}/link/My.TYP");
  CHECK(made.make().result == StageResult::done);
  CHECK(contains(made.arguments(), made.home / "out/My.TYP"));
  CHECK(read_whole_file(made.home / "out/My.TYP") == bytes);
}
#endif

TEST_CASE("split, select, build: only the chosen tiles, under the chosen map ID") {
  Made made("two tiles & more");
  made.set("map-id=50000001");
  made.workspace.settings.split_folder.clear();  // as a person may leave it in the settings window
  REQUIRE(made.make({true, {"13224386"}, false}).result == StageResult::done);
  CHECK(made.workspace.settings.last_split_input == made.workspace.settings.input);
  CHECK(file_exists(made.image("50000002")));
  CHECK_FALSE(file_exists(made.image("50000001")));
  SUBCASE("tiles that are there already are not split again") {
    CHECK(made.make().stages.front().stage == "build");
    CHECK(file_exists(made.image("50000003")));
  }
  SUBCASE("a saved selection") {
    REQUIRE(save_selection(made.workspace).ok());
    CHECK(made.make({false, {}, true}).tiles == 1);
    CHECK(contains(made.arguments(), made.home / "temp/templatenw.args"));
  }
  SUBCASE("another input does not get these tiles") {
    made.workspace.settings.input = made.home.write("other.osm", "<osm version='0.6'><node id='1'/></osm>\n");
    CHECK(made.make().result == StageResult::done);
    CHECK(contains(made.arguments(), "template1.args"));
  }
}

TEST_CASE("a failed build explains itself and leaves the older map where it was") {
  Made made;
  REQUIRE(made.make({true, {}, false}).result == StageResult::done);
  for (const char* number : {"13224385", "13224386", "13224387"})
    made.home.write(std::string("out/") + number + ".img", "older image");
  made.prompts.said.clear();
  SUBCASE("nothing made") {
    made.set_mode("style-error");
    CHECK(made.make().result == StageResult::failed);
    CHECK(made.prompts.tells().back().starts_with("IMG not created.\r\nThis has been unsuccessful."));
    CHECK(contains(made.prompts.tells().back(), "Unrecognised type command 'foo'"));
    CHECK(made.prompts.shown_files() == std::vector<std::string>{made.home / "dos.txt"});
  }
  SUBCASE("one image missing") {
    made.set_mode("missing-image");
    CHECK(made.make().result == StageResult::failed);
    CHECK(made.prompts.tells().back().starts_with("This may be have unsuccessful."));
    CHECK(contains(made.prompts.tells().back(), "13224386.img"));
  }
  SUBCASE("stopped by the person") {
    made.set_mode("hang");
    made.progress.stop_when = [&] { return contains(made.progress.output_text(), "Mkgmap version"); };
    CHECK(made.make().result == StageResult::cancelled);
  }
  CHECK(read_whole_file(made.image("13224386")) == "older image");
  CHECK(list_files(made.home / "out", {".before"}).empty());
  CHECK(made.workspace.built_files.empty());
}

TEST_CASE("complaints without a missing file fail the build but keep the map") {
  for (const char* mode : {"severe", "exceptions"}) {
    Made made;
    made.set_mode(mode);
    CHECK(made.make().result == StageResult::failed);
    CHECK(file_exists(made.image("13224385")));
  }
}

TEST_CASE("a No to going on after a halt keeps a good map, and the older one when there is none") {
  Made made;
  made.set("description=uk.me.parabola");
  made.home.write("out/13224385.img", "older image");
  made.prompts.answers = {Answer::no};
  bool good = true;
  SUBCASE("good") {}
  SUBCASE("failed") {
    good = false;
    made.set_mode("style-error");
  }
  const BuildReport report = made.make();
  CHECK(report.result == StageResult::stopped);
  CHECK(report.files.empty() != good);
  CHECK(made.prompts.asks() == std::vector<std::string>{"Run halted. Continue?"});
  CHECK(made.prompts.tells().empty() == good);
  CHECK(read_whole_file(made.image("13224385")) == (good ? "image 13224385" : "older image"));
  CHECK(list_files(made.home / "out", {".before"}).empty());
}

TEST_CASE("an own script makes a device image when it says so, whatever the settings say") {
  for (const bool image : {false, true}) {
    CAPTURE(image);
    Made made;
    made.home.write("mine.args", "mapname: 63240001\n");
    made.home.write("myscript.txt", std::string("java -jar mkgmap.jar --output-dir=out -c mine.args") +
                                        (image ? " --gmapsupp" : " --mapname=63240001"));
    made.set(image ? "own-script=1; gmapsupp=0; register=1" : "own-script=1; gmapsupp=1");
    made.prompts.answers = {Answer::yes};
    // The file of a registered map, which shares its bytes with a tile that the script writes in place.
    const std::string registered = made.home.write("registered/63240001.img", "registered");
    REQUIRE(make_folder(made.home / "out").ok());
    std::filesystem::create_hard_link(platform::file_system_path(registered),
                                      platform::file_system_path(made.image("63240001")));
    const BuildReport report = made.make();
    CHECK(report.result == StageResult::done);
    CHECK(read_whole_file(registered) == "registered");
    // What else it made belongs to the build too.
    REQUIRE(report.files.size() == (image ? 2 : 1));
    CHECK(platform::name_of(report.files.back().path) == "63240001.img");
    CHECK(platform::name_of(report.files[0].path) == (image ? "DemoMap.img" : "63240001.img"));
  }
}

TEST_CASE("what cannot be delivered is told before anything is run") {
  Made made;
  made.set("register=1; image-folder={home}/unplugged");
  BuildServices services;
  services.registration_obstacle = [](const Workspace&) { return std::string("another map's folder"); };
  const auto make = [&] {
    made.prompts.said.clear();
    return make_map(made.workspace, made.prompts, made.progress, services, {}).result;
  };
  CHECK(make() == StageResult::stopped);
  CHECK(made.prompts.tells().back() == "another map's folder");
  services.registration_obstacle = {};
  CHECK(make() == StageResult::stopped);
  CHECK(contains(made.prompts.tells().back(), made.home / "unplugged"));
  services.release_files = [](Workspace&, const std::vector<std::string>& files) { return files.empty(); };
  made.set("image-folder=");
  CHECK(make() == StageResult::stopped);
  CHECK_FALSE(file_exists(made.home / "stand-in-arguments"));
}
