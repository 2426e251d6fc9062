#include "pipeline/options_text.hpp"

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "base/text.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

Texts options_of(std::string_view text) {
  return plain_arguments({"", parse_options_text(text, "mkopts").options});
}

const std::string unpredictable = "\r\nResults will be unpredictable!";

}  // namespace

TEST_CASE("options are read line by line, with comments and an end mark") {
  struct Row {
    std::string text;
    Texts options;
  };
  const std::vector<Row> rows = {
      {"", {}},
      {"--route\r\n--latin1\n", {"--route", "--latin1"}},
      {"--route --latin1 --x=1", {"--route", "--latin1", "--x=1"}},
      {"--copyright-message=\"a --b # c\" --x", {"--copyright-message=a --b # c", "--x"}},
      {"#--route\r\n  # --latin1\r\n--x # and why", {"--x"}},
      {"--code=a#b", {"--code=a#b"}},
      {"--route\r\n## the rest is not read\r\n--latin1", {"--route"}},
      {"--route\r\n--latin1 ## not this line either", {"--route"}},
      {"-c more.args\r\nlevels=0:24", {"-c", "more.args", "levels=0:24"}},
      {"--style=\xC3\xBC\xC2\xA0x", {"--style=\xC3\xBC\xC2\xA0x"}},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    CHECK(options_of(row.text) == row.options);
    CHECK(parse_options_text(row.text, "mkopts").warnings.empty());
  }
}

TEST_CASE("the DEM block is taken out") {
  const OptionsText read = parse_options_text(
      "--a\r\n <DEM> \r\n--dem-dists=3312\r\n# no\r\n\r\n--x=1 2\r\n</Dem>\r\n--b", "mkopts");
  CHECK(plain_arguments({"", read.options}) == Texts{"--a", "--b"});
  CHECK(read.dem_options == Texts{"--dem-dists=3312", "--x=1 2"});
  CHECK(read.warnings.empty());

  SUBCASE("a block that is never closed is told") {
    for (const char* text : {"<dem>\r\n--dem-dists=1", "<dem>\r\n--dem-dists=1\r\n##\r\n</dem>"}) {
      const OptionsText open = parse_options_text(text, "my set");
      CHECK(open.warnings == Texts{"In options: my set </dem>" + unpredictable});
      CHECK(open.dem_options == Texts{"--dem-dists=1"});
    }
  }
  SUBCASE("an end without a beginning and a marker in a comment mean nothing") {
    CHECK(options_of("</dem>\r\n--a\r\n#<dem>\r\n--b") == Texts{"--a", "--b"});
  }
}

TEST_CASE("options that name an input file are told and passed on") {
  for (const std::string input :
       {"extra.mp", "--input-file=x", "input-file=x.typ", "--coast=sea.OSM", "a.o5m", "/maps/land.osm.pbf"}) {
    const OptionsText read = parse_options_text("--a " + input + "\r\n--b", "mkopts");
    CAPTURE(input);
    CHECK(plain_arguments({"", read.options}) == Texts{"--a", input, "--b"});
    CHECK(read.warnings == Texts{"In options: " + input + unpredictable});
  }
  for (const char* no_input : {"--precomp-sea=sea.zip", "--mp", "--polygon-file=a.poly", "--name=osm"})
    CHECK(parse_options_text(no_input, "mkopts").warnings.empty());
}

TEST_CASE("an option is found by its whole name") {
  const std::vector<Argument> options =
      parse_options_text("--indexes --precomp-sea=\"a b\" \"--route\"\n#--index", "mkopts").options;
  CHECK(has_option_named(options, "--precomp-sea"));
  CHECK(has_option_named(options, "--route"));
  CHECK_FALSE(has_option_named(options, "--index"));
  CHECK_FALSE(has_option_named(options, "--precomp"));
}
