#include <doctest/doctest.h>

#include <csignal>
#include <memory>

#include "child_program.hpp"
#include "platform/system.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

TEST_CASE("facts about the machine are within reason") {
  CHECK(is_64bit_system());
  CHECK(processor_mhz() >= 0);
  CHECK(processor_mhz() < 20000);
  CHECK(memory_megabytes() > 64);
  CHECK(memory_megabytes() < (std::uint64_t{1} << 30));
}

TEST_CASE("processor time counts this process and not its children") {
  const double before = processor_seconds();
  volatile unsigned sum = 0;
  while (processor_seconds() - before < 0.03)
    for (unsigned i = 0; i < 100000; ++i)
      sum = sum + i;
  const double worked = processor_seconds();
  CHECK(worked > before);
  CHECK(run(child_request({"print", "1000"})).status == 0);
  CHECK(processor_seconds() - worked < 5);
}

TEST_CASE("a program folder is held by one process at a time") {
  const TestFolder folder("lock");
  const std::string path = folder.file("in use");
  auto lock = std::make_unique<InstanceLock>();
  REQUIRE(lock->acquire(path) == InstanceLock::Result::held);
  CHECK(lock->acquire(path) == InstanceLock::Result::held);
  InstanceLock second;
  CHECK(second.acquire(path) == InstanceLock::Result::taken_by_other);
  CHECK(run(child_request({"lock", path, "0"})).output == "taken");
  // A child that lives on must not hold the lock for the process that started it.
  ChildProcess sleeper;
  REQUIRE(sleeper.start(child_request({"stubborn", "15000"})) == StartResult::started);
  REQUIRE(reads(sleeper, "ready"));
  lock.reset();
  CHECK(run(child_request({"lock", path, "0"})).output == "held");
  sleeper.end_group(0);

  ChildProcess holder;
  REQUIRE(holder.start(child_request({"lock", path, "15000"})) == StartResult::started);
  REQUIRE(reads(holder, "held"));
  InstanceLock third;
  CHECK(third.acquire(path) == InstanceLock::Result::taken_by_other);
  holder.end_group(0);
  CHECK(third.acquire(path) == InstanceLock::Result::held);
}

TEST_CASE("a lock that cannot be made says why") {
  const TestFolder folder("no lock");
  InstanceLock lock;
  CHECK(lock.acquire(folder.file("missing/in use")) == InstanceLock::Result::failed);
  CHECK_FALSE(lock.error().empty());
}

TEST_CASE("an interrupt is noted and does not end the process") {
  ChildProcess child;
  REQUIRE(child.start(child_request({"interrupt", "8000"})) == StartResult::started);
  REQUIRE(reads(child, "ready "));
  child.end_group(5000);
  const std::string output = read_all(child, 5000);
#ifdef _WIN32
  // Without a console in common (and under Wine) a child cannot be asked and is ended at once.
  const bool was_killed = child.wait() == 128 + 9;
  CHECK(output == (was_killed ? "" : "interrupted"));
#else
  CHECK(output == "interrupted");
  CHECK(child.wait() == 0);
#endif
}
