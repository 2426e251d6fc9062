#include "app/handed_over.hpp"

#include <doctest/doctest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "base/files.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using std::chrono::milliseconds;

TEST_CASE("a file is handed to the program that runs, or taken back when nobody wants it") {
  const test::TempFolder home("h\xC3\xA4nde % &");
  const ProgramFolder folder(home.path());
  REQUIRE(folder.create_layout().ok());
  const std::string script = home / "a b.auto";
  CHECK(take_handed_over(folder).empty());

  CHECK_FALSE(hand_over(folder, script, milliseconds(120)));
  CHECK(take_handed_over(folder).empty());

  // Two starts at once: each file arrives, whole and once.
  std::vector<std::string> taken;
  std::thread running([&] {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (taken.size() < 2 && std::chrono::steady_clock::now() < deadline) {
      if (std::string file = take_handed_over(folder); !file.empty()) taken.push_back(std::move(file));
      std::this_thread::sleep_for(milliseconds(5));
    }
  });
  std::atomic<bool> first = false;
  std::thread start([&] { first = hand_over(folder, script, std::chrono::seconds(10)); });
  CHECK(hand_over(folder, "relative.osm", std::chrono::seconds(10)));
  start.join();
  running.join();
  CHECK(first);
  std::sort(taken.begin(), taken.end());
  std::vector<std::string> expected = {script, platform::absolute("relative.osm")};
  std::sort(expected.begin(), expected.end());
  CHECK(taken == expected);

  const ProgramFolder nowhere(home / "gone");
  CHECK_FALSE(hand_over(nowhere, script, milliseconds(120)));
}
