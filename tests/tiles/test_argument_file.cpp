#include <doctest/doctest.h>

#include "base/text.hpp"
#include "pipeline/tiles/argument_file.hpp"

using namespace ferrowen;

TEST_CASE("template.args as the splitter writes it") {
  const std::string text =
      "#\n# Please edit it first to add a description of each map.\n# family-id: 980\n\n"
      "mapname: 13224385\ndescription: X: y\ninput-file: 13224385.o5m\n\n"
      "mapname: 13224386\n# description: OSM Map\ninput-file: 13224386.o5m\n";
  for (const std::string& one : {text, with_crlf(text)}) {
    const ArgumentFile file = parse_argument_file(one);
    CHECK(file.head == std::vector<std::string>{"#",
                                                "# Please edit it first to add a description of each map.",
                                                "# family-id: 980", ""});
    REQUIRE(file.blocks.size() == 2);
    CHECK(file.blocks[0].map_name == "13224385");
    CHECK(file.blocks[0].description == "X: y");
    CHECK(file.blocks[0].input_file == "13224385.o5m");
    CHECK(file.blocks[1].description.empty());
    CHECK(file.blocks[1].input_file == "13224386.o5m");
  }
}

TEST_CASE("other spellings, and lines that belong to nothing") {
  const ArgumentFile file = parse_argument_file(
      "\xEF\xBB\xBFtransparent\r\n MapName = 1 \r\ninput-file=C:\\a=b:c.o5m\r\nrubbish\r\nfoo: bar\r\n"
      "#mapname: 9\r\nmapname:2");
  CHECK(file.head == std::vector<std::string>{"transparent"});
  REQUIRE(file.blocks.size() == 2);
  CHECK(file.blocks[0].map_name == "1");
  CHECK(file.blocks[0].input_file == "C:\\a=b:c.o5m");
  CHECK(file.blocks[1].map_name == "2");
  CHECK(parse_argument_file("").blocks.empty());
}

TEST_CASE("text of an argument file") {
  const ArgumentFile file = {{"# head", "no-dem"}, {{"1", "One", "1.o5m"}, {"2", "", "2.o5m"}}};
  CHECK(argument_file_text(file) ==
        "# head\r\nno-dem\r\n"
        "mapname: 1\r\ndescription: One\r\ninput-file: 1.o5m\r\n\r\n"
        "mapname: 2\r\n# description:\r\ninput-file: 2.o5m\r\n\r\n");
  const ArgumentFile again = parse_argument_file(argument_file_text(file));
  CHECK(argument_file_text(again) == argument_file_text(file));
}
