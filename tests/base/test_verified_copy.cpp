#include "base/verified_copy.hpp"

#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

// Three and a bit of the blocks that a copy is made in.
std::string large_text() {
  std::string text((std::size_t{3} << 20) + 12345, '.');
  for (std::size_t i = 0; i < text.size(); i += 977)
    text[i] = static_cast<char>('a' + i % 26);
  return text;
}

}  // namespace

TEST_CASE("a verified copy is whole, takes the place of the older file and leaves nothing beside it") {
  for (const std::string& content : {std::string(), std::string("small"), large_text()}) {
    const test::TempFolder home("g\u00fc te");
    const std::string source = home.write("source", content);
    const std::string target = home.write("there/target", "older");
    double last = 0;
    const auto rises = [&](double share) {
      CHECK(share >= last);
      last = share;
      return true;
    };
    CHECK(copy_verified(source, target, rises, "").ok());
    CHECK(read_whole_file(target) == content);
    CHECK(read_whole_file(source) == content);
    CHECK(list_files(home / "there", {""}) == Texts{"target"});
    CHECK((content.empty() || last == 1));
  }
}

TEST_CASE("whatever happens between two blocks, the older file stays and nothing unfinished does") {
  enum class Event : std::uint8_t { stop, target_cut, target_changed, source_cut, folder_gone };
  for (const Event event :
       {Event::stop, Event::target_cut, Event::target_changed, Event::source_cut, Event::folder_gone}) {
    // Eight blocks are written and read back: each of them is the moment once.
    for (int moment = 1; moment <= 8; ++moment) {
      CAPTURE(static_cast<int>(event));
      CAPTURE(moment);
      const test::TempFolder home;
      const std::string source = home.write("source", large_text());
      const std::string target = home.write("there/target", "older");
      const std::string unfinished = target + ".new";
      int step = 0;
      bool happened = false;  // a file that is open cannot be touched on every system
      const auto disturb = [&](double) {
        if (++step != moment) return true;
        std::error_code error;
        const auto path = platform::file_system_path(event == Event::source_cut ? source : unfinished);
        if (event == Event::target_cut || event == Event::source_cut)
          std::filesystem::resize_file(path, 1, error);
        if (event == Event::target_changed)
          happened = std::ofstream(path, std::ios::in | std::ios::out).put('#').flush().good();
        else if (event == Event::folder_gone)
          std::filesystem::remove_all(platform::file_system_path(home / "there"), error);
        happened = happened || (!error && event != Event::target_changed);
        return event != Event::stop;
      };
      const Status copied = copy_verified(source, target, disturb, "stopped");
      CHECK((event != Event::stop || copied.error == "stopped"));
      // What is changed behind the last look at it is not seen any more; the rest always is.
      CHECK((!copied.ok() || moment > 4 || !happened));
      if (copied.ok() && !happened) CHECK(read_whole_file(target) == large_text());
      if (!copied.ok() && event != Event::folder_gone) CHECK(read_whole_file(target) == "older");
      CHECK_FALSE(file_exists(unfinished));
    }
  }
}

TEST_CASE("a copy that cannot begin says why") {
  const test::TempFolder home;
  const std::string source = home.write("source", "1");
  home.write("folder/x", "");
  CHECK(copy_verified(home / "none", home / "target", {}, "").error ==
        (home / "none") + ": cannot be opened");
  CHECK(
      copy_verified(source, home / "folder", {}, "").error.ends_with("a folder of this name is in the way"));
  CHECK(copy_verified(source, home / "gone/target", {}, "").error.starts_with(home / "gone/target"));
  CHECK(list_files(home.path(), {""}) == Texts{"source"});
}
