#include <doctest/doctest.h>

#include <set>

#include "app/settings.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

using namespace ferrowen;

namespace {

constexpr const char* home = "/no/such/home";

// A settings text that is blank but for one line.
std::string text_with(int line, std::string_view value) {
  std::string text;
  for (int i = 0; i < line; ++i)
    text += "\r\n";
  return text + std::string(value) + "\r\n";
}

Settings loaded(int line, std::string_view value) {
  return parse_settings(text_with(line, value), home).settings;
}

}  // namespace

TEST_CASE("the table gives every line and every name once, in line order") {
  std::set<std::string_view> names;
  int last_line = -1;
  for (const Field& field : settings_fields()) {
    CAPTURE(field.name);
    CHECK(field.line > last_line);
    CHECK(field.line < 500);
    CHECK(names.insert(field.name).second);
    CHECK_FALSE(field.label.empty());
    last_line = field.line;
  }
}

TEST_CASE("the lines that other programs know stand where they always stood") {
  const std::pair<int, const char*> known[] = {
      {4, "input"},          {9, "basecamp"},  {10, "mkgmap"},    {20, "java-options"},
      {21, "typ"},           {34, "register"}, {35, "max-nodes"}, {37, "map-name"},
      {42, "output-folder"}, {46, "colour"},   {48, "state-48"},  {51, "list-selection"}};
  for (const auto& [line, name] : known) {
    REQUIRE(find_field(name) != nullptr);
    CHECK(find_field(name)->line == line);
  }
}

TEST_CASE("every field survives being stored and loaded") {
  Settings settings = default_settings(home);
  int counter = 1;
  for (const Field& field : settings_fields()) {
    const std::string value = field.type == FieldType::flag     ? "1"
                              : field.type == FieldType::number ? std::to_string(++counter)
                              : field.type == FieldType::real   ? "1.25"
                              : field.name == "colour"          ? "C9C8C1"
                              : field.type == FieldType::lines  ? "first\r\n second  line"
                                                                : "/Väl " + std::to_string(++counter);
    if (field.name == "output-folder") continue;
    REQUIRE(assign_checked(settings, field, value).ok());
  }
  settings.output_folder = platform::absolute("out put");
  const Settings again = parse_settings(settings_text(settings), home).settings;
  for (const Field& field : settings_fields()) {
    CAPTURE(field.name);
    CHECK(stored_text(again, field) == stored_text(settings, field));
  }
}

TEST_CASE("short, long and damaged files load with defaults for what is missing") {
  const Settings fresh = default_settings(home);
  SUBCASE("nothing at all") {
    CHECK(settings_text(parse_settings("", home).settings) == settings_text(fresh));
  }
  SUBCASE("LF line ends and a missing last one") {
    const std::string text = replace_all(text_with(4, "map.pbf"), "\r\n", "\n");
    CHECK(parse_settings(text.substr(0, text.size() - 1), home).settings.input == "map.pbf");
  }
  SUBCASE("5000 lines") {
    std::string text = text_with(4, "map.pbf");
    for (int i = 0; i < 5000; ++i)
      text += "rest\r\n";
    CHECK(parse_settings(text, home).settings.input == "map.pbf");
  }
  SUBCASE("NUL bytes and rubbish") {
    const std::string rubbish("\0\xff\x1f\0abc\r\n\xfe", 11);
    CHECK(parse_settings(rubbish + text_with(35, "9999"), home).settings.first_map_id == "13224385");
  }
}

TEST_CASE("load rules") {
  CHECK(loaded(35, "800").max_nodes == "1000000");
  CHECK(loaded(35, "9999").max_nodes == "9999");
  CHECK(loaded(46, "zz").colour.empty());
  CHECK(loaded(46, "0").colour.empty());
  CHECK(loaded(46, "C9C8C1").colour == "C9C8C1");
  CHECK(loaded(42, "maps").output_folder == default_settings(home).output_folder);
  CHECK(loaded(5, "  Faroe Islands ").country == "Faroe Islands");
  CHECK(loaded(7, "not a number").device_image == false);
  CHECK(parse_settings("", home).notes == std::vector<std::string>{"Please reset in Folders"});

  const std::string gmapsupp_and_no_name = text_with(7, "1");
  CHECK(parse_settings(gmapsupp_and_no_name, home).settings.map_name == "gmapsupp");
  CHECK(loaded(37, "").map_name == "Demo Map");
  CHECK(loaded(13, "Boxed").map_name == "Boxed");
}

TEST_CASE("the memory setting is the number between Xmx and the next m") {
  const std::pair<const char*, const char*> cases[] = {
      {"-Xmx2048m", "2048"}, {"-XX:+UseG1GC -Xmx1500m -ea", "1500"}, {"-Xmx2g", "2g"}, {"-ea", ""}, {"", ""}};
  for (const auto& [options, memory] : cases)
    CHECK(memory_of_java_options(options) == memory);
}

TEST_CASE("a value stays on its own line, and several lines are joined with code 31") {
  Settings settings = default_settings(home);
  settings.options_text = "--a\r\n--b";
  CHECK(stored_text(settings, *find_field("options-text")) == "--a\x1f--b");
  settings.map_name = "two\r\nlines";
  CHECK(stored_text(settings, *find_field("map-name")) == "two  lines");
  settings.state_48 = "0";
  CHECK(stored_text(settings, *find_field("state-48")).empty());
}

TEST_CASE("what a person enters is checked before anything changes") {
  Settings settings = default_settings(home);
  struct Case {
    const char* name;
    const char* value;
    bool accepted;
  };
  const Case cases[] = {
      {"max-jobs", "0", false},        {"max-jobs", "x", false},       {"max-jobs", "4", true},
      {"gmapsupp", "yes", true},       {"gmapsupp", "perhaps", false}, {"gmapsupp", "-1", true},
      {"colour", "zz", false},         {"colour", "ff00ff", true},     {"contour-tolerance", "0,12", true},
      {"output-folder", "maps", false}};
  for (const Case& one : cases) {
    CAPTURE(one.name);
    CAPTURE(one.value);
    const std::string before = settings_text(settings);
    const Status assigned = assign_checked(settings, *find_field(one.name), one.value);
    CHECK(assigned.ok() == one.accepted);
    if (!one.accepted) CHECK(settings_text(settings) == before);
  }
  CHECK(assign_checked(settings, *find_field("max-jobs"), "0").error == "max-jobs must be > 0 ");
  CHECK(settings.contour_tolerance == doctest::Approx(0.12));
}
