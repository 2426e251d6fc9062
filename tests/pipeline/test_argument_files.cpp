#include "pipeline/argument_files.hpp"

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "base/text.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const ArgumentFile four_tiles = {{"# made by splitter", "family-name: x"},
                                 {{"13224385", "One", "13224385.o5m"},
                                  {"13224386", "Two", "13224386.o5m"},
                                  {"13224387", "Three", "13224387.o5m"},
                                  {"13224388", "Four", "13224388.o5m"}}};

Texts names_of(const ArgumentFile& file) {
  Texts names;
  for (const ArgumentBlock& block : file.blocks)
    names.push_back(block.map_name);
  return names;
}

}  // namespace

TEST_CASE("a subset keeps the head and the order of the template") {
  CHECK(argument_file_text(small_template(four_tiles, {"13224388", "13224386", "99999999"})) ==
        "# made by splitter\r\nfamily-name: x\r\n"
        "mapname: 13224386\r\ndescription: Two\r\ninput-file: 13224386.o5m\r\n\r\n"
        "mapname: 13224388\r\ndescription: Four\r\ninput-file: 13224388.o5m\r\n\r\n");
}

TEST_CASE("renumbering moves every map name by the same distance") {
  const auto renumbered = renumbered_template(four_tiles, "13224385", "00000007");
  REQUIRE(renumbered.ok());
  CHECK(names_of(renumbered.value) == Texts{"00000007", "00000008", "00000009", "00000010"});
  CHECK(renumbered.value.blocks[3].input_file == "13224388.o5m");
  CHECK(renumbered.value.blocks[3].description == "Four");

  const ArgumentFile last_two = small_template(four_tiles, {"13224387", "13224388"});
  CHECK(names_of(renumbered_template(last_two, "13224385", "55550000").value) ==
        Texts{"55550002", "55550003"});

  struct Row {
    const char* first;
    const char* map_id;
    const char* part_of_error;
  };
  for (const Row& row : {Row{"13224385", "99999997", "tile 13224388"},
                         Row{"13224388", "00000002", "13224385"}, Row{"1322438", "13224385", "'1322438'"},
                         Row{"13224385", "1234567A", "'1234567A'"}, Row{"13224385", "", "''"}}) {
    const auto result = renumbered_template(four_tiles, row.first, row.map_id);
    CAPTURE(result.error);
    CHECK(contains(result.error, row.part_of_error));
  }
  CHECK(renumbered_template(four_tiles, "13224385", "99999996").ok());
  CHECK(contains(renumbered_template({{}, {{"tile1", "", ""}}}, "13224385", "13224385").error, "'tile1'"));
}

TEST_CASE("an unsplit input is one block") {
  CHECK(argument_file_text(unsplit_template("55550000", "My map", "/a b/c.osm.pbf")) ==
        "mapname: 55550000\r\ndescription: My map\r\ninput-file: /a b/c.osm.pbf\r\n\r\n");
}

TEST_CASE("contours are transparent and above the map, which is neither again behind them") {
  ContourArguments contours{{"/h/N47E009.osm", "/h/N47E010.osm"}, {"13224389", "13224390"}, false, 25};
  const std::string blocks =
      "\r\nmapname: 13224389\r\ndescription:Contours\r\ninput-file: /h/N47E009.osm\r\n"
      "\r\nmapname: 13224390\r\ndescription:Contours\r\ninput-file: /h/N47E010.osm\r\n\r\n";
  CHECK(contour_arguments_text(contours) ==
        "transparent\r\ndraw-priority: 30\r\n" + blocks + "no-transparent\r\ndraw-priority: 25\r\n");
  contours.map_is_transparent = true;
  contours.map_draw_priority = 40;
  CHECK(contour_arguments_text(contours) ==
        "transparent\r\ndraw-priority: 45\r\n" + blocks + "draw-priority: 40\r\n");
}

TEST_CASE("free map names lie behind the tiles, or in front of them when nothing is left behind") {
  struct Row {
    Texts taken;
    std::size_t count;
    Texts found;
  };
  const std::vector<Row> rows = {
      {{"13224385", "13224388", "13224386"}, 2, {"13224389", "13224390"}},
      {{"99999990", "99999998"}, 1, {"99999999"}},
      {{"99999990", "99999998"}, 2, {"99999988", "99999989"}},
      {{"63239998"}, 3, {"63239999", "63240001", "63240002"}},  // without that of the overview map
      {{"00000004"}, 1, {"00000005"}},
      {{"13224385"}, 0, {}},
  };
  for (const Row& row : rows) {
    const auto result = free_map_names(row.taken, row.count);
    CHECK(result.ok());
    CHECK(result.value == row.found);
  }
  CHECK_FALSE(free_map_names({"00000001", "99999999"}, 2).ok());
  CHECK(contains(free_map_names({"13224385", "map"}, 1).error, "'map'"));
}

TEST_CASE("the current arguments are written as an argument file reads them") {
  const Command command{"java",
                        {word("-Xmx1500m"), word("-ea"), word("-jar"), quoted("/m k/mkgmap.jar"),
                         option("--mapname", "13224385"), quoted_option("--family-name", "My \"Map\""),
                         word("--route"), word("-c"), quoted("/s p/dem.args"), quoted("/out/My.TYP")}};
  const auto text = current_arguments_text(command);
  CHECK(text.ok());
  CHECK(text.value ==
        "mapname=13224385\r\nfamily-name=My \"Map\"\r\nroute\r\nread-config=/s p/dem.args\r\n"
        "input-file=/out/My.TYP\r\n");
  CHECK(contains(current_arguments_text({"java", {option("--description", "a\nb")}}).error,
                 "description=a\nb"));
  CHECK(contains(current_arguments_text({"java", {word("-n"), word("1")}}).error, "-n"));
}

TEST_CASE("values with a line end are refused") {
  for (const std::string& value : {std::string("a\rb"), std::string("a\nb"), std::string("a\0b", 3)})
    CHECK_FALSE(check_argument_value(value).ok());
  CHECK(check_argument_value("{a}: \"b\" = #c % $(d) \xC3\xBC").ok());
}
