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
  CHECK(file_exists(path));
  CHECK_FALSE(file_has_content(path));
  CHECK(read_file(path).ok());
  CHECK(list_files(folder.path(), {".bin", ".new"}) == std::vector<std::string>{"all bytes.bin"});
}

TEST_CASE("what cannot be read is told with its path, or reads as nothing") {
  const TempFolder folder;
  const std::string big = folder.write("big.txt", "12345");
  for (const std::string& path : {folder / "missing", folder.path(), std::string()}) {
    CAPTURE(path);
    CHECK(read_whole_file(path).empty());
    CHECK(read_file(path).error.starts_with(path + ": "));
  }
  CHECK(read_file(big, 4).error == big + ": too large (5 bytes)");
  CHECK(read_file(big, 5).value == "12345");
  CHECK(file_size(folder.path()) == 0);
}

TEST_CASE("a write that fails keeps the old file and tells the path") {
  const TempFolder folder;
  const std::string path = folder.write("settings", "old");

  SUBCASE("the neighbour file cannot be made") {
    folder.write("settings.new/in the way", "");
    CHECK(safe_write(path, "new").error.starts_with(path + ": "));
    CHECK(read_whole_file(path) == "old");
  }
  SUBCASE("the folder is a file") {
    const std::string below = path + "/file";
    CHECK(safe_write(below, "new").error.starts_with(below + ": "));
    CHECK(make_folder(below).error.starts_with(below + ": "));
    CHECK(read_whole_file(path) == "old");
  }
  SUBCASE("the place is taken by a folder") {
    CHECK_FALSE(safe_write(folder.path(), "new").ok());
    CHECK_FALSE(copy_file(path, folder.path()).ok());
    CHECK(read_whole_file(path) == "old");
  }
  SUBCASE("a copy of a missing file") {
    CHECK_FALSE(copy_file(folder / "missing", path).ok());
    CHECK(read_whole_file(path) == "old");
    CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{"settings"});
  }
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
  std::signal(SIGXFSZ, handler);
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
  CHECK(list_files(folder / "missing", {""}).empty());
}

TEST_CASE("files moved aside come back unless the run was good") {
  const TempFolder folder;
  const std::string tile = folder.write("1.img", "old");
  const std::string missing = folder / "2.img";
  {
    MovedAside aside;
    CHECK(aside.take(tile).ok());
    CHECK(aside.take(missing).ok());
    CHECK(aside.count() == 1);
    CHECK_FALSE(file_exists(tile));
    folder.write("1.img", "half made");
    folder.write("2.img", "new");

    SUBCASE("restored") { CHECK(aside.restore().ok()); }
    SUBCASE("forgotten") {}
    SUBCASE("dropped") {
      CHECK(aside.drop().ok());
      CHECK(read_whole_file(tile) == "half made");
      folder.write("1.img", "old");
    }
  }
  CHECK(read_whole_file(tile) == "old");
  CHECK(read_whole_file(missing) == "new");
  CHECK(list_files(folder.path(), {""}) == std::vector<std::string>{"1.img", "2.img"});
}
