#include "pipeline/cleanup.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

namespace fs = std::filesystem;

struct Cleaning : test::StandIn {
  Cleaning() {
    maps = home / "maps";
    set("output-folder={home}/maps; map-folder={home}/maps");
    add("used");
    add("old");
    home.write("maps/no map/readme.txt", "mine");
    services.registered_folders = [this] { return Result<Texts>{registered, ""}; };
    services.import_registration = [this](const std::string& path) {
      imported.push_back(path);
      return Status{};
    };
    registered = {platform::join(maps, "USED"), platform::join(maps, "old2"), ""};
  }
  std::string add(const std::string& name) const {
    home.write("maps/" + name + "/osmmap.TDB", "P");
    home.write("maps/" + name + "/1.img", "image");
    return in_maps(name);
  }
  [[nodiscard]] std::string in_maps(const std::string& name) const { return platform::join(maps, name); }
  Texts unused() { return unused_maps(workspace, services, maps).value; }
  bool kill(const std::string& folder) { return killfolder(workspace, prompts, folder); }
  StageResult remove(const Texts& folders) {
    return delete_unused_maps(workspace, prompts, services, folders);
  }

  std::string maps;
  Texts registered, imported;
  CleanupServices services;
};

}  // namespace

TEST_CASE("unused maps: whole entries are compared, without regard to case") {
  Cleaning clean;
  CHECK(clean.unused() == Texts{clean.in_maps("old")});
  clean.registered.push_back(platform::join(clean.in_maps("used/../old"), ""));
  CHECK(clean.unused().empty());
  CHECK(find_unused_maps(clean.workspace, clean.prompts, clean.services, {clean.maps, "none"}).ok());
  CHECK(clean.prompts.tells() == Texts{"None found in folder: " + clean.maps, "None found in folder: none"});
}

TEST_CASE("without a sure list of registered maps nothing is unused") {
  Cleaning clean;
  clean.services.registered_folders = [] { return failed<Texts>("no registry"); };
  CHECK(unused_maps(clean.workspace, clean.services, clean.maps).error == "no registry");
  CHECK_FALSE(unused_maps(clean.workspace, {}, clean.maps).ok());
  clean.prompts.default_answer = Answer::yes;
  CHECK(clean.remove({clean.in_maps("old")}) == StageResult::failed);
  CHECK(file_exists(clean.in_maps("old")));
}

TEST_CASE("the output folder is never unused, nor is one that holds a folder of the settings") {
  Cleaning clean;
  clean.add("out");
  clean.add("above");
  clean.set("output-folder={home}/maps/out; style=x; styles-folder={home}/maps/above/styles");
  CHECK(clean.unused() == Texts{clean.in_maps("old")});
  CHECK(map_target_folders(clean.workspace.settings) == Texts{clean.in_maps("out"), clean.maps});
}

TEST_CASE("folders that are never deleted") {
  Cleaning clean;
  const std::string root = platform::separator == '/' ? "/" : "C:\\";
  const Texts refused = {"",
                         " ",
                         "old",
                         ".",
                         root,
                         root + ".",
                         platform::home_folder(),
                         clean.home.path(),
                         platform::folder_of(clean.home.path()),
                         clean.maps,
                         clean.in_maps("old/../..")};
  for (const std::string& folder : refused) {
    CAPTURE(folder);
    clean.prompts.said.clear();
    CHECK_FALSE(clean.kill(folder));
    CHECK(clean.prompts.tells().size() == 1);
    CHECK(contains(clean.prompts.tells().front(), "is not deleted: "));
  }
  CHECK(file_exists(clean.home / "map.osm"));
  CHECK(file_exists(clean.in_maps("old/1.img")));
}

TEST_CASE("killfolder deletes files and the typ subfolder, and nothing else that is a folder") {
  Cleaning clean;
  const std::string old = clean.in_maps("old");
  clean.home.write("maps/old/typ/x.typ", "");
  SUBCASE("all of it") {
    CHECK(clean.kill(platform::join(old, "")));
    CHECK_FALSE(file_exists(old));
    CHECK(clean.prompts.said.empty());
  }
  SUBCASE("a folder of somebody's") {
    clean.home.write("maps/old/photos/1.jpg", "mine");
    CHECK_FALSE(clean.kill(old));
    CHECK(read_whole_file(clean.in_maps("old/photos/1.jpg")) == "mine");
    CHECK_FALSE(file_exists(clean.in_maps("old/typ")));
    CHECK(clean.prompts.tells() == Texts{"Not all files deleted in " + old + "\r\nFile(s) write protected."});
  }
  SUBCASE("a folder in typ stays") {
    clean.home.write("maps/old/typ/deep/x", "mine");
    CHECK_FALSE(clean.kill(old));
    CHECK(file_exists(clean.in_maps("old/typ/deep/x")));
  }
}

#ifndef _WIN32
TEST_CASE("links are never followed") {
  Cleaning clean;
  clean.home.write("mine/osmmap.tdb", "mine");
  clean.home.write("mine/typ/t.typ", "mine");
  const std::string mine = clean.home / "mine";
  fs::create_directory_symlink(mine, clean.in_maps("link"));
  CHECK(clean.unused() == Texts{clean.in_maps("old")});
  for (const char* folder : {"link", "link/"})
    CHECK_FALSE(clean.kill(clean.in_maps(folder)));
  CHECK(file_exists(clean.in_maps("link")));
  SUBCASE("links in the folder go, what they lead to stays") {
    fs::create_directory_symlink(clean.home / "mine/typ", clean.in_maps("old/typ"));
    fs::create_directory_symlink(mine, clean.in_maps("old/away"));
    fs::create_symlink(clean.home / "mine/osmmap.tdb", clean.in_maps("old/file"));
    CHECK(clean.kill(clean.in_maps("old")));
    CHECK_FALSE(file_exists(clean.in_maps("old")));
  }
  SUBCASE("a folder of the settings behind a link") {
    fs::create_directory_symlink(clean.maps, clean.home / "other");
    clean.set("output-folder={home}/maps/old");
    CHECK_FALSE(clean.kill(clean.home / "other/old"));
    CHECK(file_exists(clean.in_maps("old/1.img")));
  }
  SUBCASE("a registered folder behind a link") {
    fs::create_directory_symlink(clean.in_maps("old"), clean.home / "registered");
    clean.registered.push_back(clean.home / "registered");
    CHECK(clean.unused().empty());
  }
  CHECK(read_whole_file(clean.home / "mine/osmmap.tdb") == "mine");
  CHECK(read_whole_file(clean.home / "mine/typ/t.typ") == "mine");
}
#endif

TEST_CASE("deleting: only after a Yes, and only what is unused at that moment") {
  Cleaning clean;
  CHECK(clean.remove({}) == StageResult::stopped);
  CHECK(clean.prompts.texts() == Texts{"Tick box to select folders."});
  clean.prompts.said.clear();
  const Texts all = {clean.in_maps("old"), clean.in_maps("used"), clean.in_maps("no map"), clean.home.path()};
  clean.prompts.answers = {Answer::no, Answer::yes};
  CHECK(clean.remove(all) == StageResult::stopped);
  CHECK(file_exists(clean.in_maps("old")));
  CHECK(clean.remove(all) == StageResult::failed);
  CHECK(clean.prompts.asks() ==
        Texts(2, "Are you sure you want to delete these maps?\r\n" + join_texts(all, "\r\n")));
  CHECK(clean.prompts.tells().size() == 3);
  CHECK_FALSE(file_exists(clean.in_maps("old")));
  for (const char* kept : {"maps/used/1.img", "maps/no map/readme.txt", "map.osm"})
    CHECK(file_exists(clean.home / kept));
}

TEST_CASE("recovering registers one map again from its own .reg file") {
  Cleaning clean;
  const Texts old = {clean.in_maps("old")};
  const auto recover = [&](const Texts& folders) {
    return recover_map(clean.workspace, clean.prompts, clean.services, folders);
  };
  CHECK(recover({}) == Recovery::refused);
  CHECK(recover({"a", "b"}) == Recovery::refused);
  CHECK(clean.prompts.tells() == Texts{"Please select.", "Please select only 1 map."});
  clean.prompts.said.clear();
  clean.home.write("maps/old/0.reg", "last used");
  CHECK(recover(old) == Recovery::nothing_found);
  CHECK(clean.imported.empty());
  CHECK(clean.prompts.tells() ==
        Texts{"\r\nThe map you want to recover might share an FID with another map!"});
  const std::string registration = clean.home.write("maps/old/A Map.REG", "REGEDIT4");
  CHECK(recover(old) == Recovery::done);
  CHECK(clean.imported == Texts{platform::join(clean.in_maps("old"), "A Map.REG")});
  CHECK(clean.prompts.tells().back() == "'old' installed successfully");
  clean.registered.push_back(clean.in_maps("old"));
  CHECK(recover(old) == Recovery::refused);
  CHECK(clean.prompts.tells().back() == "'" + clean.in_maps("old") + "' is registered already.");
  CHECK(clean.imported.size() == 1);
  clean.registered.pop_back();
  clean.services.import_registration = [](const std::string&) { return Status{"no registry"}; };
  CHECK(recover(old) == Recovery::failed);
  CHECK(clean.prompts.tells().back() == "no registry");
}
