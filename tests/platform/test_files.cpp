#include <doctest/doctest.h>

#include <chrono>
#include <ctime>
#include <thread>

#include "child_program.hpp"
#include "platform/files.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

TEST_CASE("a flushed write makes or empties the file") {
  const TestFolder folder("files");
  const std::string path = folder.file("a \xE6\x97\xA5.txt");
  const std::string all_bytes = std::string("\0\r\n\x1A\xFF", 5) + std::string(300000, 'x');
  CHECK(write_flushed(path, all_bytes).empty());
  CHECK((content_of(path) == all_bytes));
  CHECK(write_flushed(path, "short").empty());
  CHECK(content_of(path) == "short");
  CHECK(write_flushed(path, "").empty());
  CHECK(content_of(path).empty());
}

TEST_CASE("a write that fails tells why") {
  const TestFolder folder("failing");
  CHECK_FALSE(write_flushed(folder.file("missing/file"), "x").empty());
  CHECK_FALSE(write_flushed(folder.path(), "x").empty());
#ifdef __linux__
  CHECK(write_flushed("/dev/full", "x") == "No space left on device");
  CHECK(write_flushed(folder.file("missing/file"), "x") == "No such file or directory");
#endif
}

TEST_CASE("a file takes the place of another, whole or not at all") {
  const TestFolder folder("replacing");
  const std::string fresh = folder.file("fresh");
  const std::string target = folder.file("target \xC3\xBC");
  for (const char* text : {"first", "second"}) {
    REQUIRE(write_flushed(fresh, text).empty());
    CHECK(replace_file(fresh, target).empty());
    CHECK(content_of(target) == text);
    CHECK_FALSE(std::filesystem::exists(file_system_path(fresh)));
  }
  CHECK_FALSE(replace_file(folder.file("missing"), target).empty());
  CHECK(content_of(target) == "second");
  std::filesystem::create_directory(folder.at("folder"));
  REQUIRE(write_flushed(fresh, "third").empty());
  CHECK_FALSE(replace_file(fresh, folder.file("folder")).empty());
  CHECK(content_of(fresh) == "third");
}

#ifndef _WIN32
TEST_CASE("a link is replaced, not what it points to, and the mode of a file is kept") {
  const TestFolder folder("links");
  REQUIRE(write_flushed(folder.file("far"), "far").empty());
  std::filesystem::create_symlink("far", folder.at("link"));
  REQUIRE(write_flushed(folder.file("fresh"), "fresh").empty());
  CHECK(replace_file(folder.file("fresh"), folder.file("link")).empty());
  CHECK(content_of(folder.file("far")) == "far");
  CHECK_FALSE(std::filesystem::is_symlink(folder.at("link")));

  const auto owner_only = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
  std::filesystem::permissions(folder.at("far"), owner_only);
  CHECK(write_flushed(folder.file("far"), "new").empty());
  CHECK(std::filesystem::status(folder.at("far")).permissions() == owner_only);
}
#endif

TEST_CASE("change times are seconds since 1970 with fractions") {
  const TestFolder folder("times");
  CHECK_FALSE(change_time(folder.file("none")).has_value());
  CHECK(change_time(folder.path()).has_value());
  const auto now = static_cast<double>(std::time(nullptr));
  REQUIRE(write_flushed(folder.file("file"), "x").empty());
  const double written = change_time(folder.file("file")).value_or(0);
  CHECK(written > now - 5);
  CHECK(written < now + 60);
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  REQUIRE(write_flushed(folder.file("file"), "y").empty());
  const double difference = change_time(folder.file("file")).value_or(0) - written;
  CHECK(difference > 0.04);
  CHECK(difference < 10);
}

TEST_CASE("a folder's writability is tried out and leaves nothing behind") {
  const TestFolder folder("writable");
  CHECK(folder_is_writable(folder.path()));
  CHECK(std::filesystem::is_empty(file_system_path(folder.path())));
  CHECK_FALSE(folder_is_writable(folder.file("none")));
#ifdef __linux__
  CHECK_FALSE(folder_is_writable("/proc"));
#endif
}

TEST_CASE("free space is that of the volume, also for a folder that is not made yet") {
  const TestFolder folder("space");
  const auto here = free_space(folder.path());
  REQUIRE(here.has_value());
  CHECK(*here > 0);
  CHECK(free_space(folder.file("not/made/yet")).has_value());
  CHECK(free_space("").has_value());
}

TEST_CASE("local calendar time") {
  const std::time_t moment = 1'000'000'000;  // 2001-09-09 01:46:40 UTC
  const std::tm local = local_time(moment);
  CHECK(local.tm_year == 101);
  CHECK(local.tm_mon == 8);
  std::tm copy = local;
  CHECK(std::mktime(&copy) == moment);
}
