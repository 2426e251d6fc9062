#include <doctest/doctest.h>

#include <string>
#include <tuple>

#include "base/encoding.hpp"
#include "base/text.hpp"

using namespace ferrowen;

TEST_CASE("each consumer gets its own bytes") {
  CHECK(encode_for(Consumer::shell_script, "Färöer €", "x").value == "Färöer €");
  CHECK(encode_for(Consumer::batch_script, "F\xC3\xA4r", "x").value == "F\x84r");  // 437 and 850 alike
  CHECK(encode_for(Consumer::regedit4, "F\xC3\xA4r", "x").value == "F\xE4r");
}

TEST_CASE("what cannot be written is named with its place") {
  const std::tuple<Consumer, std::string, const char*, const char*> cases[] = {
      {Consumer::ascii, "a\r\nb\r\nü", "'ü'", "line 3"},
      {Consumer::batch_script, "ok\n日本", "'日'", "line 2"},
      {Consumer::regedit4, "\U0001F600", "'\U0001F600'", "line 1"},
      {Consumer::shell_script, std::string("a\0b", 3), "byte 0", "line 1"},
      {Consumer::batch_script, "\xFC", "byte 252", "line 1"},
  };
  for (const auto& [consumer, text, character, line] : cases) {
    const Result<std::string> encoded = encode_for(consumer, text, "C:\\map\\run.bat");
    CAPTURE(encoded.error);
    CHECK(encoded.error.starts_with("C:\\map\\run.bat: "));
    CHECK(contains(encoded.error, std::string("the character ") + character));
    CHECK(contains(encoded.error, line));
    CHECK(encoded.value.empty());
  }
}

TEST_CASE("text of tools is read as UTF-8, else as the ANSI code page") {
  CHECK(decode_tool_text("\xEF\xBB\xBFmapname: 1") == "mapname: 1");
  CHECK(decode_tool_text("T\xF3rshavn") == "T\xC3\xB3rshavn");
}
