#include <doctest/doctest.h>

#include "base/text.hpp"
#include "pipeline/tiles/argument_file.hpp"

using namespace ferrowen;

TEST_CASE("argument files are read in every spelling and written in one") {
  struct Case {
    const char *text, *written;
  };
  const Case cases[] = {
      {"#\n# family-id: 980\n\nmapname: 13224385\ndescription: X: y\ninput-file: 13224385.o5m\n\n"
       "mapname: 13224386\n# description: OSM Map\ninput-file: 13224386.o5m\n",
       "#\n# family-id: 980\n\nmapname: 13224385\ndescription: X: y\ninput-file: 13224385.o5m\n\n"
       "mapname: 13224386\n# description: OSM Map\ninput-file: 13224386.o5m\n\n"},
      {"\xEF\xBB\xBFtransparent\n MapName = 1 \ninput-file=C:\\a=b:c.o5m\nrubbish\nfoo: bar\n#mapname: 9\n"
       "mapname:2",
       "transparent\nmapname: 1\n# description:\ninput-file: C:\\a=b:c.o5m\n\n"
       "mapname: 2\n# description:\ninput-file: \n\n"},
      {"", ""},
  };
  for (const Case& one : cases) {
    for (const std::string& text : {std::string(one.text), with_crlf(one.text), with_crlf(one.written)})
      CHECK(argument_file_text(parse_argument_file(text)) == with_crlf(one.written));
  }
}
