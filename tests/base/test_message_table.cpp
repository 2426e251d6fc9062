#include <doctest/doctest.h>

#include "base/message_table.hpp"

using namespace ferrowen;

TEST_CASE("the built-in messages") {
  struct Case {
    int number;
    const char* text;
  };
  const Case cases[] = {
      {1, "Please contact us if you have found a better translation."},
      {9, "Unknow type"},
      {16, " exists in registry."},
      {31, "An update is available: "},
      {35, "Cannot find file "},
      {84, "mapname needs 8 digits"},
      {205, "There is a dos window active. Close this ?"},
      {225, "Minimum File Size for Splitter = 12 Mb"},
      {19, ""},
      {0, ""},
      {-1, ""},
      {251, ""},
  };
  const MessageTable table;
  for (const Case& each : cases) {
    CAPTURE(each.number);
    CHECK(english_message(each.number) == each.text);
    CHECK(table(each.number) == each.text);
  }
  int count = 0;
  for (int number = 1; number <= message_count; ++number)
    count += english_message(number).empty() ? 0 : 1;
  CHECK(count == 226);
}

TEST_CASE("messages are replaced one by one and come back together") {
  MessageTable table;
  CHECK(table.set(84, "acht Ziffern "));
  CHECK(table.set(19, "neu"));
  CHECK_FALSE(table.set(0, "x"));
  CHECK_FALSE(table.set(message_count + 1, "x"));
  CHECK(table(84) == "acht Ziffern ");
  CHECK(table(0).empty());
  table.reset();
  CHECK(table(84) == "mapname needs 8 digits");
  CHECK(table(19).empty());
}
