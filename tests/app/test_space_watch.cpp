#include "app/space_watch.hpp"

#include <doctest/doctest.h>

#include "support/temp_folder.hpp"

using namespace ferrowen;

TEST_CASE("a run is stuck when a disk stays full and nothing new comes") {
  SpaceWatch watch;
  CHECK_FALSE(watch.is_stuck(100, "/a", 10));
  CHECK_FALSE(watch.is_stuck(104.9, "/a", 10));
  CHECK(watch.is_stuck(105, "/a", 10));
  CHECK_FALSE(watch.is_stuck(106, "/a", 11));
  CHECK_FALSE(watch.is_stuck(110, "", 0));
  CHECK_FALSE(watch.is_stuck(112, "/a", 11));
  CHECK_FALSE(watch.is_stuck(116, "/b", 11));
  CHECK(watch.is_stuck(121, "/b", 11));
}

TEST_CASE("a disk with space is not full, and what lies in a folder is counted") {
  const test::TempFolder folder;
  folder.write("one", "12345");
  folder.write("two", "678");
  folder.write("deeper/three", "9");
  CHECK(full_folder({folder.path(), folder / "not yet there"}).empty());
  CHECK(bytes_in({folder.path(), folder / "deeper"}) == 9);
}
