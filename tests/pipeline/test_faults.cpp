// Every file operation of the stages that put a map in its place fails once, alone or with all that follow:
// nothing wrong is deleted, and nothing is left half done without a word.
#include <doctest/doctest.h>

#include <filesystem>
#include <functional>

#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/tool_script.hpp"
#include "pipeline/cleanup.hpp"
#include "pipeline/device_image.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration_repair.hpp"
#include "support/built_map.hpp"
#include "support/faults.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using test::Built;

namespace {

constexpr int most_operations = 2000;

// A map of somebody else beside the built one, with its files.
struct Place : Built {
  Place() {
    others = home.write("others/map.tdb", "P-others");
    add_family("Others", "02,02", registry->registered_path(platform::folder_of(others)),
               registry->registered_path(others));
    prompts.default_answer = Answer::yes;
    for (const std::string& path : workspace.built_files)
      built.emplace_back(path, read_whole_file(path));
  }
  // As a later start of the program sees it.
  [[nodiscard]] const InstalledMap* find(const std::string& product) {
    test::FakePrompts unheard;
    maps = installed_maps(*embedded_registry(home / "registry.reg"), workspace.messages, unheard);
    for (const InstalledMap& map : maps) {
      if (map.product == product) return &map;
    }
    return nullptr;
  }
  void check_others() {
    const InstalledMap* map = find("Others");
    REQUIRE(map != nullptr);
    CHECK(map->fid == "514");
    CHECK(read_whole_file(others) == "P-others");
    for (const auto& [path, bytes] : built)
      CHECK((read_whole_file(path) == bytes || platform::name_of(path) == device_image_name));
  }
  // A registered map is there with all that its entries name.
  void check_registered() {
    const InstalledMap* map = find("My Map");
    if (map == nullptr) return;
    for (const std::string& path : {map->tdb, map->overview_map, map->index, map->typ})
      CHECK_MESSAGE(file_exists(registry->system_path(path)), path);
  }
  void check_told(StageResult result) { CHECK((result == StageResult::done || !prompts.said.empty())); }

  std::string others;
  std::vector<std::pair<std::string, std::string>> built;
  std::vector<InstalledMap> maps;
};

using Step = std::function<void(Place&)>;

// Runs `act` once for every operation in it, that one failing; `check` looks at what is left.
void at_every_operation(const Step& prepare, const Step& act, const Step& check) {
  for (const bool all_that_follow : {false, true}) {
    int number = 1;
    for (bool happened = true; happened && number < most_operations; ++number) {
      CAPTURE(number);
      CAPTURE(all_that_follow);
      Place place;
      prepare(place);
      place.prompts.said.clear();
      {
        const test::Faults faults(number, all_that_follow);
        act(place);
        happened = faults.happened();
      }
      place.check_others();
      check(place);
    }
    CHECK(number > 3);  // the faults have reached the work
    CHECK(number < most_operations);
  }
}

}  // namespace

TEST_CASE("faults while a map is registered") {
  StageResult result = StageResult::done;
  at_every_operation([](Place&) {}, [&](Place& place) { result = place.register_map(); },
                     [&](Place& place) {
                       place.check_told(result);
                       if (result == StageResult::done) CHECK(place.find("My Map") != nullptr);
                       if (result != StageResult::done && place.find("My Map") != nullptr)
                         CHECK(contains(join_texts(place.prompts.tells(), "\n"), "Error adding to registry"));
                       place.check_registered();
                     });
}

TEST_CASE("faults while a map is removed") {
  StageResult result = StageResult::done;
  at_every_operation([](Place& place) { REQUIRE(place.register_map() == StageResult::done); },
                     [&](Place& place) { result = place.remove("My Map"); },
                     [&](Place& place) {
                       place.check_told(result);
                       place.check_registered();
                       if (result != StageResult::done) return;
                       CHECK(place.find("My Map") == nullptr);
                       CHECK_FALSE(file_exists(place.folder()));
                     });
}

TEST_CASE("faults while unused maps are deleted and registered again") {
  StageResult result = StageResult::done;
  const auto forget_map = [](Place& place) {
    REQUIRE(place.register_map() == StageResult::done);
    REQUIRE(place.registry->remove_key(family_key("My Map", place.registry->is_64bit()), {}).ok());
  };
  CleanupServices services;
  const auto serve = [&](Place& place) {
    services.registered_folders = [&] {
      place.registry->refresh();
      if (const std::string problem = place.registry->problem(); !problem.empty())
        return failed<std::vector<std::string>>(problem);
      return Result<std::vector<std::string>>{{platform::folder_of(place.others)}, ""};
    };
    services.import_registration = [&](const std::string& file) {
      return import_registration(*place.registry, place.progress, file);
    };
  };
  at_every_operation(
      forget_map,
      [&](Place& place) {
        serve(place);
        result = delete_unused_maps(place.workspace, place.prompts, services, {place.folder()});
      },
      [&](Place& place) {
        place.check_told(result);
        CHECK((result == StageResult::done) == !file_exists(place.folder()));
      });
  Recovery recovery = Recovery::failed;
  at_every_operation(
      forget_map,
      [&](Place& place) {
        serve(place);
        recovery = recover_map(place.workspace, place.prompts, services, {place.folder()});
      },
      [&](Place& place) {
        CHECK((recovery == Recovery::done ? place.find("My Map") != nullptr : !place.prompts.said.empty()));
        place.check_registered();
      });
}

TEST_CASE("faults while a device image is copied") {
  ImageCopy copy;
  const auto prepare = [](Place& place) {
    place.set("gmapsupp-folder={home}/gmapsupp; map-name=A Map; confirm-image-overwrite=1; keep-image=1");
    place.home.write("gmapsupp/AMap.img", "old");
  };
  at_every_operation(
      prepare, [&](Place& place) { copy = gmapsupp(place.workspace, place.prompts, place.progress, {}); },
      [&](Place& place) {
        place.check_told(copy.result);
        const std::string there = read_whole_file(place.home / "gmapsupp/AMap.img");
        const std::string source = read_whole_file(place.home / "out/gmapsupp.img");
        CHECK((there == "old" || there == "device"));
        CHECK((there == "device" || source == "device"));
        if (copy.result == StageResult::done) CHECK(there == "device");
      });
}

TEST_CASE("faults while results of the elevation tools are put in order") {
  const std::vector<std::string> names = {"good", "bad", "none", "new"};
  for (const bool all_that_follow : {false, true}) {
    for (const bool while_clearing : {true, false}) {
      int number = 1;
      for (bool happened = true; happened && number < most_operations; ++number) {
        CAPTURE(number);
        CAPTURE(all_that_follow);
        CAPTURE(while_clearing);
        const test::TempFolder folder;
        std::vector<std::string> paths;
        for (const std::string& name : names)
          paths.push_back(name == "new" ? folder / name : folder.write(name, "old"));
        ExpectedFiles files(paths);
        const auto settle = [&] {
          return files.settle([](const std::string& path) { return read_whole_file(path) == "good"; });
        };
        Status told;
        if (while_clearing) {
          const test::Faults faults(number, all_that_follow);
          told = files.clear_the_way();
          if (!told.ok()) static_cast<void>(settle());
          happened = faults.happened();
        } else {
          REQUIRE(files.clear_the_way().ok());
          for (const char* name : {"good", "bad", "new"})
            folder.write(name, name);
          const test::Faults faults(number, all_that_follow);
          told.error = settle().error;
          happened = faults.happened();
        }
        CHECK((told.ok() || happened));
        for (const std::string& path : paths) {
          const std::string bytes = read_whole_file(path);
          const bool is_old = bytes == "old" || read_whole_file(path + ".before") == "old";
          CHECK_MESSAGE((is_old || bytes == "good" || path.ends_with("new")), path);
          if (while_clearing && !all_that_follow && !told.ok())
            CHECK(bytes == (path.ends_with("new") ? "" : "old"));
        }
      }
      CHECK(number > 3);
    }
  }
}
