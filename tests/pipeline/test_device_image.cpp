#include "pipeline/device_image.hpp"

#include <doctest/doctest.h>

#include <set>

#include "base/files.hpp"
#include "pipeline/build.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

constexpr std::uint64_t gigabyte = 1ULL << 30;

std::string name_among(const Settings& settings, const std::set<std::string>& there, bool script = false) {
  const auto exists = [&](const std::string& path) { return there.contains(platform::name_of(path)); };
  const ImageTarget target = image_target(settings, "folder", script, exists);
  CHECK(platform::folder_of(target.path) == "folder");
  return platform::name_of(target.path) + (target.ask ? "?" : "");
}

struct Image : test::StandIn {
  Image() {
    set("gmapsupp-folder={home}/gmapsupp; map-name=A Map; confirm-image-overwrite=1");
    home.write("out/gmapsupp.img", "new image");
  }
  ImageCopy copy(const ImageDates& before = {}) { return gmapsupp(workspace, prompts, progress, before); }
  [[nodiscard]] std::string there(const std::string& name) const {
    return read_whole_file(home / ("gmapsupp/" + name));
  }
  [[nodiscard]] bool source_stays() const { return file_exists(home / "out/gmapsupp.img"); }
};

}  // namespace

TEST_CASE("the image's name") {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"map-name=My \"big\" Map", "MybigMap"},
      {"map-name=../\u00fcber/all", "..-\u00fcber-all"},
      {"map-name=\" \"", "gmapsupp"},
      {"image-named-after-map=0; map-name=Map; image-name=", "gmapsupp"},
      {"image-named-after-map=0; image-name=alps one", "alps one"}};
  for (const auto& [settings, name] : cases)
    CHECK(image_base_name(test::settings_of(settings)) == name);
  for (const auto& [number, suffix] : std::vector<std::pair<std::size_t, const char*>>{
           {0, ""}, {1, "A"}, {26, "Z"}, {27, "AA"}, {52, "AZ"}, {53, "AAA"}})
    CHECK(image_suffix(number) == suffix);
}

TEST_CASE("where the image goes, and when that is asked") {
  Settings settings = test::settings_of("image-named-after-map=0; image-name=gmapsupp");
  CHECK(name_among(settings, {}) == "gmapsupp.img");
  CHECK(name_among(settings, {"gmapsupp.img"}) == "gmapsupp.img?");
  CHECK(name_among(settings, {"gmapsupp.img"}, true) == "gmapsupp.img");
  settings.confirm_image_overwrite = false;
  std::set<std::string> there = {"gmapsupp.img"};
  CHECK(name_among(settings, there, true) == "gmapsupp.img");
  CHECK(name_among(settings, there) == "gmapsuppA.img");
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    there.insert(std::string("gmapsupp") + letter + ".img");
  CHECK(name_among(settings, there) == "gmapsuppAA.img");
  test::assign(settings, "map-id-locked=1; map-id=13224385");
  CHECK(name_among(settings, there) == "gmap13224385.img");
  CHECK(name_among(settings, {"gmap13224385.img"}) == "gmap13224385.img?");
  CHECK(name_among(settings, {"gmap13224385.img"}, true) == "gmap13224385.img");
}

TEST_CASE("what keeps an image from a drive is told before copying") {
  const auto told = [](const CopyFacts& facts, std::string_view text) {
    const std::string obstacle = copy_obstacle(facts, "/media/G");
    return text.empty() ? obstacle.empty() : obstacle.starts_with("/media/G: ") && contains(obstacle, text);
  };
  const auto fat = platform::largest_file_on_fat;
  CHECK(told({gigabyte, 0, 2 * gigabyte, fat}, ""));
  CHECK(told({fat, 0, 9 * gigabyte, fat}, ""));
  CHECK(told({4 * gigabyte, 0, 9 * gigabyte, fat},
             "the image has 4096 MB, and a drive with the file system FAT32"));
  CHECK(told({4 * gigabyte, 0, 9 * gigabyte, std::nullopt}, ""));
  CHECK(told({gigabyte, 0, gigabyte / 2, std::nullopt}, "not enough space, 1025 MB are needed and 512 MB"));
  CHECK(told({gigabyte, gigabyte, gigabyte / 2, std::nullopt}, ""));
  CHECK(told({gigabyte, 0, std::nullopt, std::nullopt}, ""));
}

TEST_CASE("the image is moved, or copied and kept, and the new place is told") {
  for (const bool keep : {false, true}) {
    Image image;
    image.workspace.settings.keep_image_in_output = keep;
    const std::string path = image.home / "gmapsupp/AMap.img";
    CHECK(image.copy().path == platform::join(image.home / "gmapsupp", "AMap.img"));
    CHECK(image.there("AMap.img") == "new image");
    CHECK(image.source_stays() == keep);
    CHECK(image.prompts.tells() == Texts{"Have found new gmapsupp.img.\r\n\r\nCopied as '" +
                                         platform::join(image.home / "gmapsupp", "AMap.img") + "'"});
    CHECK(image.progress.events_processed >= 2);
  }
}

TEST_CASE("an image that is there already is replaced after a Yes alone") {
  Image image;
  image.home.write("gmapsupp/AMap.img", "old image");
  image.workspace.settings.keep_image_in_output = true;
  SUBCASE("no") {
    image.prompts.answers = {Answer::no};
    CHECK(image.copy().result == StageResult::stopped);
    CHECK(image.there("AMap.img") == "old image");
    CHECK(image.prompts.texts() == Texts{"File exists. Overwrite?"});
  }
  SUBCASE("yes") {
    image.prompts.answers = {Answer::yes};
    CHECK(image.copy().result == StageResult::done);
    CHECK(image.there("AMap.img") == "new image");
  }
  SUBCASE("a script asks nothing; what is told is for its report") {
    image.workspace.script_running = true;
    CHECK(image.copy().result == StageResult::done);
    CHECK(image.there("AMap.img") == "new image");
    CHECK(image.prompts.texts().size() == 1);
    CHECK(image.prompts.tells().size() == 1);
  }
  SUBCASE("stopped half-way") {
    image.prompts.answers = {Answer::yes};
    image.progress.stop = true;
    CHECK(image.copy().result == StageResult::cancelled);
    CHECK(image.there("AMap.img") == "old image");
    CHECK(image.prompts.tells() == Texts{"Process cancelled"});
  }
  CHECK(image.source_stays());
  CHECK(list_files(image.home / "gmapsupp", {""}) == Texts{"AMap.img"});
}

TEST_CASE("an image that cannot go anywhere stays where it is, with a reason") {
  Image image;
  SUBCASE("not made by this build") {
    CHECK(image.copy(image_dates(image.workspace.settings)).result == StageResult::failed);
    CHECK(image.prompts.tells() == Texts{"IMG not created."});
  }
  SUBCASE("a drive that is not plugged in is not made up as a folder") {
    image.set("image-folder={home}/GARMIN");
    image.prompts.chosen = {std::nullopt};
    CHECK(image.copy().result == StageResult::stopped);
    CHECK(image.prompts.tells().front().starts_with("Cannot find folder:\r\n" + (image.home / "GARMIN")));
    CHECK_FALSE(file_exists(image.home / "GARMIN"));
  }
  SUBCASE("a target that is too short to be one") {
    image.workspace.settings.image_folder = platform::separator == '/' ? "/x" : "C:\\";
    CHECK(image.copy().result == StageResult::stopped);
  }
  SUBCASE("a folder has the name of the image") {
    image.home.write("gmapsupp/AMap.img/x", "");
    image.prompts.answers = {Answer::yes};
    CHECK(image.copy().result == StageResult::failed);
  }
  CHECK(image.source_stays());
}

TEST_CASE("an image whose target is its own place is never deleted") {
  Image image;
  image.set("image-folder={home}/out; image-named-after-map=0; image-name=gmapsupp");
  image.prompts.default_answer = Answer::yes;
  CHECK(image.copy().result == StageResult::done);
  CHECK(image.source_stays());
}

TEST_CASE("a drive's Garmin folder takes the image") {
  const test::TempFolder home;
  CHECK(image_folder_on({"G", home.path()}) == home.path());
  home.write("garmin/x", "");
  CHECK(image_folder_on({"G", home.path()}) == home / "garmin");
}

TEST_CASE("a build hands its image on; the report and the list of built files follow it") {
  test::StandIn made;
  made.set("gmapsupp-folder={home}/gmapsupp; map-name=A Map");
  const auto make = [&] {
    return make_map(made.workspace, made.prompts, made.progress, BuildServices{}, {});
  };
  const std::string moved = platform::join(made.home / "gmapsupp", "AMap.img");
  const BuildReport report = make();
  CHECK(report.result == StageResult::done);
  CHECK(report.image == moved);
  REQUIRE(report.stages.size() == 2);
  CHECK(report.stages.back().stage == "device image");
  const auto& files = made.workspace.built_files;
  CHECK(std::find(files.begin(), files.end(), moved) != files.end());
  CHECK(file_has_content(moved));
  SUBCASE("a build that fails hands on nothing") {
    made.set_mode("style-error");
    made.prompts.said.clear();
    CHECK(make().stages.size() == 1);
    CHECK(read_whole_file(moved) == "device image");
  }
  SUBCASE("without an installer builder, one that is wanted stops the build before it begins") {
    made.set("installer=1; makensis={home}/none");
    made.prompts.said.clear();
    CHECK(make().stages.empty());
    CHECK(made.prompts.tells().back() == "Please locate makensis.exe in settings. Download from NSIS site");
  }
}
