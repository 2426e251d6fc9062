#include "base/file_set.hpp"

#include <doctest/doctest.h>

#include "base/date_text.hpp"
#include "base/files.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

TEST_CASE("files arrive together, beside what lies there already") {
  const test::TempFolder home("a b");
  const std::vector<FileToCopy> files = {{home.write("one", "1"), "one"},
                                         {home.write("two", "22"), "deep/er/two"}};
  CHECK(total_size(files) == 3);
  std::vector<double> shares;
  const auto note = [&](double share) {
    shares.push_back(share);
    return true;
  };
  REQUIRE(copy_file_set(files, home / "new", note, "").ok());
  CHECK(shares == std::vector<double>{0, 1.0 / 3});
  home.write("new/one", "older");
  home.write("new/mine", "mine");
  REQUIRE(copy_file_set(files, platform::join(home / "new", ""), {}, "").ok());
  CHECK(read_whole_file(home / "new/one") == "1");
  CHECK(read_whole_file(home / "new/mine") == "mine");
  CHECK(read_whole_file(home / "new/deep/er/two") == "22");
  CHECK(list_folders(home.path()) == Texts{"new"});
}

TEST_CASE("a copy that fails or is stopped leaves everything as it was") {
  for (const bool exists : {false, true}) {
    const test::TempFolder home;
    if (exists) home.write("new/sub/one", "older");
    const FileToCopy good{home.write("one", "1"), "sub/one"};
    const auto go_on_until = [](bool stop) { return [stop](double share) { return !stop || share == 0; }; };
    const auto copy = [&](const FileToCopy& second, bool stop) {
      return copy_file_set({good, second}, home / "new", go_on_until(stop), "Process cancelled").error;
    };
    CHECK(copy({home / "none", "none"}, false) == (home / "none") + ": no such file");
    CHECK(copy({home.write("two", "2"), "two"}, true) == "Process cancelled");
    if (exists) {
      home.write("new/two/x", "");
      CHECK(copy({home / "two", "two"}, false).ends_with("a folder of this name is in the way"));
      CHECK(read_whole_file(home / "new/sub/one") == "older");
    }
    CHECK(list_folders(home.path()) == (exists ? Texts{"new"} : Texts{}));
  }
}

TEST_CASE("dates and names of folders") {
  std::tm date{};
  date.tm_year = 125;
  date.tm_mon = 6;
  date.tm_mday = 4;
  date.tm_hour = 9;
  date.tm_min = 5;
  for (const auto& [format, text] :
       std::vector<std::pair<const char*, const char*>>{{"mm/yyyy", "07/2025"},
                                                        {"d.m.yy", "4.7.25"},
                                                        {"DD MMM YYYY", "04 Jul 2025"},
                                                        {"yyyymmdd-hhnnss", "20250704-090500"},
                                                        {"x\\%", "x\\%"},
                                                        {"", ""}})
    CHECK(date_text(date, format) == text);
  for (const auto& [text, name] :
       std::vector<std::pair<const char*, const char*>>{{"Demo Map 07/2025", "Demo Map 07-2025"},
                                                        {"../..", "..-"},
                                                        {"a<b>:c|\t\"?*\\", "a-b--c------"},
                                                        {" Grüße. ", "Grüße"},
                                                        {"..", "-"},
                                                        {"", "-"}})
    CHECK(as_file_name(text) == name);
  CHECK(is_time_stamp(time_stamp(1700000000)));
  for (const char* text :
       {"", "2025-11-21", "2025-11-21 14-05-3x", "2025-11-21_14-05-33", "2025-11-21 14-05-333"})
    CHECK_FALSE(is_time_stamp(text));
}
