#include <doctest/doctest.h>

#include "base/text.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "support/temp_folder.hpp"
#include "tiles/map_bytes.hpp"

using namespace ferrowen;
using namespace std::string_literals;
using test::pbf_block;

namespace {

struct Case {
  std::string bytes;
  std::string wanted;  // part of the problem; "" when there is none
};

void check_cases(InputKind kind, const std::vector<Case>& cases) {
  for (const Case& one : cases) {
    const std::string found = check_input_bytes(one.bytes, kind).error;
    CAPTURE(one.bytes);
    CAPTURE(found);
    CHECK(one.wanted.empty() == found.empty());
    CHECK(contains(found, one.wanted));
  }
}

}  // namespace

TEST_CASE("PBF: any cut but one at the end of a data block is found") {
  const std::string whole = test::small_pbf();
  const std::size_t first_end = whole.size() - pbf_block("OSMData", "second").size();
  const std::size_t header_end = pbf_block("OSMHeader", "head").size();
  std::vector<Case> cases;
  for (std::size_t size = 0; size <= whole.size(); ++size)
    cases.push_back({whole.substr(0, size), "not complete"});
  cases[0].wanted = "is empty";
  cases[header_end].wanted = "holds no map data";
  cases[first_end].wanted = cases[whole.size()].wanted = "";
  check_cases(InputKind::pbf, cases);
}

TEST_CASE("PBF: foreign and damaged bytes") {
  const std::string header = pbf_block("OSMHeader", "h");
  const std::string data = pbf_block("OSMData", "d");
  const std::string long_index = "\x12\x40" + std::string(64, 'i');  // index data in front makes a long head
  std::string indexed = data;
  indexed.insert(4, long_index);
  indexed[3] = static_cast<char>(indexed[3] + static_cast<int>(long_index.size()));
  check_cases(
      InputKind::pbf,
      {{data + header, "is no OpenStreetMap PBF file"},
       {"\0\0\0\0"s + data, "is no OpenStreetMap PBF file"},
       {header + "\0\2\0\0"s + data, "damaged: the block at byte " + std::to_string(header.size())},
       {header + "\0\0\0\4\x0A\x7FXX"s, "damaged"},                             // field longer than the head
       {header + "\0\0\0\x0E\x0A\x07OSMData\x18\x81\x80\x80\x10"s, "damaged"},  // 32 MB and one byte
       {header + "\0\0\0\x0E\x0A\x07OSMData\x18\x80\x80\x80\x10"s, "not complete"},  // 32 MB are allowed
       {header + pbf_block("Unknown", "u"), "holds no map data"},
       {header + pbf_block("Unknown", "u") + indexed, ""}});
}

TEST_CASE("O5M") {
  const std::string whole = test::small_o5m();
  std::string change = whole;
  change.replace(3, 4, "o5c2");
  check_cases(InputKind::o5m, {{whole, ""},
                               {change, ""},
                               {"\xFF\xE0\x04o5m2\xFF\xFE"s, "holds no map data"},
                               {"\xFF\xE0\x04o5m2\xDB\x7F\xFE"s, "damaged"},
                               {"<osm>"s, "is no O5M file"}});
  for (std::size_t size = 1; size < whole.size(); ++size) {
    CAPTURE(size);
    CHECK_FALSE(check_input_bytes(whole.substr(0, size), InputKind::o5m).ok());
  }
}

TEST_CASE("OSM XML") {
  const std::string body = "<node id='1'/>";
  const std::string prolog = "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!-- <html> -->\n<!DOCTYPE osm>\n";
  check_cases(InputKind::osm, {{prolog + "<osm version='0.6'>" + body + "</osm>\r\n\n", ""},
                               {"<osm>" + std::string(70000, ' ') + body + "</osm >", ""},
                               {"<osmChange><create>" + body + "</create></osmChange>", ""},
                               {"<osm>" + body + "</osm", "not complete"},
                               {"<osm>" + body + "</osmChange>", "not complete"},
                               {prolog + "<osm version='0.6'/>\n", "holds no map data"},
                               {"<osmosis>" + body + "</osmosis>", "(it begins with <osmosis>)"},
                               {"\xFF\xFE<\0o\0"s, "is no OpenStreetMap XML"}});
}

TEST_CASE("packed OSM and MP") {
  check_cases(InputKind::osm_gz, {{"\x1F\x8B\x08" + std::string(40, 'x'), ""},
                                  {"\x1F\x8B\x08" + std::string(10, 'x'), "not complete"},
                                  {"<osm>", "is no file packed with gzip"}});
  const std::string header = "; comment\r\n[img id]\r\nID=1\r\n[END]\r\n";
  check_cases(InputKind::mp, {{header + "[Polyline]\r\nType=0x1\r\n[END]\r\n", ""},
                              // the section name lies across the border of two pieces
                              {header + std::string(1048576 - header.size() - 3, ' ') + "[POI]", ""},
                              {header, "holds no map data"},
                              {"[POI]\r\nType=0x1\r\n[END]\r\n", "is no Polish (MP) map file"}});
}

TEST_CASE("files on the disk") {
  const test::TempFolder folder("in put");
  MessageTable messages;
  messages.set(77, "Null: ");
  const std::string empty = folder.write("Empty.OSM.PBF", "");
  CHECK(check_input(folder.write("good.osm.pbf", test::small_pbf())).ok());
  CHECK(check_input(empty, messages).error == "Null: " + empty);
  CHECK(contains(check_input(folder.path()).error, "is a folder"));
  CHECK(contains(check_input(folder.write("a.osm.bz2", "BZh9")).error, "ends in .osm, .osm.gz, .pbf"));
  const std::string block = pbf_block("OSMHeader", "head");
  const std::string cut = folder.write("cut.osm.pbf", block + block.substr(1));
  CHECK(check_input(cut).error == "'" + cut + "' is not complete: it ends inside the block at byte " +
                                      std::to_string(block.size()) +
                                      ". Please download or copy the file again.");
}
