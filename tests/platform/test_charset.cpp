#include <doctest/doctest.h>

#include <optional>
#include <string>

#include "platform/charset.hpp"

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
      {"ASCII", "a~\\b\r\n", 437, "a~\\b\r\n", {}},
      {"u umlaut in 437", "x\u00fcy", 437, "x\x81y", {}},
      {"u umlaut in 850", "\u00fc", 850, "\x81", {}},
      {"u umlaut in 1252", "\u00fc", 1252, "\xFC", {}},
      {"euro in 1252", "\u20ac", 1252, "\x80", {}},
      {"euro in 437", "1 \u20ac", 437, "1 ", 2},
      {"l stroke in 1250", "\u0142", 1250, "\xB3", {}},
      {"l stroke is no l in 1252", "Wa\u0142", 1252, "Wa", 2},
      {"l stroke is no l in 437", "\u0142", 437, "", 0},
      {"offsets count bytes", "\u00fc\u00fc\u0142\u00fc", 1252, "\xFC\xFC", 4},
      {"Cyrillic in 1251", "\u041c\u0438\u0440", 1251, "\xCC\xE8\xF0", {}},
      {"Japanese in 932", "\u65e5\u672c", 932, "\x93\xFA\x96\x7B", {}},
      {"yen sign is no backslash in 932", "\u00a5", 932, "", 0},
      {"curly quotes are not straight ones in 437", "\u201cx", 437, "", 0},
      {"full-width letters are not narrow ones in 1252", "\uff21", 1252, "", 0},
      {"beyond the first plane", "a\U0001F5FA", 1252, "a", 1},
      {"UTF-8 stays", "\u00fc\U0001F5FA", 65001, "\u00fc\U0001F5FA", {}},
      {"broken UTF-8", "ab\xFF", 65001, "ab", 2},
      {"overlong form", "\xC0\xAF", 65001, "", 0},
      {"surrogate", "\xED\xA0\x80", 65001, "", 0},
      {"cut off", "x\xE6\x97", 1252, "x", 1},
      {"above the last character", "\xF4\x90\x80\x80", 65001, "", 0},
      {"unknown code page", "x", 12345, "", 0},
      {"what is set in the system is no code page", "x", 0, "", 0},
      {"no ASCII in EBCDIC", "x", 37, "", 0},
      {"nothing", "", 850, "", {}},
  };
  for (const Case& each : cases) {
    CAPTURE(each.what);
    const Encoded encoded = encode(each.text, each.code_page);
    CHECK(encoded.bytes == each.bytes);
    CHECK(encoded.failed_at == each.failed_at);
    if (!each.failed_at) CHECK(decode(each.bytes, each.code_page) == each.text);
  }
}

TEST_CASE("bytes without a meaning are not decoded") {
  struct Case {
    std::string bytes;
    int code_page;
  };
  const Case cases[] = {{"a\x81", 1252}, {"\x98", 1251}, {"\x93", 932},
                        {"\xFF", 65001}, {"x", 12345},   {"x", -1}};
  for (const Case& each : cases) {
    CAPTURE(each.code_page);
    CHECK_FALSE(decode(each.bytes, each.code_page).has_value());
  }
  CHECK(decode("", 1252) == "");
}

TEST_CASE("long texts are converted whole") {
  std::string text;
  std::string bytes;
  for (int i = 0; i < 20000; ++i) {
    text += "x\u00fc";
    bytes += "x\xFC";
  }
  CHECK((encode(text, 1252).bytes == bytes));
  CHECK((decode(bytes, 1252) == text));
}

TEST_CASE("the system's code pages are real 8-bit ones") {
  for (const int code_page : {oem_code_page(), ansi_code_page()}) {
    CAPTURE(code_page);
    CHECK(code_page != 65001);
    CHECK(decode("Az", code_page) == "Az");
  }
}
