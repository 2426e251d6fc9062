#include "platform/files.hpp"

#include <doctest/doctest.h>

#include "base/files.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;
using ferrowen::read_whole_file;
using ferrowen::test::TempFolder;
namespace fs = std::filesystem;

TEST_CASE("a flushed write tells why it failed") {
  const TempFolder folder("files");
  CHECK_FALSE(write_flushed(folder / "missing/file", "x").empty());
  CHECK_FALSE(write_flushed(folder.path(), "x").empty());
#ifdef __linux__
  CHECK(write_flushed("/dev/full", "x") == "No space left on device");
#endif
}

TEST_CASE("a file takes the place of another, whole or not at all") {
  const TempFolder folder("replacing");
  const std::string target = folder / "target \u00fc";
  for (const char* text : {"first", "second"}) {
    const std::string fresh = folder.write("fresh", text);
    CHECK(replace_file(fresh, target).empty());
    CHECK(read_whole_file(target) == text);
    CHECK_FALSE(fs::exists(file_system_path(fresh)));
  }
  CHECK_FALSE(replace_file(folder / "missing", target).empty());
  CHECK(read_whole_file(target) == "second");
  CHECK_FALSE(replace_file(target, folder.path()).empty());
  CHECK(read_whole_file(target) == "second");
}

TEST_CASE("facts about files and folders") {
  const TempFolder folder("facts");
  CHECK(folder_is_writable(folder.path()));
  CHECK(fs::is_empty(file_system_path(folder.path())));
  CHECK_FALSE(folder_is_writable(folder / "none"));
  CHECK(free_space(folder.path()).value_or(0) > 0);
  CHECK(free_space(folder / "not/made/yet").has_value());

  CHECK_FALSE(change_time(folder / "none").has_value());
  const double written = change_time(folder.write("file", "x")).value_or(0);
  CHECK(written == doctest::Approx(static_cast<double>(std::time(nullptr))).epsilon(60 / 1e9));
}
