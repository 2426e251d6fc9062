#include "elevation/zip_directory.hpp"

#include <doctest/doctest.h>

#include <filesystem>
#include <tuple>

#include "base/files.hpp"
#include "base/inflate.hpp"
#include "base/text.hpp"
#include "elevation/archive.hpp"
#include "elevation/unzip.hpp"
#include "support/stand_in.hpp"
#include "support/zip_bytes.hpp"

using namespace ferrowen;
using test::archive_of;
using test::ArchiveEntry;
using Texts = std::vector<std::string>;

namespace {

Result<std::vector<ArchiveItem>> read(const std::string& bytes) {
  MemorySource source(bytes);
  return read_zip_directory(source);
}

}  // namespace

TEST_CASE("the list of an archive is read, a damaged one is refused") {
  const std::string good =
      archive_of({{"M32/"}, {"M32/N47E009.hgt"}, {"link", 4, 0120777}}, "a PK\5 comment");
  const auto entries = read(good);
  REQUIRE(entries.ok());
  REQUIRE(entries.value.size() == 3);
  CHECK(entries.value[0].is_folder);
  CHECK(entries.value[1].size == 2884802);
  CHECK(cell_of_entry(entries.value[1]) == "N47E009.hgt");
  CHECK(entries.value[2].is_link);
  // Whatever is cut off at either end, nothing is read as if it were whole.
  for (std::size_t cut = 1; cut < good.size(); ++cut) {
    CHECK_FALSE(read(good.substr(0, good.size() - cut)).ok());
    CHECK_FALSE(read(good.substr(cut)).ok());
  }
  for (const char* bytes : {"", "PK\5\6", "no archive"})
    CHECK(read(bytes).error == "is no complete zip archive.");
  CHECK(read(archive_of({})).value.empty());
}

TEST_CASE("what an archive may not hold") {
  const std::tuple<ArchiveEntry, const char*> rows[] = {
      {{"N47E009.hgt", 2884802}, ""},
      {{"a/b/n47e009.HGT", 25934402}, ""},
      {{"read..me.txt", 5}, ""},
      {{"a/", 0}, ""},
      {{"../N47E009.hgt"}, "'../N47E009.hgt' leads out of the folder"},
      {{"a/../../x"}, "'a/../../x' leads out of the folder"},
      {{"a\\..\\x"}, "'a\\..\\x' leads out of the folder"},
      {{"/etc/x"}, "'/etc/x' leads out of the folder"},
      {{"\\\\server\\x"}, "'\\\\server\\x' leads out of the folder"},
      {{"C:x"}, "'C:x' leads out of the folder"},
      {{"N47E009.hgt", 2884802, 0120777}, "'N47E009.hgt' is a link"},
      {{"N47E009.hgt", 2884802, 0, 1}, "'N47E009.hgt' needs a password"},
      {{"N47E009.hgt", 1000}, "'N47E009.hgt' has a wrong size (1000 bytes)"},
      {{"n47e009.hgt", 0}, "'n47e009.hgt' has a wrong size (0 bytes)"},
  };
  for (const auto& [entry, problem] : rows) {
    const auto entries = read(archive_of({entry}));
    REQUIRE(entries.value.size() == 1);
    CHECK(zip_entry_problem(entries.value[0]) == problem);
  }
}

TEST_CASE("names are UTF-8 where the archive says so or Unix made it, else of code page 437") {
  constexpr unsigned utf8_flag = 1U << 11U;
  const auto name_of = [](const std::string& stored, unsigned flags) {
    return read(archive_of({{stored, 5, 0, flags}})).value.at(0).name;
  };
  CHECK(name_of("H\x94he.txt", 0) == "H\u00f6he.txt");
  CHECK(name_of("H\u00f6he.txt", utf8_flag) == "H\u00f6he.txt");
  CHECK(name_of("H\u00f6he.txt", 0) == "H\u00f6he.txt");
}

TEST_CASE("zip.cmd and its shell sister") {
  const auto text = [](const char* program, const char* folder, Dialect dialect) {
    const Result<ConsoleScript> script = unzip_script(program, folder, dialect);
    REQUIRE(script.ok());
    return render(script.value, dialect).value;
  };
  CHECK(text("C:\\PROGRA~1\\7z.exe", "D:\\h g", Dialect::batch) ==
        " cd /d \"D:\\h g\"\r\nC:\\PROGRA~1\\7z.exe e *.zip -y\r\npause\r\n");
  CHECK(text("/usr/bin/7zz", "/h g", Dialect::shell)
            .starts_with("#!/bin/sh\ncd -- \"/h g\" || exit 1\n/usr/bin/7zz e \"*.zip\" -y\n"));
  const ConsoleScript both = unzip_script("/7zz", "/h", Dialect::shell, {".zip", ".ZIP"}).value;
  CHECK(contains(render(both, Dialect::shell).value, "/7zz e \"*.ZIP\" -y\n/7zz e \"*.zip\" -y\n"));
  const ConsoleScript named = unzip_script("7z", "D:\\h", Dialect::batch, {".zip"}, {"-a b.zip"}).value;
  CHECK(contains(render(named, Dialect::batch).value, "7z e \".\\-a b.zip\" -y\r\npause"));
}

TEST_CASE("archives are found whatever the case of their endings") {
  const test::TempFolder folder;
  for (const char* name : {"a.ZIP", "b.zip", "c.Zip", "d.zip.txt"})
    folder.write(name, "x");
  CHECK(zip_archives(folder.path()) == Texts{"a.ZIP", "b.zip", "c.Zip"});
}

TEST_CASE("unzip refuses before it runs anything") {
  test::StandIn stage("h \u00fc");
  const std::string folder = stage.home / "down";
  const auto refusal = [&](const std::string& where) {
    stage.prompts.said.clear();
    CHECK(unzip(stage.workspace, stage.prompts, stage.progress, where).result == StageResult::stopped);
    return join_texts(stage.prompts.tells(), "|");
  };
  stage.set("7z={home}/none");
  CHECK(refusal(folder) == "Cannot locate 7zip");
  stage.set("7z={home}/mkgmap.jar");
  CHECK(refusal(" ") == "Please select.");
  CHECK(refusal(folder) == "Cannot find folder:" + folder);
  stage.home.write("down/N47E009.hgt", "old");
  CHECK(refusal(folder) == "No files found: " + folder);
  stage.home.write("down/b.zip", archive_of({{"x/../../y"}}));
  stage.home.write("down/c.zip", "cut");
  stage.home.write("down/d.zip", archive_of({{"a.zip", 5}}));
  CHECK(refusal(folder) ==
        "Not unzipped:\r\nb.zip 'x/../../y' leads out of the folder\r\nc.zip is no complete zip archive.\r\n"
        "d.zip 'a.zip' is an archive itself");
  CHECK(read_whole_file(stage.home / "down/N47E009.hgt") == "old");
  stage.home.write("tracks/my tracks/a.gpx", "mine");
  stage.home.write("tracks/t.zip", archive_of({{"x/my tracks", 5}}));
  CHECK(refusal(stage.home / "tracks") ==
        "Not unzipped:\r\nt.zip 'x/my tracks' has the name of a folder that is there");
  CHECK(read_whole_file(stage.home / "tracks/my tracks/a.gpx") == "mine");
  stage.home.write("down/a.zip", archive_of({{"N47E009.hgt"}}));
  CHECK(archives_with_cells(folder, {"N47E009.hgt"}) == Texts{"a.zip"});
}

#ifndef _WIN32
TEST_CASE("what is not as its archive promises is no result, and a refused archive hinders no other") {
  test::StandIn stage("h $x");
  const std::string tool =
      stage.home.write("my 7z",
                       "#!/bin/sh\necho \"$2\" >>\"$0.read\"\nprintf right >good.txt\nprintf wrong >bad.txt\n"
                       "echo 'ERROR: CRC Failed : bad.txt'\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  stage.set("7z={home}/my 7z");
  const auto archive = [&](const char* name, const char* entry) {
    stage.home.write(name, test::zip_bytes({{entry, "right", 0, 5, crc32("right"), 0}}));
  };
  archive("down/bad.zip", "bad.txt");
  archive("down/good.zip", "a/good.txt");
  archive("down/slash.zip", "sub\\x.txt");
  stage.home.write("down/bad.txt", "older");
  const UnzipReport report = unzip(stage.workspace, stage.prompts, stage.progress, stage.home / "down");
  CHECK(report.result == StageResult::failed);
  CHECK(report.files == Texts{"good.txt"});
  CHECK(report.failed == Texts{"bad.txt"});
  CHECK(report.refused == Texts{"slash.zip"});
  CHECK(read_whole_file(stage.home / "down/good.txt") == "right");
  CHECK(read_whole_file(stage.home / "down/bad.txt") == "older");
  CHECK(read_whole_file(tool + ".read") == "./bad.zip\n./good.zip\n");
  CHECK(stage.prompts.tells() ==
        Texts{"Not unzipped:\r\nslash.zip 'sub\\x.txt' holds a backslash", "Successfully zipped:\r\ngood.txt",
              "Files were not unzippped\r\nbad.txt (bad.zip)\r\nERROR: CRC Failed : bad.txt\r\n"
              "ERROR: CRC Failed : bad.txt"});
}
#endif
