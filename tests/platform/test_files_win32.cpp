// Files that another program holds for a moment.
#ifdef _WIN32

#include <doctest/doctest.h>
#include <windows.h>

#include <chrono>
#include <string>
#include <thread>

#include "base/files.hpp"
#include "platform/files.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;

namespace {

HANDLE hold(const std::string& path) {
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  REQUIRE(file != INVALID_HANDLE_VALUE);
  return file;
}

}  // namespace

TEST_CASE("writing and renaming wait for who holds a file for a moment, and not for ever") {
  const test::TempFolder folder;
  const std::string written = folder.write("written.txt", "old");
  const std::string renamed = folder.write("renamed.txt", "other");

  const auto released_soon = [](const std::string& path) {
    return std::thread([file = hold(path)] {
      std::this_thread::sleep_for(std::chrono::milliseconds(70));
      CloseHandle(file);
    });
  };
  std::thread holder = released_soon(written);
  CHECK(platform::write_flushed(written, "new") == "");
  holder.join();
  CHECK(read_whole_file(written) == "new");
  holder = released_soon(renamed);
  CHECK(platform::replace_file(renamed, written) == "");
  holder.join();
  CHECK(read_whole_file(written) == "other");

  const HANDLE file = hold(written);
  CHECK(platform::write_flushed(written, "lost") != "");
  CloseHandle(file);
  CHECK(read_whole_file(written) == "other");
}

#endif
