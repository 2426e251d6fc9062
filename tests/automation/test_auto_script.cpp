#include "automation/auto_script.hpp"

#include <doctest/doctest.h>

#include "automation/auto_editor.hpp"
#include "base/text.hpp"
#include "support/settings_of.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const AutoFacts all_there = {[](const std::string&) { return true; }, [](const std::string&) { return true; },
                             [](const std::string& style) { return style == "default"; }};

Texts problems_of(std::string_view text) {
  return problem_lines(check_auto_script(parse_auto_script(text), all_there));
}

}  // namespace

TEST_CASE("tags in any case, values as they are, options in their order") {
  const AutoScript script = parse_auto_script(
      "\xEF\xBB\xBF<FERROWEN>\r\n\r\n  <FILE>/Maps/a > b.osm</File>\n<option>--x=1</option>\n<Option> --y "
      "</OPTION>\n"
      "<country></country>\n</Ferrowen>\n<fid>0</fid>\n");
  CHECK(script.problems.empty());
  CHECK(script.value("file") == "/Maps/a > b.osm");
  CHECK(script.value("country") == "");
  CHECK_FALSE(script.value("fid"));  // behind the end
  CHECK(script.values("option") == Texts{"--x=1", "--y"});
}

TEST_CASE("what is wrong in a script is named with its line") {
  const std::vector<std::pair<std::string, Texts>> cases = {
      {"", {"line 1: <ferrowen> is missing: this is no automation script."}},
      {"<file>a</file>\n", {"line 1: The first line must be <ferrowen>, not '<file>a</file>'"}},
      {"<ferrowen>\n<file>a</file>\n", {"line 2: </ferrowen> is missing at the end."}},
      {"<ferrowen>\n<file>a\n</ferrowen>", {"line 2: The tag is never closed: </file> is missing."}},
      {"<ferrowen>\nhello\n<file>a</file>\n</ferrowen>", {"line 2: Neither a tag nor a blank line: 'hello'"}},
      {"<ferrowen>\n<file>a</file>\n<fiel>b</fiel>\n</ferrowen>", {"line 3: Unknown tag: '<fiel>'"}},
      {"<ferrowen>\n<file>a</file>\n<file>b</file>\n</ferrowen>",
       {"line 3: <file> stands in line 2 already."}},
      {"<ferrowen>\n<file></file>\n</ferrowen>", {"line 2: <file>: No input file is named."}},
      {"<ferrowen>\n</ferrowen>", {"line 1: <file> is missing: no input file is named."}},
      {"<ferrowen>\n<file>a</file>\n<mapid>1234567</mapid>\n<maxnodes>many</maxnodes>\n</ferrowen>",
       {"line 3: <mapid>: '1234567' is no map ID: 8 digits are needed.",
        "line 4: <maxnodes>: 'many' is not a number."}},
      {"<ferrowen>\n<file>a</file>\n<mapid>00000000</mapid>\n<fid>65501</fid>\n<style>x</style>\n</ferrowen>",
       {"line 3: <mapid>: '00000000' is no map ID: 8 digits are needed.",
        "line 4: <fid>: '65501' is no family ID: a number from 1 to 65500, or \"auto\".",
        "line 5: <style>: The style 'x' is not there."}},
      {"<ferrowen>\n<file>a</file>\n<basecamp>maybe</basecamp>\n<contours>CLIP</contours>\n</ferrowen>",
       {"line 3: <basecamp>: 'maybe' must be \"yes\" or \"no\"."}},
      {"\xFF\xFE<\0f\0", {"line 1: The script is in UTF-16. Save it as UTF-8."}},
  };
  for (const auto& [text, problems] : cases) {
    const std::string shown = text;
    CAPTURE(shown);
    CHECK(problems_of(text) == problems);
  }
  AutoFacts nothing_there = all_there;
  nothing_there.file_exists = nothing_there.folder_exists = [](const std::string&) { return false; };
  CHECK(check_auto_script(
            parse_auto_script("<ferrowen>\n<file>a</file>\n<typ>Current</typ>\n<hgt>AUTO</hgt>\n</ferrowen>"),
            nothing_there)
            .size() == 1);
}

TEST_CASE("rubbish and endless scripts end with a few lines") {
  std::string rubbish("<ferrowen>\n");
  for (int i = 0; i < 200000; ++i)
    rubbish += static_cast<char>(i * 37 % 256);
  CHECK(problems_of(rubbish).size() <= 21);
  std::string endless("<ferrowen>\n");
  for (int i = 0; i < 400000; ++i)
    endless += "<tag>value of a tag</tag>\n";
  const Texts told = problems_of(endless);
  REQUIRE(told.size() == 21);
  CHECK(told.back() == "... and 1980 more");
}

TEST_CASE("a new script holds the settings, and unknown lines of the template") {
  const Settings settings = test::settings_of(
      "input=/maps/\u00c4.osm; map-name=My Map; register=1; gmapsupp=0; fid=; map-id=13224385; "
      "java-options=-Xmx2000m -ea; max-nodes=1200000; style=default; use-typ=1; dem=1; contours=1; "
      "clip-contours=1; "
      "hgt-auto-search=1; use-options-text=1; image-named-after-map=0; image-name=gmapsupp");
  Settings with_options = settings;
  with_options.options_text = "--route\r\n# --off\r\n\r\n--x=y\r\n##\r\n--never";
  const std::string script = newscrpt(
      "<FERROWEN>\n<!-- mine "
      "-->\n\n<file></file>\n<mapname>old</mapname>\n<gmapsupp_name/>\n<basecamp></basecamp>\n"
      "<memory></memory>\n<maxnodes></maxnodes>\n<gmapsupp></gmapsupp>\n<fid></fid>\n<mapid></mapid>\n<typ></"
      "typ>\n"
      "<dem></dem>\n<contours></contours>\n<hgt></hgt>\n<option></option>\n</FERROWEN>",
      with_options);
  CHECK(script ==
        "<ferrowen>\r\n<!-- mine -->\r\n<file>/maps/\u00c4.osm</file>\r\n<mapname>My Map</mapname>\r\n"
        "<gmapsupp_name/>\r\n<basecamp>yes</basecamp>\r\n<memory>2000</memory>\r\n<maxnodes>1200000</"
        "maxnodes>\r\n"
        "<gmapsupp>no</gmapsupp>\r\n<fid>auto</fid>\r\n<mapid>13224385</mapid>\r\n<typ>current</typ>\r\n"
        "<dem>yes</dem>\r\n<contours>clip</contours>\r\n<hgt>auto</hgt>\r\n<option>--route</option>\r\n"
        "<option>--x=y</option>\r\n</ferrowen>\r\n");
  CHECK(contains(newscrpt("<option></option>", settings), "<option></option>"));
}

TEST_CASE("the heap of Java in its options, in megabytes") {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"-Xmx2g -Xms1g", "2048"},  {"-ea -Xmx1500m", "1500"},
      {"-Xmx1048576K", "1024"},   {"1500", "1500"},
      {"-Xmx2147483648", "2048"}, {"-ea", ""},
      {"-Xmxlots", ""},           {"", ""}};
  for (const auto& one : cases)
    CHECK_MESSAGE(heap_megabytes(one.first) == one.second, one.first);
  CHECK(with_heap("-ea -Xmx2g -Xms1g", "900") == "-Xmx900m -ea -Xms1g");
  CHECK(with_heap("2000", "900") == "-Xmx900m");
}

TEST_CASE("a tag is put on a line of its own") {
  CHECK(insert_tag("", 0, "<fid></fid>").text == "<fid></fid>");
  CHECK(insert_tag("ab", 1, "<x>").text == "a\r\n<x>\r\nb");
  CHECK(insert_tag("a\r\nb", 3, "<x>").text == "a\r\n<x>\r\nb");
  CHECK(insert_tag("a\r\n", 99, "<x>").text == "a\r\n<x>");
  CHECK(insert_tag("a\nb", 1, "<x>").text == "a\r\n<x>\nb");
  CHECK(insert_tag("ab", 1, "<x>").caret == 6);
  CHECK(script_caption("/s/My map.auto", true) == "Auto Script My map.autoX");
}
