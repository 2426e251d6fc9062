#include <doctest/doctest.h>

#include <filesystem>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#endif

#include "base/files.hpp"
#include "base/text.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using ferrowen::test::TempFolder;
namespace fs = std::filesystem;

TEST_CASE("whole files are read and written byte by byte") {
  const TempFolder folder("b ü");
  const std::string path = folder / "all bytes.bin";
  std::string bytes;
  for (int i = 0; i < 1000; ++i)
    bytes += static_cast<char>(i % 256);
  CHECK(safe_write(path, bytes).ok());
  CHECK(read_whole_file(path) == bytes);
  CHECK(safe_write(path, "").ok());
  CHECK_FALSE(file_has_content(path));
}

TEST_CASE("what cannot be read is told with its path, or reads as nothing") {
  const TempFolder folder;
  for (const std::string& path : {folder / "missing", folder.path(), std::string()}) {
    CHECK(read_whole_file(path).empty());
    CHECK(read_file(path).error.starts_with(path + ": "));
  }
  const std::string big = folder.write("big.txt", "12345");
  CHECK(read_file(big, 4).error == big + ": too large (5 bytes)");
}

TEST_CASE("a write that fails keeps the old file and tells the path") {
  const TempFolder folder;
  const std::string path = folder.write("settings", "old");
  const std::string below = path + "/file";
  CHECK(safe_write(below, "new").error.starts_with(below + ": "));
  CHECK(make_folder(below).error.starts_with(below + ": "));
  CHECK_FALSE(safe_write(folder.path(), "new").ok());
  CHECK_FALSE(copy_file(path, folder.path()).ok());
  CHECK_FALSE(copy_file(folder / "missing", path).ok());
  CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{"settings"});
  folder.write("settings.new/in the way", "");
  CHECK(safe_write(path, "new").error.starts_with(path + ": "));
  CHECK(read_whole_file(path) == "old");
}

#ifndef _WIN32
TEST_CASE("a disk that runs full leaves the old file and no neighbour") {
  const TempFolder folder;
  const std::string path = folder.write("settings", "old");
  rlimit before{};
  REQUIRE(getrlimit(RLIMIT_FSIZE, &before) == 0);
  const rlimit small{1000, before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  REQUIRE(setrlimit(RLIMIT_FSIZE, &small) == 0);
  const Status written = safe_write(path, std::string(5000, 'x'));
  setrlimit(RLIMIT_FSIZE, &before);
  CHECK((std::signal(SIGXFSZ, handler) == SIG_IGN));
  CHECK(written.error.starts_with(path + ": "));
  CHECK(read_whole_file(path) == "old");
  CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{"settings"});
}

TEST_CASE("links stay links, and what is no file is never replaced by one") {
  const TempFolder folder;
  const std::string target = folder.write("target", "old");
  const std::string link = folder / "link";
  fs::create_symlink(target, link);
  CHECK(safe_write(link, "new").ok());
  CHECK(fs::is_symlink(link));
  CHECK(read_whole_file(target) == "new");

  const std::string fifo = folder / "fifo";
  REQUIRE(mkfifo(fifo.c_str(), 0600) == 0);
  CHECK_FALSE(safe_write(fifo, "new").ok());
  CHECK_FALSE(copy_file(target, fifo).ok());
  CHECK(fs::is_fifo(fifo));
}
#endif

TEST_CASE("files are listed by ending, in byte order, without folders") {
  const TempFolder folder;
  for (const char* name : {"b.pbf", "a.o5m", "C.pbf", "a.txt", "sub.pbf/x"})
    folder.write(name, "");
  CHECK(list_files(folder.path(), {".pbf", ".o5m"}) == std::vector<std::string>{"C.pbf", "a.o5m", "b.pbf"});
  CHECK(list_folders(folder.path()) == std::vector<std::string>{"sub.pbf"});
}

TEST_CASE("files moved aside come back unless the run was good") {
  const TempFolder folder;
  const std::string tile = folder.write("1.img", "old");
  for (const bool good : {false, true}) {
    {
      MovedAside aside;
      CHECK(aside.take(tile).ok());
      CHECK(aside.take(folder / "2.img").ok());
      CHECK(aside.count() == 1);
      folder.write("1.img", "new");
      if (good) CHECK(aside.drop().ok());
    }
    CHECK(read_whole_file(tile) == (good ? "new" : "old"));
  }
  CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{"1.img"});
  // No folder is put aside, nor anything brought back from one.
  folder.write("3.img/x", "mine");
  folder.write("4.img", "old");
  folder.write("4.img.before/x", "mine");
  MovedAside aside;
  CHECK(aside.take(folder / "3.img").error == (folder / "3.img") + " is a folder.");
  CHECK(aside.take(folder / "4.img").error == (folder / "4.img.before") + " is a folder.");
  CHECK(aside.count() == 0);
  CHECK(read_whole_file(folder / "4.img") == "old");
}
