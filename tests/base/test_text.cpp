#include <doctest/doctest.h>

#include <clocale>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "base/text.hpp"

using namespace ferrowen;

using Texts = std::vector<std::string>;

TEST_CASE("lines end with CR LF or LF, and an empty rest is no line") {
  CHECK(split_lines("a\r\nb\nc") == Texts{"a", "b", "c"});
  CHECK(split_lines("a\r\n\r\n") == Texts{"a", ""});
  CHECK(split_lines("a\rb\r\r\n") == Texts{"a\rb\r"});
  CHECK(with_crlf("a\nb\r\nc\n\n") == "a\r\nb\r\nc\r\n\r\n");
}

TEST_CASE("splitting, joining and replacing keep empty parts") {
  CHECK(split(",a,,b,", ",") == Texts{"", "a", "", "b", ""});
  CHECK(join_texts({"a", "", "b"}, "--") == "a----b");
  CHECK(replace_all("aaa", "aa", "b") == "ba");
  CHECK(collapse_blanks("  a   b \t c  ") == " a b \t c ");
  CHECK(trim(" \t\r\na b\n ") == "a b");
}

TEST_CASE("case is ASCII only, whatever the locale") {
  static_cast<void>(std::setlocale(LC_ALL, ""));
  CHECK(lower_ascii("GRÜN\xC9") == "grÜn\xC9");
  CHECK(upper_ascii("grün") == "GRüN");
  CHECK(ends_with_ignoring_case("Map.OSM.pbf", ".osm.PBF"));
  CHECK_FALSE(ends_with_ignoring_case("pbf", ".pbf"));
  CHECK(std::setlocale(LC_ALL, "C") != nullptr);
}

TEST_CASE("numbers are read leniently and with a decimal point, whatever the locale") {
  const std::tuple<const char*, double, long> cases[] = {
      {"1.5", 1.5, 1},
      {" \t12abc", 12, 12},
      {"1,5", 1, 1},
      {"nan", 0, 0},
      {"1e999", 0, 0},
      {"99999999999", 99999999999.0, 2147483647},
      {"-99999999999", -99999999999.0, -2147483647},
  };
  for (const char* locale : {"C", "de_DE.UTF-8", "German_Germany"}) {
    if (std::setlocale(LC_ALL, locale) == nullptr) continue;
    for (const auto& each : cases) {
      const auto& [text, number, whole] = each;
      CAPTURE(std::get<0>(each));
      CHECK(lenient_number(text) == number);
      CHECK(lenient_whole_number(text) == whole);
    }
    CHECK(number_text(1234567.25) == "1234567.25");
    CHECK(fixed_text(2.345, 1) == "2.3");
  }
  CHECK(std::setlocale(LC_ALL, "C") != nullptr);
}

TEST_CASE("exact numbers take the whole text or nothing") {
  CHECK(exact_number("-1.25") == -1.25);
  CHECK(exact_whole_number("0063") == 63);
  for (const char* text : {"", " 1", "1 ", "1,5", "1x", "inf", "nan", "1e999", "--1"}) {
    CAPTURE(text);
    CHECK_FALSE(exact_number(text));
    CHECK_FALSE(exact_whole_number(text));
  }
}

TEST_CASE("number texts read back as the same number and are never scientific") {
  CHECK(number_text(1e21) == "1000000000000000000000");
  for (const double number : {0.1, -46.36914, 1.0 / 3, 5e-324, 1.7976931348623157e308, 123456789012345.67}) {
    const std::string text = number_text(number);
    CAPTURE(text);
    CHECK(text.find_first_of("eE,") == std::string::npos);
    CHECK(lenient_number(text) == number);
  }
  CHECK(number_text(std::numeric_limits<double>::infinity()) == "0");
  CHECK(fixed_text(std::numeric_limits<double>::quiet_NaN(), 1) == "0.0");
}

TEST_CASE("valid UTF-8 and its unfinished end") {
  CHECK(is_valid_utf8("aü€😀\xEF\xBF\xBD"));
  // A lone continuation, overlong forms, a surrogate, a number above the last one, a cut character.
  for (const char* text :
       {"\x80", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xC3", "\xFA"})
    CHECK_FALSE(is_valid_utf8(text));
  CHECK(unfinished_utf8_tail("a\xC3") == 1);
  CHECK(unfinished_utf8_tail("a\xF0\x9F\x98") == 3);
  CHECK(unfinished_utf8_tail("a€") == 0);
}

TEST_CASE("comma lists hold whole entries") {
  std::string list;
  comma_list_add(list, "63240001");
  comma_list_add(list, "6");
  CHECK(comma_list_holds(list, "6"));
  CHECK_FALSE(comma_list_holds(list, "324"));
}
