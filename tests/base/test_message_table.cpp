#include <doctest/doctest.h>

#include "base/message_table.hpp"

using namespace ferrowen;

TEST_CASE("the built-in messages stand at their numbers") {
  const MessageTable table;
  const std::pair<int, const char*> cases[] = {
      {1, "Please contact us if you have found a better translation."},
      {84, "mapname needs 8 digits"},
      {205, "There is a dos window active. Close this ?"},
      {225, "Minimum File Size for Splitter = 12 Mb"},
  };
  for (const auto& [number, text] : cases)
    CHECK(table(number) == text);
  for (const int number : {-1, 0, 19, 251})
    CHECK(table(number).empty());
  int count = 0;
  for (int number = 1; number <= message_count; ++number)
    count += english_message(number).empty() ? 0 : 1;
  CHECK(count == 226);
}

TEST_CASE("messages are replaced one by one and come back together") {
  MessageTable table;
  CHECK(table.set(84, "acht Ziffern "));
  CHECK_FALSE(table.set(message_count + 1, "x"));
  CHECK(table(84) == "acht Ziffern ");
  table.reset();
  CHECK(table(84) == "mapname needs 8 digits");
}
