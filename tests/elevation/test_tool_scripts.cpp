// The console scripts as this system's own interpreter runs them, with the contour tool itself and stand-ins
// for the others, in folders with blanks and with characters that interpreters give a meaning.
#include <doctest/doctest.h>

#include <filesystem>

#include "base/files.hpp"
#include "base/inflate.hpp"
#include "base/text.hpp"
#include "elevation/contour_clip.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/merge.hpp"
#include "elevation/unzip.hpp"
#include "platform/files.hpp"
#include "support/stand_in.hpp"
#include "support/zip_bytes.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

constexpr std::size_t samples = 1201;

// A slope of 30 metres to the east.
std::string slope() {
  std::string bytes;
  for (std::size_t i = 0; i < samples * samples; ++i) {
    const std::size_t metres = 500 + i % samples / 40;
    bytes += static_cast<char>(metres / 256);
    bytes += static_cast<char>(metres % 256);
  }
  return bytes;
}

struct Workshop : test::StandIn {
  Workshop() : StandIn("h \u00fc & (x)") {
    prompts.default_answer = Answer::yes;
    const std::string programs = platform::folder_of(platform::executable_path());
    install(platform::join(programs, "ferrowen-contours"), "con tours", "contour-tool");
    install(platform::join(programs, "stand-in/tool"), "osm convert", "osmconvert");
    install(platform::join(programs, "stand-in/tool"), "7 z", "7z");
    set("hgt-folder-1={home}/h g; hgt-slot=0; clip-folder-1={home}/c l; clip-slot=0");
  }
  // A program of ours under a name with a blank.
  void install(const std::string& program, const std::string& name, const std::string& setting) {
    const std::string ending = platform::separator == '/' ? "" : ".exe";
    const std::string target = home.write("to ols/" + name + ending, "");
    std::filesystem::copy_file(platform::file_system_path(program + ending),
                               platform::file_system_path(target),
                               std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(platform::file_system_path(target), std::filesystem::perms::owner_all);
    set(setting + "={home}/to ols/" + name + ending);
  }
};

}  // namespace

TEST_CASE("contours.cmd and clip.cmd: from heights to clipped contours") {
  Workshop shop;
  ContourRequest request;
  for (const char* cell : {"h g/N46E009.hgt", "h g/S12W077.hgt"})
    request.height_files.push_back(shop.home.write(cell, slope()));
  request.interval = 10;
  const ContourOutcome made = make_contours(shop.workspace, shop.prompts, shop.progress, request);
  INFO(join_texts(shop.prompts.texts(), "|"));
  CHECK(made.result == StageResult::done);
  for (const char* name : {"h g/N46E009.osm", "h g/S12W077.osm"}) {
    const std::string text = read_whole_file(shop.home / name);
    CHECK(contains(text, R"(<tag k="ele" v="510"/>)"));
    CHECK(contains(text, "lat=\"" + std::string(contains(name, "N46") ? "46." : "-11.")));
  }
  shop.home.write("c l/N46E009clp.pbf", "older");
  shop.workspace.land_list = "N46E009";
  shop.workspace.tiles = {{"13224385", "", {46.1, 9.1}, {46.2, 9.2}, true}};
  const ClipReport clipped = clip(shop.workspace, shop.prompts, shop.progress);
  CHECK(clipped.result == StageResult::done);
  CHECK(read_whole_file(shop.home / "c l/N46E009clp.pbf")
            .ends_with(read_whole_file(shop.home / "h g/N46E009.osm")));
  CHECK(shop.prompts.asks().size() == 1);
}

TEST_CASE("zip.cmd: every archive of a folder") {
  Workshop shop;
  const std::string heights(2 * samples * samples, '\0');
  const auto archive = [&](const std::string& name) {
    const auto size = static_cast<std::uint32_t>(heights.size());
    return test::zip_bytes({{name, heights, 0, size, crc32(heights), 0}});
  };
  shop.home.write("z & p/one.zip", archive("N46E009.hgt"));
  shop.home.write("z & p/two (2).zip", archive("sub/N46E010.hgt"));
  const UnzipReport report = unzip(shop.workspace, shop.prompts, shop.progress, shop.home / "z & p");
  CHECK(report.result == StageResult::done);
  CHECK(report.files == Texts{"N46E009.hgt", "N46E010.hgt"});
  CHECK(file_size(shop.home / "z & p/N46E010.hgt") == heights.size());
}

TEST_CASE("conv.cmd: what cannot be read is left out and told by its own name") {
  Workshop shop;
  const std::string one = shop.home.write("p & q/on e.pbf", "one,");
  const std::string broken = shop.home.write("p & q/bro ken.pbf", "broken in the middle");
  const std::string two = shop.home.write("p & q/tw\u00f6 %.pbf", "two");
  const std::string target = shop.home.write("p & q/all (1).pbf", "older");
  const MergeReport report = merg(shop.workspace, shop.prompts, shop.progress, {one, broken, two}, target);
  INFO(join_texts(shop.prompts.texts(), "|"));
  CHECK(report.result == StageResult::done);
  CHECK(report.left_out == Texts{broken});
  CHECK(shop.prompts.tells() == Texts{broken + " not included", target + " created."});
  CHECK(read_whole_file(target).ends_with("one,two"));
  CHECK_FALSE(file_exists(shop.home / "temp/merge"));
}
