#include <doctest/doctest.h>

#include "child_program.hpp"
#include "platform/console.hpp"
#include "platform/desktop.hpp"
#include "platform/files.hpp"
#include "platform/registry.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

namespace {
#ifdef _WIN32
constexpr bool on_windows = true;
#else
constexpr bool on_windows = false;
#endif
}  // namespace

TEST_CASE("paths are joined and taken apart") {
  const std::string s(1, separator);
  CHECK(join("a", "b") == "a" + s + "b");
  CHECK(join("a" + s, "b") == "a" + s + "b");
  CHECK(join("", "b") == "b");
  struct Case {
    std::string path, folder, name;
  };
  std::vector<Case> cases = {{"", "", ""},   {"a", "", "a"},   {"a/b", "a", "b"},      {"a/b/", "a/b", ""},
                             {"/", "/", ""}, {"/a", "/", "a"}, {"/a/b c", "/a", "b c"}};
  if (on_windows) {
    const std::vector<Case> more = {{"C:\\", "C:\\", ""},
                                    {"C:\\a", "C:\\", "a"},
                                    {"C:\\a\\b", "C:\\a", "b"},
                                    {"C:/a\\b/c", "C:/a\\b", "c"},
                                    {"C:a", "C:", "a"}};
    cases.insert(cases.end(), more.begin(), more.end());
  } else {
    cases.push_back({"/a\\b", "/", "a\\b"});
  }
  for (const Case& each : cases) {
    CAPTURE(each.path);
    CHECK(folder_of(each.path) == each.folder);
    CHECK(name_of(each.path) == each.name);
  }
}

TEST_CASE("absolute paths by the system's rules") {
  struct Case {
    const char* path;
    bool windows, elsewhere;
  };
  const Case cases[] = {
      {"", false, false},     {"a", false, false},           {"/a", false, true},
      {"C:\\a", true, false}, {"c:/a", true, false},         {"C:a", false, false},
      {"\\a", false, false},  {"1:\\a", false, false},       {R"(\\server\share)", true, false},
      {"\\\\", false, false}, {"//server/share", true, true}};
  for (const Case& each : cases) {
    CAPTURE(each.path);
    CHECK(is_absolute(each.path) == (on_windows ? each.windows : each.elsewhere));
  }
  CHECK(absolute("").empty());
  CHECK(is_absolute(absolute("x")));
  CHECK(name_of(absolute("./x")) == "x");
  CHECK(folder_of(absolute("./x")) == absolute("."));
  CHECK(absolute(child_path()) == child_path());
}

TEST_CASE("the folders of the system and its user are absolute and the executable exists") {
  CHECK(std::filesystem::is_regular_file(file_system_path(executable_path())));
  for (const std::string& folder : {home_folder(), user_data_folder(), roaming_data_folder()}) {
    CAPTURE(folder);
    CHECK(is_absolute(folder));
  }
  CHECK(shared_data_file(FERROWEN_TEST_CHILD) == child_path());
  CHECK(shared_data_file("no such file").empty());
}

TEST_CASE("short paths are only for existing paths with blanks") {
  const TestFolder folder("short");
  const std::string plain = join(folder_of(executable_path()), "plain.osm.pbf");
  CHECK(short_path(plain) == plain);
  CHECK(short_path(folder.file("not there")) == folder.file("not there"));
  REQUIRE(write_flushed(folder.file("My Map.img"), "map").empty());
  const std::string result = short_path(folder.file("My Map.img"));
  CHECK(content_of(result) == "map");
  if (!on_windows) CHECK(result == folder.file("My Map.img"));
  if (on_windows) CHECK(result.find(' ') == std::string::npos);
}

TEST_CASE("programs are found in the search path") {
  CHECK(find_program("ferrowen-no-such-program").empty());
  CHECK(find_program("").empty());
  CHECK(find_program(child_path()) == child_path());
  const std::string found = find_program(on_windows ? "cmd" : "sh");
  CHECK(is_absolute(found));
  CHECK(std::filesystem::exists(file_system_path(found)));
  CHECK_FALSE(environment("FERROWEN_NO_SUCH_VARIABLE").has_value());
}

TEST_CASE("console windows, the desktop and the registry where there are none") {
  CHECK_FALSE(console_window_exists("ferrowen: no window has this title"));
  CHECK_FALSE(console_window_exists(""));
  post_quit_to_console("ferrowen: no window has this title");
  CHECK(interpreter_title().empty() == !on_windows);
  CHECK(terminal_width() > 0);
  CHECK_FALSE(registry_text(RegistryRoot::current_user, "Software\\Ferrowen no such key", "x").has_value());
  CHECK_FALSE(registry_number(RegistryRoot::current_user, "Software\\Ferrowen no such key", "x").has_value());
  const std::string reason = open_with_desktop(join(folder_of(executable_path()), "no such file.xyz"));
  const bool display = environment("DISPLAY") || environment("WAYLAND_DISPLAY");
  if (on_windows || !display) CHECK_FALSE(reason.empty());
}
