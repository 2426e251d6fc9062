#include "platform/charset.hpp"

#include <doctest/doctest.h>

#include <optional>
#include <string>

using namespace ferrowen::platform;

TEST_CASE("text is encoded exactly or refused at the character that has no place") {
  struct Case {
    const char* what;
    std::string text;
    int code_page;
    std::string bytes;
    std::optional<std::size_t> failed_at;
  };
  const Case cases[] = {
      {"u umlaut in 437", "x\u00fcy~\\\r\n", 437, "x\x81y~\\\r\n", {}},
      {"euro in 1252", "\u20ac", 1252, "\x80", {}},
      {"l stroke in 1250", "\u0142", 1250, "\xB3", {}},
      {"l stroke is no l in 1252", "\u00fc\u00fc\u0142", 1252, "\xFC\xFC", 4},
      {"Japanese in 932", "\u65e5\u672c", 932, "\x93\xFA\x96\x7B", {}},
      {"a last letter that converters hold back", "x\u05ea", 1255, "x\xFA", {}},
      {"yen sign is no backslash in 932", "\u00a5", 932, "", 0},
      {"curly quotes are not straight ones in 437", "\u201cx", 437, "", 0},
      {"beyond the first plane", "a\U0001F5FA", 1252, "a", 1},
      {"UTF-8 stays", "\u00fc\U0001F5FA", 65001, "\u00fc\U0001F5FA", {}},
      {"broken UTF-8", "ab\xFF", 65001, "ab", 2},
      {"cut off", "x\xE6\x97", 1252, "x", 1},
      {"unknown code page", "x", 12345, "", 0},
      {"no ASCII in EBCDIC", "x", 37, "", 0},
  };
  for (const Case& each : cases) {
    CAPTURE(each.what);
    const Encoded encoded = encode(each.text, each.code_page);
    CHECK(encoded.bytes == each.bytes);
    CHECK(encoded.failed_at == each.failed_at);
    if (!each.failed_at) CHECK(decode(each.bytes, each.code_page) == each.text);
  }
}

TEST_CASE("bytes without a meaning are not decoded; the system's code pages are real 8-bit ones") {
  using Bytes = std::pair<const char*, int>;
  for (const auto& [bytes, code_page] : {Bytes{"a\x81", 1252}, {"\x93", 932}, {"\xFF", 65001}, {"x", 12345}})
    CHECK_FALSE(decode(bytes, code_page).has_value());
  for (const int code_page : {oem_code_page(), ansi_code_page()}) {
    CHECK(code_page != 65001);
    CHECK(decode("Az", code_page) == "Az");
  }
}
