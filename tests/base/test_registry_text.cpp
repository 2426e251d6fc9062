#include "base/registry_text.hpp"

#include <doctest/doctest.h>

#include "base/registry_tree.hpp"
#include "base/utf16.hpp"

using namespace ferrowen;
using Value = platform::RegistryValue;
using Texts = std::vector<std::string>;
namespace type = platform::registry_type;

namespace {

const std::string header = "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\A]\r\n";

std::vector<Value> values_of(const std::string& lines) {
  const RegistryText text = parse_registry_text(header + lines);
  REQUIRE(text.changes.size() == 1);
  return text.changes.front().values;
}

const auto every_key = [](std::string_view) { return true; };

}  // namespace

TEST_CASE("registry text: every form of a value is read") {
  struct Case {
    std::string line;
    Value value;
  };
  const std::vector<Case> cases = {
      {R"("ID"=hex:e8,03)", {"ID", type::binary, "\xE8\x03"}},
      {R"(@="de\\f \"x\"")", {"", type::text, R"(de\f "x")"}},
      {R"( "a\\b\"c" = "" ; note)", {R"(a\b"c)", type::text, ""}},
      {R"("D"=dword:e8030001)", {"D", type::number, std::string("\x01\x00\x03\xE8", 4)}},
      {"\"X\"=hex(7):41,00,\\\r\n  00,00,\\\r\n  00,00", {"X", type::texts, std::string("A\0\0\0\0\0", 6)}},
      {R"("E"=hex(2):25,00,41,00,00,00)", {"E", type::expanding_text, "%A"}},
      {R"("N"=hex(0):)", {"N", type::none, ""}},
      {R"("B"=hex:0A, b ,c)", {"B", type::binary, "\x0A\x0B\x0C"}},
  };
  for (const Case& one : cases) {
    CAPTURE(one.line);
    CHECK(values_of(one.line + "\n") == std::vector<Value>{one.value});
    // What is written reads back as the same.
    CHECK(values_of(registry_value_line(one.value)) == std::vector<Value>{one.value});
  }
}

TEST_CASE("registry text: a line that cannot be read is named and left out, the rest counts") {
  const RegistryText text = parse_registry_text(
      "REGEDIT4\n[HKLM\\A]\n\"a\"=hex:zz\n\"b\n\"c\"\n\"d\"=hex:100\nx\n\"e\"=\"open\n\"f\"=dword:123456789\n"
      "[NOROOT\\A]\n\"g\"=\"lost\"\n[HKCU\\B\n[-HKCU\\C]\n\"h\"=\"x\"\n[HKEY_USERS\\D]\n\"i\"=-\n@=\"kept\"");
  CHECK(text.problems ==
        Texts{"line 3: the data of this value cannot be read", "line 4: a name without its closing quote",
              "line 5: a name without '='", "line 6: the data of this value cannot be read",
              "line 7: neither a key nor a value", "line 8: the data of this value cannot be read",
              "line 9: the data of this value cannot be read", "line 10: not a key of the registry",
              "line 11: a value outside a key", "line 12: a key without ']'",
              "line 14: a value outside a key"});
  REQUIRE(text.changes.size() == 3);
  CHECK(text.changes[0].key == "HKEY_LOCAL_MACHINE\\A");
  CHECK(text.changes[0].values.empty());
  CHECK((text.changes[1].remove && text.changes[1].key == "HKEY_CURRENT_USER\\C"));
  CHECK(text.changes[2].removed_values == Texts{"i"});
  CHECK(text.changes[2].values == std::vector<Value>{{"", type::text, "kept"}});
  for (const char* no_text : {"", "\n\n", "REGEDIT5\n[HKLM\\A]\n", "[HKLM\\A]\n"})
    CHECK_MESSAGE(parse_registry_text(no_text).changes.empty(), no_text);
}

TEST_CASE("registry text: ANSI for REGEDIT4, UTF-16 where a character has no place there") {
  const std::string start = "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\A]\r\n";
  const std::string plain = encode_registry_text(start + "\"n\"=\"Gr\xC3\xBC\xC3\x9F\"\r\n");
  CHECK(plain == start + "\"n\"=\"Gr\xFC\xDF\"\r\n");
  const std::string wide = encode_registry_text(start + "\"n\"=\"\xC5\x81\xF0\x9F\x97\xBA\"\r\n");
  CHECK(wide.starts_with(std::string("\xFF\xFEW\0i\0n\0", 8)));
  for (const auto& [bytes, text] :
       {std::pair(plain, "Gr\xC3\xBC\xC3\x9F"), {wide, "\xC5\x81\xF0\x9F\x97\xBA"}}) {
    const RegistryText read = parse_registry_file(bytes);
    REQUIRE(read.changes.size() == 1);
    CHECK(read.changes[0].values == std::vector<Value>{{"n", type::text, text}});
  }
  // Halves of a pair, an odd byte and a byte without meaning harm nothing else.
  CHECK(utf8_of_utf16(std::string("\x00\xD8"
                                  "A\0\x00\xDC"
                                  "B",
                                  7)) ==
        "\xEF\xBF\xBD"
        "A\xEF\xBF\xBD\xEF\xBF\xBD");
  CHECK(parse_registry_file(start + "\"n\"=\"\x81\"\r\n").changes[0].values.size() == 1);
}

TEST_CASE("registry text: a file of a Wine prefix") {
  const std::string text =
      "WINE REGISTRY Version 2\n;; All keys relative to "
      "REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n\n#arch=win64\n\n"
      "[Software\\\\Garmin\\\\Gr\\xfc\\x00dfe \\[1\\]] 1795284979\n#time=1dd79e468261a42\n@=\"def\"\n"
      "\"D\"=dword:e8030001\n\"ID\"=hex:e8,\\\n  03\n\"LOC\"=\"Z:\\\\tmp\\\\a \\\"b\"\n\"P\"=str(2):\"%x\"\n"
      "\"M\"=str(7):\"A\\0B\\0\\0\"\n\"pair\"=\"\\xd83d\\xddfa\"\n\"broken\"=hex:q\n\n"
      "[Software\\\\Other] 1\n\"x\"=\"y\"\n";
  const WineRegistryText read = parse_wine_registry(
      text, "HKEY_CURRENT_USER", [](std::string_view key) { return key.starts_with("software\\garmin"); });
  CHECK(read.is_64bit);
  CHECK(read.root == "REGISTRY\\User\\S-1-5-21-0-0-0-1000");
  CHECK(read.problems == Texts{"line 16: the data of this value cannot be read"});
  REQUIRE(read.changes.size() == 1);
  CHECK(read.changes[0].key ==
        "HKEY_CURRENT_USER\\Software\\Garmin\\Gr\xC3\xBC\xC3\x9F"
        "e [1]");
  const std::vector<Value> wanted = {{"", type::text, "def"},
                                     {"D", type::number, std::string("\x01\x00\x03\xE8", 4)},
                                     {"ID", type::binary, "\xE8\x03"},
                                     {"LOC", type::text, "Z:\\tmp\\a \"b"},
                                     {"P", type::expanding_text, "%x"},
                                     {"M", type::texts, std::string("A\0\0\0B\0\0\0\0\0\0\0", 12)},
                                     {"pair", type::text, "\xF0\x9F\x97\xBA"}};
  CHECK(read.changes[0].values.size() == wanted.size());
  for (std::size_t i = 0; i < wanted.size() && i < read.changes[0].values.size(); ++i) {
    CAPTURE(wanted[i].name);
    CHECK(read.changes[0].values[i] == wanted[i]);
  }
  CHECK(parse_wine_registry("something else", "X", every_key).problems.size() == 1);
}

TEST_CASE("registry tree: keys without regard to case, changes in order, and back as a text") {
  RegistryTree tree;
  tree.apply(parse_registry_text(header + "\"V\"=\"1\"\n[HKLM\\A\\Fam b\\1]\n\"x\"=\"y\"\n[HKLM\\A\\Fam]\n"
                                          "[HKLM\\A Z]\n\"keep\"=dword:1\n[HKLM\\a]\n\"v\"=\"2\"\n")
                 .changes);
  CHECK(tree.has("hkey_local_machine\\a\\FAM B"));
  CHECK_FALSE(tree.has("HKEY_LOCAL_MACHINE\\A\\Fa"));
  CHECK(tree.subkeys("HKEY_LOCAL_MACHINE\\A") == Texts{"Fam", "Fam b"});
  CHECK(tree.subkeys("HKEY_LOCAL_MACHINE") == Texts{"A", "A Z"});
  CHECK(tree.values("HKEY_LOCAL_MACHINE\\A").size() == 1);
  CHECK(tree.values("HKEY_LOCAL_MACHINE\\A").front().data == "2");

  RegistryTree again;
  again.apply(parse_registry_file(encode_registry_text(registry_text_of(tree.content()))).changes);
  CHECK(registry_text_of(again.content()) == registry_text_of(tree.content()));

  // A key goes with its subkeys, its neighbours of a similar name stay.
  tree.apply(parse_registry_text("REGEDIT4\n[-HKLM\\A]\n[HKLM\\A Z]\n\"KEEP\"=-\n").changes);
  CHECK_FALSE(tree.has("HKEY_LOCAL_MACHINE\\A"));
  CHECK_FALSE(tree.has("HKEY_LOCAL_MACHINE\\A\\Fam b\\1"));
  CHECK(tree.has("HKEY_LOCAL_MACHINE\\A Z"));
  CHECK(tree.values("HKEY_LOCAL_MACHINE\\A Z").empty());
}
