#include "pipeline/argument_files.hpp"

#include <doctest/doctest.h>

#include <string>
#include <tuple>
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

}  // namespace

TEST_CASE("renumbering moves every map name of a subset by the same distance, if it has eight digits") {
  const ArgumentFile ends = small_template(four_tiles, {"13224388", "13224385", "99999999"});
  CHECK(argument_file_text(renumbered_template(ends, "13224385", "00000007").value) ==
        "# made by splitter\r\nfamily-name: x\r\n"
        "mapname: 00000007\r\ndescription: One\r\ninput-file: 13224385.o5m\r\n\r\n"
        "mapname: 00000010\r\ndescription: Four\r\ninput-file: 13224388.o5m\r\n\r\n");
  CHECK(renumbered_template(four_tiles, "13224385", "99999996").ok());
  const std::tuple<const char*, const char*, const char*> refused[] = {
      {"13224385", "99999997", "tile 13224388"},
      {"13224388", "00000002", "13224385"},
      {"1322438", "13224385", "'1322438'"},
      {"13224385", "1234567A", "'1234567A'"},
  };
  for (const auto& [first, map_id, part_of_error] : refused)
    CHECK(contains(renumbered_template(four_tiles, first, map_id).error, part_of_error));
  CHECK(contains(renumbered_template({{}, {{"tile1", "", ""}}}, "13224385", "13224385").error, "'tile1'"));
}

TEST_CASE("a transparent map is not made opaque again behind its contours") {
  CHECK(contour_arguments_text({{"/h/N47E009.osm"}, {"13224389"}, true, 40}) ==
        "transparent\r\ndraw-priority: 45\r\n\r\nmapname: 13224389\r\ndescription:Contours\r\n"
        "input-file: /h/N47E009.osm\r\n\r\ndraw-priority: 40\r\n");
}

TEST_CASE("free map names lie behind the tiles, or in front of them when nothing is left behind") {
  const std::tuple<Texts, std::size_t, Texts> rows[] = {
      {{"13224385", "13224388", "13224386"}, 2, {"13224389", "13224390"}},
      {{"99999990", "99999998"}, 2, {"99999988", "99999989"}},
      {{"63239998"}, 3, {"63239999", "63240001", "63240002"}},  // without that of the overview map
      {{"00000004"}, 1, {"00000005"}},
  };
  for (const auto& [taken, count, found] : rows)
    CHECK(free_map_names(taken, count).value == found);
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
