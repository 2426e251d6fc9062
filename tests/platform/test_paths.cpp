#include "platform/paths.hpp"

#include <doctest/doctest.h>

#include "child_program.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

TEST_CASE("paths are joined and taken apart by the system's rules") {
  const std::string s(1, separator);
  CHECK(join("a" + s, "b") == "a" + s + "b");
  struct Case {
    std::string path, folder, name;
    bool rooted = false;
  };
  const std::vector<Case> common = {
      {"", "", ""}, {"a", "", "a"}, {"a/b", "a", "b"}, {"a/b/", "a/b", ""}, {"//s/t", "//s", "t", true}};
  const std::vector<Case> posix = {{"/", "/", "", true}, {"/a", "/", "a", true}, {"C:\\a", "", "C:\\a"}};
  const std::vector<Case> windows = {{"C:\\", "C:\\", "", true},
                                     {"C:/a\\b/c", "C:/a\\b", "c", true},
                                     {"C:a", "C:", "a"},
                                     {"\\a", "\\", "a"},
                                     {R"(\\s\t)", R"(\\s)", "t", true}};
  for (const auto& cases : {common, on_windows ? windows : posix})
    for (const Case& each : cases) {
      CAPTURE(each.path);
      CHECK(folder_of(each.path) == each.folder);
      CHECK(name_of(each.path) == each.name);
      CHECK(is_absolute(each.path) == each.rooted);
    }
  CHECK(is_absolute(absolute("x")));
  CHECK(absolute("./x") == join(absolute("."), "x"));
  CHECK(absolute(child_path()) == child_path());
}

TEST_CASE("no bytes make the way to the standard library's paths throw") {
  for (const std::string name : {"base-gr\xF6n", "\xC3\xA4", "a\x81/\xED\xA0\x80", "\xFF", ""}) {
    CAPTURE(name);
    const std::filesystem::path path = file_system_path(name);
    const bool is_plain = !on_windows || name.empty() || name == "\xC3\xA4";
    CHECK((path_text(path) == name) == is_plain);
    std::error_code error;
    CHECK_FALSE(std::filesystem::exists(file_system_path("no such " + name), error));
  }
}

TEST_CASE("folders and programs of the system are found") {
  for (const std::string& folder : {home_folder(), user_data_folder(), roaming_data_folder()})
    CHECK(is_absolute(folder));
  CHECK(shared_data_file(FERROWEN_TEST_CHILD) == child_path());
  CHECK(shared_data_file("no such file").empty());
  CHECK(find_program("ferrowen-no-such-program").empty());
  CHECK(find_program(child_path()) == child_path());
  CHECK(is_absolute(find_program(on_windows ? "cmd" : "sh")));
}

TEST_CASE("short paths are only for existing paths with blanks") {
  const ferrowen::test::TempFolder folder("short");
  CHECK(short_path(folder / "not there") == folder / "not there");
  const std::string path = folder.write("My Map.img", "map");
  const std::string shorter = short_path(path);
  CHECK(std::filesystem::equivalent(file_system_path(shorter), file_system_path(path)));
  CHECK((shorter == path) == !on_windows);
}
