#include <doctest/doctest.h>

#include "app/settings_check.hpp"
#include "base/text.hpp"
#include "support/settings_of.hpp"

using namespace ferrowen;
using test::settings_of;

namespace {

// Every folder is there and holds a style, except those whose name says otherwise.
FolderFacts facts() {
  return {[](const std::string& folder) { return !contains(folder, "gone"); },
          [](const std::string& folder) {
            return contains(folder, "bare") ? std::vector<std::string>{} : std::vector<std::string>{"mine"};
          }};
}

// `entered` is "name=text" or "" for nothing; what is told, each remark as "field: text".
std::vector<std::string> remarks(std::string_view record, const std::string& entered) {
  const std::size_t equal = entered.find('=');
  EnteredValues values;
  if (equal != std::string::npos)
    values.emplace_back(find_field(entered.substr(0, equal)), entered.substr(equal + 1));
  std::vector<std::string> found;
  const Settings settings = record.empty() ? default_settings("") : settings_of(record);
  for (const SettingsRemark& remark : check_settings(settings, values, "", facts()).remarks)
    found.push_back(std::string(remark.field) + ": " + remark.text);
  return found;
}

}  // namespace

TEST_CASE("what a person enters is refused, or asked about, in the program's words") {
  const std::string jobs = "max-jobs: max-jobs must be > 0 ";
  const std::string ask = " does not exist.\r\n\r\nPlease create this folder \r\n\r\nTry again?";
  const std::string styles =
      " not a styles folder.\r\nDouble Click on styles folder.\r\nDouble Click on Styles Folder";
  struct Case {
    std::string record;
    std::string entered;
    std::vector<std::string> remarks;
  };
  const std::vector<Case> cases = {
      {"max-jobs=4", "", {}},
      {"", "max-jobs=0", {jobs}},
      {"", "max-jobs=-2", {jobs}},
      {"", "max-jobs=many", {jobs}},
      {"", "max-jobs=1.5", {"max-jobs: max-jobs: '1.5' is not a whole number."}},
      {"max-jobs=4", "max-jobs=", {}},
      {"use-max-jobs=1", "", {jobs}},
      {"use-max-jobs=1; max-jobs=4", "max-jobs= ", {jobs}},
      {"use-max-jobs=1", "max-jobs=x", {jobs}},  // told once
      {"use-max-jobs=1", "max-jobs=2", {}},
      {"", "archive-folder=/gone/a", {"archive-folder: /gone/a" + ask}},
      {"split-folder=/gone/b", "", {"split-folder: /gone/b" + ask}},  // changed or not
      {"split-folder=/gone/b", "split-folder=", {}},                  // the default is taken
      {"", "output-folder=/gone/c", {}},                              // made by the build
      {"", "output-folder=maps", {"output-folder: output-folder: 'maps' is not an absolute path."}},
      {"", "styles-folder=/bare", {"styles-folder: /bare" + styles}},
      {"", "styles-folder=/gone/bare", {"styles-folder: /gone/bare" + ask}},
      {"", "styles-folder=/full", {}},
      {"styles-folder=/bare", "", {}},  // it was so before; the start tells of it
      {"", "java=/opt/jre/bin/javaw", {"java: You have selected:\r\njavaw"}},
      {"", "colour=zz", {}},
  };
  for (const Case& each : cases) {
    CAPTURE(each.record);
    CAPTURE(each.entered);
#ifdef _WIN32
    if (contains(each.entered, "output-folder=/")) continue;
#endif
    CHECK(remarks(each.record, each.entered) == each.remarks);
  }
}

TEST_CASE("values that are fine are taken beside one that is refused, and nothing is lost by a blank one") {
  const Settings record = settings_of("colour=C9C8C1; max-jobs=4; split-folder=/elsewhere");
  const EnteredValues entered = {{find_field("colour"), "zz"},
                                 {find_field("country"), " Norway "},
                                 {find_field("contour-tolerance"), "some"},
                                 {find_field("max-jobs"), ""},
                                 {find_field("split-folder"), " "}};
  const CheckedSettings checked = check_settings(record, entered, "/home", facts());
  REQUIRE(checked.remarks.size() == 1);
  CHECK(checked.remarks.front().field == "contour-tolerance");
  CHECK(checked.remarks.front().kind == SettingsRemark::Kind::refused);
  CHECK(checked.settings.colour.empty());
  CHECK(checked.settings.country == "Norway");
  CHECK(checked.settings.contour_tolerance == record.contour_tolerance);
  CHECK(checked.settings.max_jobs == 0);
  CHECK(checked.settings.split_folder == default_settings("/home").split_folder);
  const CheckedSettings kept = check_settings(record, {{find_field("colour"), "ff"}}, "/home", facts());
  CHECK(kept.settings.colour == "ff");
}

TEST_CASE("an archive of another name is told by its name") {
  const auto remark = [](const char* field, std::string_view path) {
    return jar_name_remark(*find_field(field), path);
  };
  CHECK(remark("mkgmap", "/opt/mkgmap/mkgmap.jar").empty());
  CHECK(remark("mkgmap", "/opt/MKGMAP.JAR").empty());
  CHECK(remark("mkgmap", "").empty());
  CHECK(remark("splitter", "/opt/mkgmap.jar") == "You have selected:\r\nmkgmap.jar");
  CHECK(remark("mkgmap", "/opt/mkgmap-r4905.jar") == "You have selected:\r\nmkgmap-r4905.jar");
  CHECK(remark("osmconvert", "/opt/other").empty());
}
