#include "app/registry.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const std::string families = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Wow6432Node\Garmin\MapSource\Families)";

// Two objects on the same store see each other's changes, as two runs of the program do.
void check_round_trip(Registry& registry, Registry& other, const test::TempFolder& folder) {
  const std::string file = folder.write(
      "my map.reg", "REGEDIT4\r\n\r\n[" + families + "\\My Map]\r\n\"ID\"=hex:e8,03\r\n[" + families +
                        "\\My Map\\1]\r\n\"LOC\"=\"Z:\\\\a \\\"b\\\"\"\r\n[" + families + "\\My Map 2]\r\n");
  CHECK_FALSE(other.key(families).exists);
  CHECK(registry.import_file(file, {}).error.empty());
  CHECK(registry.key(families).subkeys == Texts{"My Map", "My Map 2"});
  CHECK(text_value(registry.key(families + R"(\my map\1)"), "loc") == "Z:\\a \"b\"");
  const platform::RegistryValue* id = nullptr;
  const Registry::Key key = registry.key(families + R"(\My Map)");
  id = find_value(key, "ID");
  REQUIRE(id != nullptr);
  CHECK(id->data == "\xE8\x03");
  other.refresh();
  CHECK(other.key(families + R"(\My Map)").exists);
  CHECK(other.remove_key(families + R"(\My Map)", {}).error.empty());
  registry.refresh();
  CHECK(registry.key(families).subkeys == Texts{"My Map 2"});
  CHECK_FALSE(registry.import_file(folder / "gone.reg", {}).ok());
  const std::vector<std::string> files = list_files(folder.path(), {".reg"});
  CHECK(import_removal(registry, families + R"(\My Map 2)", folder.path(), {}).ok());
  CHECK(registry.key(families).subkeys.empty());
  CHECK(list_files(folder.path(), {".reg"}) == files);
}

}  // namespace

TEST_CASE("the program's own store: import, read, remove") {
  const test::TempFolder folder("store \xC3\xBC");
  const std::string file = folder / "registry.reg";
  check_round_trip(*embedded_registry(file), *embedded_registry(file), folder);
  // The system's own registry editor could take the store in.
  CHECK(read_whole_file(file).starts_with(std::string("\xFF\xFEW\0i\0n\0", 8)));
}

TEST_CASE("the program's own store: one that cannot be read whole is never written over") {
  const test::TempFolder folder;
  const std::string damaged =
      "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\A]\r\n\"x\"=he";
  const std::string file = folder.write("registry.reg", damaged);
  const std::unique_ptr<Registry> registry = embedded_registry(file);
  CHECK(registry->problem() == file + ": line 4: the data of this value cannot be read");
  CHECK(registry->key(R"(HKEY_LOCAL_MACHINE\A)").exists);
  CHECK_FALSE(registry->remove_key(R"(HKEY_LOCAL_MACHINE\A)", {}).ok());
  CHECK(read_whole_file(file) == damaged);
}

TEST_CASE("paths as the Garmin programs see them on a drive that is the whole file system") {
  CHECK(path_on_z("/home/u/a b") == R"(Z:\home\u\a b)");
  CHECK(path_from_z(R"(z:\home\u\a b)") == "/home/u/a b");
  for (const char* untold : {"", "relative", R"(/a\b)"})
    CHECK(path_on_z(untold).empty());
  for (const char* untold : {"", "Z:", R"(C:\Garmin)", R"(Z:x)"})
    CHECK(path_from_z(untold).empty());
}

#ifndef _WIN32

namespace {

struct Prefix {
  explicit Prefix(const std::string& arch = "win64") : folder("prefix") {
    folder.write("system.reg",
                 "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\Machine\n\n#arch=" + arch +
                     "\n\n[Software\\\\Wow6432Node\\\\Garmin\\\\MapSource\\\\Families\\\\M\\xfc] 1\n"
                     "\"ID\"=hex:e8,03\n\n[Software\\\\Wine] 1\n\"x\"=\"y\"\n");
    folder.write(
        "user.reg",
        "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n\n"
        "[Software\\\\Garmin\\\\BaseCamp\\\\Settings] 1\n\"MRUProduct\"=hex:01,00,e8,03\n");
    folder.write("drive_c/Garmin/Maps/a.tdb", "P");
    folder.write("drive_c/ProgramData/Garmin/Maps/x.gmap/Info.xml", "<Name>X</Name>");
    std::filesystem::create_directory(folder / "dosdevices");
    std::filesystem::create_symlink("../drive_c", folder / "dosdevices/c:");
  }
  test::TempFolder folder;
};

}  // namespace

TEST_CASE("a Wine prefix: read from its files, paths by its drives") {
  const Prefix prefix;
  const std::unique_ptr<Registry> registry = wine_registry(prefix.folder.path(), prefix.folder.path());
  CHECK(registry->problem().empty());
  CHECK(registry->key(families).subkeys == Texts{"M\xC3\xBC"});
  CHECK_FALSE(registry->key(R"(HKEY_LOCAL_MACHINE\Software\Wine)").exists);  // not of interest
  CHECK(registry->key(R"(HKEY_USERS\S-1-5-21-0-0-0-1000\Software\Garmin\BaseCamp\Settings)").values.size() ==
        1);
  CHECK(registry->is_64bit());
  CHECK(registry->user_identifier() == "S-1-5-21-0-0-0-1000");
  CHECK(registry->wine_prefix() == prefix.folder.path());
  CHECK(registry->system_path(R"(C:\garmin\maps\A.TDB)") == prefix.folder / "drive_c/Garmin/Maps/a.tdb");
  CHECK(registry->system_path(R"(Q:\x)").empty());
  CHECK(registry->registered_path(prefix.folder / "drive_c/Garmin") == R"(C:\Garmin)");
  CHECK(registry->registered_path("/usr/share").empty());
  std::filesystem::create_symlink("/", prefix.folder / "dosdevices/z:");
  CHECK(registry->registered_path("/usr/share") == R"(Z:\usr\share)");
  CHECK(registry->system_path(R"(Z:\USR\Share)") == "/usr/share");
  CHECK(registry->package_folders() == Texts{prefix.folder / "drive_c/ProgramData/Garmin/Maps"});
}

TEST_CASE("a Wine prefix is only used where there is one, and never made") {
  const test::TempFolder folder;
  const std::string prefix = folder / "none";
  const std::unique_ptr<Registry> registry = wine_registry(prefix, folder.path());
  const std::string wanted = prefix + ": there is no Wine prefix here (system.reg is missing)";
  CHECK(registry->problem() == wanted);
  CHECK(registry->import_file(folder.write("a.reg", "REGEDIT4\n"), {}).error == wanted);
  CHECK(registry->remove_key(R"(HKEY_LOCAL_MACHINE\A)", {}).error == wanted);
  CHECK_FALSE(file_exists(prefix));
}

TEST_CASE("which registry: a prefix of the settings before the program's own store") {
  Workspace workspace;
  const test::TempFolder home;
  workspace.folder = ProgramFolder(home.path());
  workspace.settings.wine_prefix = home / "prefix";
  CHECK(open_registry(workspace)->wine_prefix() == home / "prefix");
}

#endif

#ifdef _WIN32
TEST_CASE("the system's registry: its editor takes files in, and takes a key away with its subkeys") {
  const test::TempFolder folder("registry \xC3\xBC");
  const std::unique_ptr<Registry> registry = system_registry(folder.path());
  const std::string key = R"(HKEY_CURRENT_USER\Software\Ferrowen tests)"
                          "\\M\xC3\xBC";
  const std::string text = registry_text_of({{key + "\\1", false, {}, {}}});
  REQUIRE(registry->import_file(folder.write("a.reg", encode_registry_text(text)), {}).ok());
  CHECK(registry->key(key).subkeys == Texts{"1"});
  CHECK(import_removal(*registry, key, folder.path(), {}).ok());
  CHECK_FALSE(registry->key(key).exists);
  CHECK(list_files(folder.path(), {".reg"}).size() == 1);
  CHECK(registry->remove_key(R"(HKEY_CURRENT_USER\Software\Ferrowen tests)", {}).ok());
  CHECK(registry->remove_key(R"(HKEY_CLASSES_ROOT\none)", {}).error ==
        R"(HKEY_CLASSES_ROOT\none: not a key to delete)");
}
#endif
