#include <doctest/doctest.h>

#include <set>
#include <tuple>

#include "app/settings.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

using namespace ferrowen;

namespace {

constexpr const char* home = "/no/such/home";

// A settings text that is blank but for one line.
std::string text_with(std::string_view name, std::string_view value) {
  std::string text;
  for (int i = 0; i < find_field(name)->line; ++i)
    text += "\r\n";
  return text + std::string(value) + "\r\n";
}

// The setting after it was loaded.
std::string loaded(std::string_view name, std::string_view value) {
  return stored_text(parse_settings(text_with(name, value), home).settings, *find_field(name));
}

}  // namespace

TEST_CASE("the table gives every line and every name once, in line order") {
  std::set<std::string_view> names;
  int last_line = -1;
  for (const Field& field : settings_fields()) {
    CAPTURE(field.name);
    CHECK(field.line > last_line);
    CHECK(names.insert(field.name).second);
    last_line = field.line;
  }
}

TEST_CASE("the lines that other programs know stand where they always stood") {
  const std::pair<int, const char*> known[] = {
      {4, "input"},          {9, "basecamp"}, {10, "mkgmap"},   {20, "java-options"},  {35, "max-nodes"},
      {42, "output-folder"}, {46, "colour"},  {48, "state-48"}, {51, "list-selection"}};
  for (const auto& [line, name] : known)
    CHECK(find_field(name)->line == line);
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
    assign_stored(settings, field, value, home);
  }
  settings.output_folder = platform::absolute("out put");
  const Settings again = parse_settings(settings_text(settings), home).settings;
  for (const Field& field : settings_fields()) {
    CAPTURE(field.name);
    CHECK(stored_text(again, field) == stored_text(settings, field));
  }
}

TEST_CASE("short, long and damaged files load with defaults for what is missing") {
  const std::string input = text_with("input", "map.pbf");
  CHECK(settings_text(parse_settings("", home).settings) == settings_text(default_settings(home)));
  CHECK(parse_settings("\n\n\n\nmap.pbf", home).settings.input == "map.pbf");
  CHECK(parse_settings(input + replace_all(std::string(5000, 'x'), "x", "rest\r\n"), home).settings.input ==
        "map.pbf");
  const std::string rubbish("\0\xff\x1f\0abc\r\n\xfe", 10);
  CHECK(parse_settings(rubbish + input, home).settings.map_id == "13224385");
}

TEST_CASE("load rules") {
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"max-nodes", "800", "1000000"},
      {"max-nodes", "9999", "9999"},
      {"colour", "zz", ""},
      {"colour", "0", ""},
      {"colour", "C9C8C1", "C9C8C1"},
      {"output-folder", "maps", default_settings(home).output_folder},
      {"country", "  Faroe Islands ", "Faroe Islands"},
      {"gmapsupp", "not a number", "0"},
      {"map-name", "", "Demo Map"},
  };
  for (const auto& [name, value, result] : cases)
    CHECK(loaded(name, value) == result);
  CHECK(parse_settings("", home).notes == std::vector<std::string>{"Please reset in Folders"});
  CHECK(parse_settings(text_with("gmapsupp", "1"), home).settings.map_name == "gmapsupp");
}

TEST_CASE("the memory setting is the number between Xmx and the next m") {
  const std::pair<const char*, const char*> cases[] = {{"-XX:+UseG1GC -Xmx1500m -ea", "1500"},
                                                       {"-Xmx2g", "2g"},
                                                       {" -ea", ""},
                                                       {" 1500 ", "1500"},
                                                       {"2g", "2g"}};
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
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"max-jobs", "0", false},        {"max-jobs", "x", false},   {"hgt-slot", "6", false},
      {"hgt-slot", "5", true},         {"clip-slot", "-1", false}, {"clip-slot", "5", false},
      {"max-jobs", "4", true},         {"gmapsupp", "yes", true},  {"gmapsupp", "perhaps", false},
      {"colour", "zz", false},         {"colour", "ff00ff", true}, {"contour-tolerance", "0,12", true},
      {"output-folder", "maps", false}};
  for (const auto& each : cases) {
    const auto& [name, value, accepted] = each;
    CAPTURE(std::get<1>(each));
    const std::string before = settings_text(settings);
    CHECK(assign_checked(settings, *find_field(name), value).ok() == accepted);
    if (!accepted) CHECK(settings_text(settings) == before);
  }
  CHECK(assign_checked(settings, *find_field("max-jobs"), "0").error == "max-jobs must be > 0 ");
}
