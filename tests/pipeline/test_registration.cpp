#include "pipeline/registration.hpp"

#include <doctest/doctest.h>

#include <filesystem>
#include <system_error>
#include <thread>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/cleanup.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration_repair.hpp"
#include "pipeline/registry_turn.hpp"
#include "support/built_map.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

using test::Built;
using test::typ_of_family;

TEST_CASE("a built map is copied, described, imported and read back, and goes without a trace") {
  Built test;
  REQUIRE(test.register_map() == StageResult::done);
  CHECK(test.report.registered_folder == test.folder());
  CHECK(test.prompts.tells() == Texts{"'My Map' installed successfully"});
  CHECK(list_files(test.folder(), {""}) == Texts{"0.reg", "13224385.img", "My Map.reg", "abc.img", "abc.mdx",
                                                 "abc.tdb", "abc_mdr.img", "files.list", "ovm_13224385.img"});
  CHECK(read_whole_file(platform::join(test.in_folder("typ"), "xmy.typ")) == typ_of_family(1000));
  CHECK(read_whole_file(test.in_folder("0.reg")) == last_used_text({"e8,03", "", ""}));

  const std::vector<InstalledMap> maps =
      installed_maps(*test.registry, test.workspace.messages, test.prompts);
  REQUIRE(maps.size() == 1);
  CHECK(maps[0].product == "My Map");
  CHECK(maps[0].fid == "1000");
  CHECK(maps[0].path == test.folder());
  CHECK(test.registry->system_path(maps[0].typ) == platform::join(test.in_folder("typ"), "xmy.typ"));
  CHECK(test.registry->system_path(maps[0].index) == test.in_folder("abc.mdx"));
  CHECK(test.workspace.registered_fids == ",1000,");
  CHECK(test.workspace.registered_names == ",My Map,");
  CHECK(get_regvals(*test.registry, maps[0].key).front() == "ID = e8 03");

  // Neither the product nor its number is taken twice.
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(test.prompts.tells().back() == "FID 1000 exists in Mapsource. Can't upload map.");
  test.set("map-name=Other");
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(test.prompts.tells() ==
        Texts{"FID 1000 exists in Basecamp. ", "FID 1000 exists in Mapsource. Can't upload map."});
  CHECK_FALSE(file_exists(platform::join(test.home / "out", "Other")));

  test.add_family("Neighbour", "e9,03", "Z:\\elsewhere");
  test.prompts.answers = {Answer::no, Answer::yes};
  CHECK(test.remove("My Map") == StageResult::stopped);
  CHECK(test.prompts.asks() ==
        Texts{"Remove 'My Map'?\r\nDo you wish to delete folder & all the files in " + test.folder()});
  CHECK(file_exists(test.in_folder("abc.tdb")));
  const Registry::Key last = test.registry->key(R"(HKEY_CURRENT_USER\Software\Garmin\MapSource\Settings)");
  CHECK(find_value(last, "MRUProduct") != nullptr);
  CHECK(test.remove("my map") == StageResult::done);
  CHECK(find_value(test.registry->key(R"(HKEY_CURRENT_USER\Software\Garmin\MapSource\Settings)"),
                   "MRUProduct") == nullptr);
  CHECK(test.prompts.tells() == Texts{"All files were removed."});
  CHECK_FALSE(file_exists(test.folder()));
  CHECK(file_exists(test.home / "out"));
  CHECK(read_whole_file(test.workspace.built_files.front()) == "tile");  // the build's own files stay
  CHECK(test.workspace.registered_names == ",Neighbour,");
  CHECK(test.progress.statuses.back() == "Click Create Map");
  CHECK(test.remove("My Map") == StageResult::stopped);
  CHECK(test.prompts.tells() == Texts{"Cannot find map to remove.\r\nMy Map"});
}

TEST_CASE("registering again replaces what an earlier registration left in the folder, and nothing else") {
  Built test;
  test.workspace.built_files.push_back(test.home.write("out/99999999.img", "older tile"));
  REQUIRE(test.register_map() == StageResult::done);
  REQUIRE(file_exists(test.in_folder("99999999.img")));
  REQUIRE(test.registry->remove_key(family_key("My Map", test.registry->is_64bit()), {}).ok());
  for (const char* own : {"own.img", "own.tdb", "own.reg", "notes.txt"})
    test.home.write("out/My_Map/" + std::string(own), own);
  test.tdb[5] = '\x01';  // another family
  test.build();
  REQUIRE(test.register_map() == StageResult::done);
  CHECK_FALSE(file_exists(test.in_folder("99999999.img")));
  for (const char* own : {"own.img", "own.tdb", "own.reg", "notes.txt"})
    CHECK(read_whole_file(test.in_folder(own)) == own);
  CHECK(test.workspace.registered_fids == ",769,");
  // The TYP carries the number of the map, whatever mkgmap was given.
  CHECK(read_whole_file(platform::join(test.in_folder("typ"), "xmy.typ")) == typ_of_family(769));

  // A file of the person's own is not replaced either.
  REQUIRE(test.registry->remove_key(family_key("My Map", test.registry->is_64bit()), {}).ok());
  test.workspace.built_files.push_back(test.home.write("out/own.img", "tile"));
  CHECK(test.register_map() == StageResult::failed);
  CHECK(contains(test.prompts.tells().front(), "own.img was not put there by a registration"));
  CHECK(read_whole_file(test.in_folder("own.img")) == "own.img");
}

TEST_CASE("names that the registry or the disk takes for one: the map that was there first stays") {
  Built test;
  const auto seen = [&](const std::string& path) { return test.registry->registered_path(path); };
  test.set("map-name=Łódź");
  test.add_family("łódź", "01,02", seen(test.home / "elsewhere"));
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(test.prompts.tells() == Texts{"Mapname 'Łódź' exists in registry."});
  CHECK(test.workspace.product_to_replace == "Łódź");
  test.set("map-name=My_Map");
  test.add_family("My Map", "02,02", seen(test.folder()));
  test.home.write("out/My_Map/files.list", "abc.img");
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(contains(test.prompts.tells().back(), "is the folder of the registered map 'My Map' (FID 514)"));
  test.prompts.answers = {Answer::yes};
  CHECK(test.remove("ŁÓDŹ") == StageResult::done);
  CHECK_FALSE(test.registry->key(family_key("łódź", test.registry->is_64bit())).exists);
  test.set("map-name=A, B");
  test.add_family("x,A", "03,02", seen(test.home / "elsewhere"));
  test.set("map-name=x");
  CHECK(test.register_map() == StageResult::done);  // "x" stands in a list of names that is told by commas
}

TEST_CASE("a map of the program's own store keeps its folder and its number beside a Wine prefix") {
  Built test;
  Built other;  // its store is opened beside the one of the test
  REQUIRE(test.register_map() == StageResult::done);
  const std::string store = test.workspace.path("system/registry.reg");
  REQUIRE(make_folder(platform::folder_of(store)).ok());
  REQUIRE(copy_file(test.home / "registry.reg", store).ok());
  test.registry = std::move(other.registry);
  const CleanupServices services = cleanup_services(test.workspace, test.prompts, test.progress);
  CHECK(services.registered_folders().value == Texts{test.folder()});
  test.set("map-name=My_Map");
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(test.prompts.tells().back() == "FID 1000 exists in Mapsource. Can't upload map.");
  test.tdb[5] = '\x01';
  test.build();
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(contains(test.prompts.tells().back(), "is the folder of the registered map 'My Map' (FID 1000)"));
}

TEST_CASE("a registration text is recovered in the folder that it names, and never over another map") {
  Built test;
  REQUIRE(test.register_map() == StageResult::done);
  const std::string text = test.in_folder("My Map.reg");
  CHECK(recovery_problem(*test.registry, text).ok());
  const std::string moved = test.home.write("out/moved/My Map.reg", read_whole_file(text));
  CHECK(contains(recovery_problem(*test.registry, moved).error, "registers a map in another folder"));
  const std::string elsewhere = test.registry->registered_path(test.home.path());
  test.add_family("MY MAP", "01,02", elsewhere);
  CHECK(contains(recovery_problem(*test.registry, text).error, "a map of this name is registered already"));
}

TEST_CASE("several maps of one name: none goes unless it is said which one") {
  Built test;
  if (!test.registry->is_64bit()) return;  // one view of the registry holds a name once
  const auto seen = [&](const std::string& path) { return test.registry->registered_path(path); };
  const std::string tdb = test.home.write("shared/map.tdb", "P");
  const std::string folder = platform::folder_of(tdb);
  test.add_family("X", "01,02", seen(folder), seen(tdb));
  RegistrationFacts plain{"X", "02,02", seen(folder), seen(folder), seen(tdb), "", "", "", false};
  REQUIRE(test.registry->import_file(test.home.write("x.reg", registration_text(plain)), {}).ok());
  CHECK(test.remove("X") == StageResult::stopped);
  CHECK(contains(test.prompts.tells().back(), "Several maps have the name 'X'"));
  test.prompts.said.clear();
  test.prompts.answers = {Answer::yes};
  CHECK(remove_registered_map(test.workspace, test.prompts, test.progress, *test.registry, {"X", "514"}) ==
        StageResult::failed);
  CHECK(contains(test.prompts.tells().back(), "This may affect other maps using same folder."));
  CHECK(file_exists(tdb));
  CHECK(test.workspace.registered_fids == ",513,");
}

TEST_CASE("what cannot be registered leaves nothing behind, with its reason") {
  struct Case {
    const char* what;
    std::function<void(Built&)> spoil;
    std::string told;
    StageResult result;
  };
  const std::vector<Case> cases = {
      {"an empty TDB", [](Built& test) { test.home.write("out/abc.tdb", ""); },
       "this file does not begin as a TDB file does.", StageResult::failed},
      {"a TDB of something else", [](Built& test) { test.home.write("out/abc.tdb", "Q?\1\1\1\1\1\1"); },
       "this file does not begin as a TDB file does.", StageResult::failed},
      {"no TDB at all",
       [](Built& test) { test.workspace.built_files.erase(test.workspace.built_files.begin() + 5); },
       "Cannot find the TDB file of this map.", StageResult::failed},
      {"a vanished tile", [](Built& test) { REQUIRE(remove_file(test.workspace.built_files[0]).ok()); },
       "13224385.img", StageResult::failed},
      {"a name that is no key", [](Built& test) { test.workspace.settings.map_name = "a\\b"; },
       "'a\\b' cannot be registered: its name holds a backslash or a control character.",
       StageResult::stopped},
      {"a store that cannot be read", [](Built& test) { test.home.write("registry.reg", "rubbish"); },
       "registry.reg: line 1: no registry text begins so", StageResult::failed},
  };
  for (const Case& one : cases) {
    CAPTURE(one.what);
    Built test;
    one.spoil(test);
    CHECK(test.register_map() == one.result);
    REQUIRE_FALSE(test.prompts.tells().empty());
    CHECK_MESSAGE(contains(join_texts(test.prompts.tells(), "\n"), one.told),
                  join_texts(test.prompts.tells(), "\n"));
    CHECK(test.report.registered_folder.empty());
    CHECK_FALSE(file_exists(test.folder()));
  }
}

TEST_CASE("a folder with other things in it never becomes a map's") {
  Built test;
  const std::string letter = test.home.write("out/My_Map/letter.txt", "dear");
  CHECK(test.register_map() == StageResult::stopped);
  CHECK(contains(test.prompts.tells().front(), "holds other files than those of a map"));
  CHECK(read_whole_file(letter) == "dear");
  CHECK(list_files(test.folder(), {""}) == Texts{"letter.txt"});
}

TEST_CASE("an import that is not found in the registry afterwards is told, not believed") {
  // Takes everything and keeps the family without its paths, as a registry editor without rights might.
  struct Deaf : Registry {
    Key key(const std::string& path) override {
      return path + "\\" == family_key("", false) && imported ? Key{true, {"My Map"}, {}, {}} : Key{};
    }
    Status import_file(const std::string& /*path*/, const std::function<void()>& /*tick*/) override {
      imported = true;
      return {};
    }
    Status remove_key(const std::string& path, const std::function<void()>& /*tick*/) override {
      removed.push_back(path);
      return {};
    }
    void refresh() override {}
    [[nodiscard]] std::string registered_path(const std::string& path) const override { return path; }
    [[nodiscard]] std::string system_path(const std::string& path) const override { return path; }
    [[nodiscard]] bool is_64bit() override { return false; }
    [[nodiscard]] std::string user_identifier() override { return "S-1-5-21-1"; }
    [[nodiscard]] std::vector<std::string> package_folders() const override { return {}; }
    bool imported = false;
    Texts removed;
  };
  Built test;
  Deaf registry;
  CHECK(register_built_map(test.workspace, test.prompts, test.progress, registry, test.report) ==
        StageResult::failed);
  const Texts tells = test.prompts.tells();
  REQUIRE(tells.size() == 2);
  CHECK(tells[0] ==
        "Error adding to registry\r\nMy Map: ID, IDX, MDR, TYP, LOC, BMAP, TDB cannot be read back");
  CHECK(tells[1] ==
        "Run program as Administrator\r\nor go Tools --> 'Fix Registry Problem'\r\n"
        "Install manually : Tools -->'Create Window Installer'.\r\nor double click on .reg file.");
  CHECK(registry.removed == Texts{family_key("My Map", false)});
  CHECK(read_whole_file(test.in_folder("0.reg")) == last_used_text({"e8,03", "S-1-5-21-1", ""}));
}

TEST_CASE("removing: folders that must not go stay, the keys go") {
  Built test;
  const std::string tdb = test.home.write("letters/map.tdb", "P");
  const std::string letters = platform::folder_of(tdb);
  const auto seen = [&](const std::string& path) { return test.registry->registered_path(path); };
  std::error_code no_links;  // not every system can make one
  std::filesystem::create_directory_symlink(platform::file_system_path(letters),
                                            platform::file_system_path(test.home / "link"), no_links);
  const std::string home_folder = platform::home_folder();
  struct Case {
    std::string location, tdb;
  };
  const std::vector<Case> cases = {
      {platform::separator == '/' ? "Z:\\" : "C:\\", ""},
      {"C:\\", ""},
      {"", ""},
      {seen(home_folder), ""},
      {seen(test.home.path()), seen(tdb)},
      {seen(test.home / "out"), seen(test.workspace.built_files[5])},
      {seen(test.home / "link"), seen(platform::join(test.home / "link", "map.tdb"))},
      {seen(letters), seen(test.workspace.built_files[5])}};
  for (const Case& one : cases) {
    if (no_links && contains(one.location, "link")) continue;
    CAPTURE(one.location);
    test.add_family("Bad", "01,02", one.location, one.tdb);
    test.prompts.answers = {Answer::yes};
    CHECK(test.remove("Bad") == StageResult::failed);
    CHECK(test.prompts.asks() == Texts{"Remove 'Bad'?"});
    CHECK(test.prompts.tells().back().starts_with(
        "Not all files were removed\r\nPlease remove files manually"));
    CHECK_FALSE(test.registry->key(family_key("Bad", test.registry->is_64bit())).exists);
    CHECK(file_exists(tdb));
    CHECK(file_exists(test.workspace.built_files[0]));
  }
  // Two families in one folder: the other one keeps its files.
  test.add_family("One", "01,02", seen(letters), seen(tdb));
  test.add_family("Two", "02,02", seen(letters), seen(tdb));
  test.prompts.answers = {Answer::yes, Answer::yes};
  CHECK(test.remove("One") == StageResult::failed);
  CHECK(contains(test.prompts.tells().back(), "This may affect other maps using same folder."));
  CHECK(file_exists(tdb));
  CHECK(test.remove("Two") == StageResult::done);
  CHECK_FALSE(file_exists(letters));
}

TEST_CASE("files that another program holds: closed when the person agrees, asked for until it is so") {
  Built test;
  REQUIRE(test.register_map() == StageResult::done);
  REQUIRE(test.registry->remove_key(family_key("My Map", test.registry->is_64bit()), {}).ok());
  int holds = 0;
  Texts closed;
  HeldFiles held{[&](const std::string& /*path*/) { return holds-- > 0; },
                 [&](const Texts& parts) {
                   closed = parts;
                   return 1;
                 },
                 0};
  holds = 2;
  test.prompts.answers = {Answer::yes};
  CHECK(test.register_map(held) == StageResult::done);
  CHECK(closed == Texts{"basecamp", "mapsourse", "mapinstall", "garmin"});
  CHECK(test.prompts.texts() == Texts{"Type in use by another program, ie Mapsource/Basecamp/Mapinstall.",
                                      "Will try & close this down. This may take 10 secs.",
                                      "Close Mapsource/Basecamp?", "'My Map' installed successfully"});
  CHECK(comma_list_holds(join_texts(test.progress.statuses, ","),
                         "Closing Basecamp/Mapinstall/Mapsource. Please wait"));
  holds = 1000;
  test.prompts.answers = {Answer::yes, Answer::no, Answer::yes, Answer::no};
  CHECK(test.remove("My Map", held) == StageResult::stopped);
  CHECK(test.prompts.asks().back() == ". Please close Basecamp/Mapinstall/Mapsource.\r\nTry again?");
  CHECK(file_exists(test.in_folder("abc.tdb")));
  CHECK(test.workspace.registered_names == ",My Map,");
}

TEST_CASE("two programs that register the same family at once: one of them does, the other is told") {
  Built one, other;
  other.registry = embedded_registry(one.home / "registry.reg");
  other.set("map-name=Another Map");
  StageResult results[2] = {};
  std::thread first([&] { results[0] = one.register_map(); });
  std::thread second([&] { results[1] = other.register_map(); });
  first.join();
  second.join();
  CHECK((results[0] == StageResult::done) != (results[1] == StageResult::done));
  const Built& refused = results[0] == StageResult::done ? other : one;
  CHECK(refused.prompts.tells().back() == "FID 1000 exists in Mapsource. Can't upload map.");
  CHECK(installed_maps(*embedded_registry(one.home / "registry.reg"), one.workspace.messages, one.prompts)
            .size() == 1);

  RegistryTurn held;
  REQUIRE(held.take(one.progress).ok());
  RegistryTurn late;
  CHECK_FALSE(late.take(one.progress, std::chrono::milliseconds(1)).ok());
}

TEST_CASE("launching: the label, and a program that is not there") {
  Built test;
  test.workspace.settings.launch_program = "Mapsource";
  test.workspace.settings.mapsource = test.home / "mapsource.exe";
  CHECK(launch_label(test.workspace.settings) == "Launch Mapsource");
  test.prompts.answers = {Answer::no, Answer::yes};
  CHECK_FALSE(mapsource(test.workspace, test.prompts, *test.registry));
  CHECK(test.prompts.tells().empty());
  CHECK_FALSE(mapsource(test.workspace, test.prompts, *test.registry));
  CHECK(test.prompts.texts() == Texts{"Launch Basecamp/Mapsource?", "Launch Basecamp/Mapsource?",
                                      "Use Settings to locate Mapsource"});
}

TEST_CASE("installed maps: every place of the registry, packages, values for display") {
  Built test;
  const std::string garmin = garmin_machine_key(test.registry->is_64bit());
  const std::string plain = garmin_machine_key(false);
  const std::string text =
      "REGEDIT4\n[" + plain + "MapSource\\Families\\b]\n\"ID\"=hex:02,00\n[" + plain +
      "mapsource\\familiesnt\\A]\n\"ID\"=hex:01\n[" + plain + "Installed\\c]\n\"LOC\"=\"Z:\\\\c\"\n[" +
      plain + "mapsource\\familiesnt\\B]\n\"ID\"=hex:02,00\n[" + plain +
      "X]\n@=\"d\"\n\"n\"=hex(0):\n\"e\"=hex(2):41,00\n\"be\"=hex(5):00,00,00,01\n"
      "\"m\"=hex(7):00,00\n\"l\"=hex(6):00\n\"r\"=hex(8):\n\"f\"=hex(9):\n\"q\"=hex(a):\n"
      "\"d\"=dword:0000000a\n";
  REQUIRE(test.registry->import_file(test.home.write("a.reg", text), {}).ok());
  test.prompts.said.clear();
  std::string listed;
  for (const InstalledMap& map : querymapsource(test.workspace, *test.registry, test.prompts, test.progress))
    listed += map.product + ":" + map.fid + ":" + map.location + " ";
  CHECK(listed == "A:: b:2: c::Z:\\c ");
  CHECK(test.workspace.registered_fids == ",2,");
  CHECK(test.workspace.registered_names == ",A,b,c,");
  CHECK(test.progress.statuses.back() == "Collecting FID");
  CHECK(get_regvals(*test.registry, plain + "X") ==
        Texts{"(Default) = \"d\"", "n = [none]", "e = [expand sz]", "be = [dword big endian]",
              "m = [multi sz]", "l = [link]", "r = [resource list]", "f = [full resource descriptor]",
              "q = [resource requirements list]", "d = 0x0000000a"});

  const InstalledMap package = parse_package_info(
      "<?xml version=\"1.0\"?><MapProduct><Name>A &amp; B</Name><ID>2000</ID><TYP>x.TYP</TYP>"
      "<SubProduct><Name>Sub</Name><ID>1</ID><TDB>a.tdb</TDB></SubProduct></MapProduct>");
  CHECK((package.product == "A & B" && package.fid == "2000" && package.typ == "x.TYP"));
  CHECK(parse_package_info("<Name>open <ID>x</ID>").fid.empty());
}
