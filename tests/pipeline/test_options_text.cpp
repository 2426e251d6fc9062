#include "pipeline/options_text.hpp"

#include <doctest/doctest.h>

#include "base/text.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

Texts options_of(const OptionsText& read) { return plain_arguments({"", read.options}); }

}  // namespace

TEST_CASE("options are read line by line, with comments and an end mark") {
  const std::pair<const char*, Texts> rows[] = {
      {"--route --latin1\r\n--x=1\n", {"--route", "--latin1", "--x=1"}},
      {"--copyright-message=\"a --b # c\" --x", {"--copyright-message=a --b # c", "--x"}},
      {"#--route\r\n  # --latin1\r\n--x # and why", {"--x"}},
      {"--code=a#b", {"--code=a#b"}},
      {"--route\r\n--latin1 ## not this line\r\n--x", {"--route"}},
      {"-c more.args\r\nlevels=0:24", {"-c", "more.args", "levels=0:24"}},
      {"--style=\u00fc\u00a0x", {"--style=\u00fc\u00a0x"}},
      {"--precomp-sea=sea.zip --mp --polygon-file=a.poly --name=osm",
       {"--precomp-sea=sea.zip", "--mp", "--polygon-file=a.poly", "--name=osm"}},
  };
  for (const auto& [text, options] : rows) {
    const OptionsText read = parse_options_text(text, "mkopts");
    CHECK(options_of(read) == options);
    CHECK(read.warnings.empty());
  }
}

TEST_CASE("the DEM block is taken out; one that is never closed is told") {
  const OptionsText read = parse_options_text(
      "--a\r\n <DEM> # heights\r\n--dem-dists=3312\r\n# no\r\n\r\n--x=1 2\r\n--y </Dem>\r\n#<dem>\r\n--b",
      "mkopts");
  CHECK(options_of(read) == Texts{"--a", "--b"});
  CHECK(read.dem_options == Texts{"--dem-dists=3312", "--x=1 2"});
  CHECK(read.warnings.empty());
  const OptionsText open = parse_options_text("<dem>\r\n--dem-dists=1\r\n##\r\n</dem>", "my set");
  CHECK(open.warnings == Texts{"In options: my set </dem>\r\nResults will be unpredictable!"});
  CHECK(open.dem_options == Texts{"--dem-dists=1"});
}

TEST_CASE("options that name an input file are told and passed on") {
  for (const std::string input : {"extra.mp", "--input-file=x", "--coast=sea.OSM", "/maps/land.osm.pbf"}) {
    const OptionsText read = parse_options_text("--a " + input + "\r\n--b", "mkopts");
    CHECK(options_of(read) == Texts{"--a", input, "--b"});
    CHECK(read.warnings == Texts{"In options: " + input + "\r\nResults will be unpredictable!"});
  }
}
