#include "platform/system.hpp"

#include <doctest/doctest.h>

#include "child_program.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;
using Lock = InstanceLock::Result;

TEST_CASE("facts about the machine and this process are within reason") {
  CHECK(processor_mhz() < 20000);
  CHECK(memory_megabytes() > 64);
  CHECK(processor_seconds() < 3600);
}

TEST_CASE("a program folder is held by one process at a time") {
  const ferrowen::test::TempFolder folder("lock");
  const std::string path = folder / "in use";
  InstanceLock second;
  ChildProcess sleeper;
  {
    InstanceLock lock;
    REQUIRE(lock.acquire(path) == Lock::held);
    REQUIRE(sleeper.start(child_request({"grandchild", "0", "15000"})) == StartResult::started);
    REQUIRE(reads(sleeper, "ready"));
  }
  // A child that lives on does not hold the lock for the process that started it.
  CHECK(run(child_request({"lock", path, "0"})).output == "held");
  sleeper.end_group(0);

  ChildProcess holder;
  REQUIRE(holder.start(child_request({"lock", path, "15000"})) == StartResult::started);
  REQUIRE(reads(holder, "held"));
  CHECK(second.acquire(path) == Lock::taken_by_other);
  holder.end_group(0);
  CHECK(second.acquire(path) == Lock::held);
  InstanceLock third;
  CHECK(third.acquire(folder / "missing/in use") == Lock::failed);
  CHECK_FALSE(third.error().empty());
}
