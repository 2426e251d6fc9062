#include <doctest/doctest.h>

#include <ctime>

#include "base/text.hpp"
#include "pipeline/tiles/areas_list.hpp"

using namespace ferrowen;

namespace {

constexpr const char* real_list =
    "# List of areas\n"
    "# Generated Sat Nov 21 12:23:42 UTC 2026\n"
    "#\n"
    "13224385: 2197504,444416 to 2203648,450560\n"
    "#       : 47.153320,9.536133 to 47.285156,9.667969\n"
    "\n"
    "13224386: -2191360,-444416 to 2197504,450560\n"
    "#       : 47.021484,9.536133 to 47.153320,9.667969\n";

std::optional<double> date_of(const std::string& text) {
  return parse_areas_list("# GENERATED " + text + "\n").generated;
}

double local_seconds(int year, int month, int day, int hour, int minute, int second) {
  std::tm local{};
  local.tm_year = year - 1900;
  local.tm_mon = month - 1;
  local.tm_mday = day;
  local.tm_hour = hour;
  local.tm_min = minute;
  local.tm_sec = second;
  local.tm_isdst = -1;
  return static_cast<double>(std::mktime(&local));
}

}  // namespace

TEST_CASE("a list of the splitter, with either line end") {
  for (const std::string& text : {std::string(real_list), with_crlf(real_list)}) {
    const AreasList list = parse_areas_list(text);
    REQUIRE(list.areas.size() == 2);
    CHECK(list.problems.empty());
    CHECK(list.generated == local_seconds(2026, 11, 21, 12, 23, 42));
    CHECK(list.areas[0].number == "13224385");
    CHECK(lower_left(list.areas[0]).latitude == doctest::Approx(47.153320).epsilon(1e-7));
    CHECK(lower_left(list.areas[0]).longitude == doctest::Approx(9.536133).epsilon(1e-7));
    CHECK(upper_right(list.areas[0]).latitude == doctest::Approx(47.285156).epsilon(1e-7));
    CHECK(upper_right(list.areas[0]).longitude == doctest::Approx(9.667969).epsilon(1e-7));
    CHECK(list.areas[1].lower_latitude == -2191360);
    CHECK(list.areas[1].lower_longitude == -444416);
  }
  CHECK(degrees_of_map_units(1L << 22) == 90);
}

TEST_CASE("dates: the zone does not count, what cannot be read is no date") {
  const double wanted = local_seconds(2021, 3, 7, 4, 5, 6);
  CHECK(date_of("Sun Mar 07 04:05:06 CET 2021") == wanted);
  CHECK(date_of("Sun Mar 7 04:05:06 GMT+01:00 2021") == wanted);
  CHECK(date_of("  sun  MAR 7 04:05:06 2021") == wanted);
  for (const char* text : {"", "Sun Mar 7", "Sun Mrz 7 04:05:06 CET 2021", "Sun Mar 32 04:05:06 CET 2021",
                           "Sun Mar 7 04:05 CET 2021", "Sun Mar 7 24:05:06 CET 2021",
                           "Sun Mar -7 04:05:06 CET 2021", "Sun Mar 7 04:05:06 CET 20211"}) {
    CAPTURE(text);
    CHECK_FALSE(date_of(text));
  }
  CHECK(parse_areas_list("# generated\n# Generated Sun Mar 7 04:05:06 CET 2021\n").generated == wanted);
}

TEST_CASE("lines that are no area are told with their number") {
  for (const char* line : {"13224385", "1322438: 1,1 to 2,2", "132243855: 1,1 to 2,2", "1322438x: 1,1 to 2,2",
                           "13224385: 1,1 to 2", "13224385: 1,1 to 2,2,3", "13224385: 1,1 to 2,x",
                           "13224385: 1,1: to 2,2", "13224385: 1.5,1 to 2,2", "13224385: 2,1 to 2,2",
                           "13224385: 1,1 to 4194305,2", "13224385: 1,1 to 99999999999999999999,2"}) {
    CAPTURE(line);
    const AreasList list = parse_areas_list(std::string("#\n\n") + line + "\n13224386: 1,1 to 2,2");
    CHECK(list.areas.size() == 1);
    CHECK(list.problems == std::vector<std::string>{"line 3: no tile number with four bounds"});
  }
  const AreasList twice = parse_areas_list("13224385: 1,1 to 2,2\n13224385: 3,3 to 4,4\n");
  CHECK(twice.areas.size() == 1);
  CHECK(twice.problems == std::vector<std::string>{"line 2: tile 13224385 a second time"});
  CHECK(parse_areas_list("# List of areas\n#\n").areas.empty());
}
