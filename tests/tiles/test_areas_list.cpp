#include <doctest/doctest.h>

#include <ctime>

#include "base/text.hpp"
#include "pipeline/tiles/areas_list.hpp"

using namespace ferrowen;

namespace {

std::string local_time(const std::optional<double>& seconds) {
  if (!seconds) return "none";
  const auto time = static_cast<std::time_t>(*seconds);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&time))};
}

}  // namespace

TEST_CASE("a list of the splitter, with either line end") {
  const std::string written =
      "# List of areas\n# Generated Sat Nov 21 12:23:42 UTC 2026\n#\n"
      "13224385: 2197504,444416 to 2203648,450560\n#       : 47.153320,9.536133 to 47.285156,9.667969\n\n"
      "13224386: -2191360,-444416 to 2197504,450560\n";
  for (const std::string& text : {written, with_crlf(written)}) {
    const AreasList list = parse_areas_list(text);
    REQUIRE(list.areas.size() == 2);
    CHECK(list.problems.empty());
    CHECK(local_time(list.generated) == "2026-11-21 12:23:42");
    CHECK(lower_left(list.areas[0]).latitude == doctest::Approx(47.153320).epsilon(1e-7));
    CHECK(upper_right(list.areas[0]).longitude == doctest::Approx(9.667969).epsilon(1e-7));
    CHECK(list.areas[1].number == "13224386");
    CHECK(list.areas[1].lower_longitude == -444416);
  }
}

TEST_CASE("dates: the zone does not count, what cannot be read is no date") {
  for (const char* date : {"Sun Mar 07 04:05:06 CET 2021", "Sun Mar 7 04:05:06 GMT+01:00 2021",
                           "  sun  MAR 7 04:05:06 2021", "\n# Generated Sun Mar 7 04:05:06 CET 2021"}) {
    CAPTURE(date);
    const AreasList list = parse_areas_list(std::string("# GENERATED ") + date + "\n");
    CHECK(local_time(list.generated) == "2021-03-07 04:05:06");
  }
  for (const char* date : {"", "Sun Mar 7", "Sun Mrz 7 04:05:06 CET 2021", "Sun Mar 32 04:05:06 CET 2021",
                           "Sun Mar 7 04:05 CET 2021", "Sun Mar 7 24:05:06 CET 2021",
                           "Sun Mar -7 04:05:06 CET 2021", "Sun Mar 7 04:05:06 CET 20211"}) {
    CAPTURE(date);
    CHECK_FALSE(parse_areas_list(std::string("# GENERATED ") + date + "\n").generated);
  }
}

TEST_CASE("lines that are no area are told with their number") {
  for (const char* line :
       {"13224385", "1322438: 1,1 to 2,2", "1322438x: 1,1 to 2,2", "13224385: 1,1 to 2",
        "13224385: 1,1 to 2,2,3", "13224385: 1,1: to 2,2", "13224385: 1.5,1 to 2,2", "13224385: 2,1 to 2,2",
        "13224385: 1,1 to 4194305,2", "13224385: 1,1 to 99999999999999999999,2"}) {
    CAPTURE(line);
    const AreasList list = parse_areas_list(std::string("#\n\n") + line + "\n13224386: 1,1 to 2,2");
    CHECK(list.areas.size() == 1);
    CHECK(list.problems == std::vector<std::string>{"line 3: no tile number with four bounds"});
  }
  const AreasList twice = parse_areas_list("13224385: 1,1 to 2,2\n13224385: 3,3 to 4,4\n");
  CHECK(twice.areas.size() == 1);
  CHECK(twice.problems == std::vector<std::string>{"line 2: tile 13224385 a second time"});
}
