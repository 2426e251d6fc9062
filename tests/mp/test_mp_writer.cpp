#include <doctest/doctest.h>

#include "base/text.hpp"
#include "mp/mp_label.hpp"
#include "mp/mp_types.hpp"
#include "mp/mp_writer.hpp"

namespace ferrowen::test {

namespace {

std::string number(std::size_t i) { return "1." + std::to_string(i); }

// What stands behind the header for a line of so many points.
std::string line_of(std::size_t count, const MpLineStyle& style = {"16", "", false}) {
  std::string text;
  MpWriter writer(
      [&text](std::string_view piece) {
        text += piece;
        return true;
      },
      PaddedValue::longitude);
  writer.begin_line(style);
  for (std::size_t i = 1; i <= count; ++i)
    writer.add_to_line({number(i), "2"});
  CHECK(writer.end_line() == (count >= 2));
  REQUIRE(writer.finish());
  CHECK(writer.counts().lines + writer.counts().polygons == (count >= 2 ? 1 : 0));
  REQUIRE(text.starts_with(mp_header()));
  return text.substr(mp_header().size());
}

std::size_t points_in(std::string_view section) { return split(section, "(").size() - 1; }

}  // namespace

TEST_CASE("the header has 28 lines without blanks in the header's own lines") {
  const std::vector<std::string> lines = split_lines(mp_header());
  REQUIRE(lines.size() == 28);
  CHECK(lines.front() == "[IMG ID]");
  CHECK(lines[1] == "Codepage=1251");
  CHECK(lines[3] == "id=31396604");
  CHECK(lines[20] == "Level5=15");
  CHECK(lines.back() == "[END-IMG ID]");
  CHECK(mp_header().ends_with("Zoom5=5\r\n[END-IMG ID]\r\n"));
}

TEST_CASE("lines are split at a shared point, and never into a piece of that point alone") {
  struct Case {
    std::size_t points;
    std::vector<std::size_t> pieces;
  };
  const std::vector<Case> cases = {{1, {}},
                                   {2, {2}},
                                   {1000, {1000}},
                                   {1001, {1001}},
                                   {1002, {1001, 2}},
                                   {2001, {1001, 1001}},
                                   {2500, {1001, 1001, 500}}};
  for (const Case& one : cases) {
    CAPTURE(one.points);
    std::vector<std::string> sections = split(line_of(one.points), "[POLYLINE]");
    sections.erase(sections.begin());
    REQUIRE(sections.size() == one.pieces.size());
    for (std::size_t i = 0; i < sections.size(); ++i) {
      CHECK(points_in(sections[i]) == one.pieces[i]);
      CHECK(sections[i].starts_with("\r\nType=0x16\r\nData0=("));
      CHECK(sections[i].ends_with(",2)\r\n[END]\r\n"));
      if (i > 0) CHECK(contains(sections[i], "Data0=(" + number(i * 1000 + 1) + ",2),"));
    }
  }
  CHECK(line_of(2, {"13", "Lake", true}) ==
        "[POLYGON]\r\nType=0x13\r\nLabel=Lake\r\nData0=(1.1,2),(1.2,2)\r\n[END]\r\n");
}

TEST_CASE("points: three levels, padding of the second value, the clean-up of \"0 \"") {
  const auto written = [](PaddedValue padded, const Coordinate& point, bool single) {
    std::string text;
    MpWriter writer([&](std::string_view piece) { return text += piece, true; }, padded);
    single ? writer.single_point("2f", "", point) : writer.point_mp("2f06", "Start", point);
    CHECK(writer.finish());
    return text.substr(mp_header().size());
  };
  std::string triple;
  for (const char* level : {"0", "1", "2"})
    triple += std::string("[POI]\r\nType=0x2f06\r\nLabel=Start\r\nData") + level +
              "=(46.2345,12.34560)\r\n[END]\r\n";
  CHECK(written(PaddedValue::longitude, {"46.2345", "12.3456"}, false) == triple);
  CHECK(written(PaddedValue::latitude, {"46.2345", "12.3456"}, true) ==
        "[POI]\r\nType=0x2f\r\nData0=(46.23450,12.3456)\r\n[END]\r\n");
  // Seven digits without a point would become another number.
  CHECK(contains(written(PaddedValue::longitude, {"1", "0000012"}, true), "(1,0000012)"));
  CHECK(contains(written(PaddedValue::longitude, {"10 1.5", "2"}, true), "(11.5,2)"));
}

TEST_CASE("types: valid, shortened, refused by mkgmap") {
  for (const char* good : {"1", "16", "2F", "0016", "10001", " 16 "})
    CHECK_MESSAGE(is_valid_type(good), good);
  for (const char* bad : {"", "0", "000", "zz", "16zz", "-5", "0x16", "1 6", "99999999999999999999"})
    CHECK_MESSAGE(!is_valid_type(bad), bad);
  CHECK(typed_type(" 0x16") == "16");
  CHECK(invalid_type_message("zz") == "Invalid Type:zzType must be hexadecimal");
  CHECK(shortened_type_message("16") == "mkgmap patch:TYPE changed to 16");
  CHECK(line_type("0016").type == "16");
  CHECK(line_type("1601").type == "16");
  CHECK(line_type("1601").was_shortened);
  CHECK(line_type("10001").type == "10001");
  CHECK_FALSE(line_type("0016").was_shortened);
  struct Case {
    MpKind kind;
    std::string taken, refused;  // as mkgmap itself was seen to do
  };
  for (const Case& one :
       {Case{MpKind::line, "16 3f 100 3f00 1001f 20000", "40 ff 101 3f01 4000 10020"},
        Case{MpKind::polygon, "13 7f 4a 7f00 1001f", "80 8000 4001 10020"},
        Case{MpKind::point, "1 2f ff 100 1100 1101 2f1f 11503 8000", "101 f01 1001 2f20 6420 11520 ffff"}}) {
    for (const std::string& type : split(one.taken, " "))
      CHECK_MESSAGE(refused_type_warning(one.kind, type).empty(), type);
    for (const std::string& type : split(one.refused, " "))
      CHECK_MESSAGE(contains(refused_type_warning(one.kind, type), "type " + type + ":"), type);
    for (const NamedType& type : named_types(one.kind))
      CHECK_MESSAGE(refused_type_warning(one.kind, type.type).empty(), type.name);
  }
}

TEST_CASE("labels are one line in code page 1251; what has no place there is named") {
  const EncodedLabel cyrillic = encode_label("\u041c\u043e\u0441\u043a\u0432\u0430");
  CHECK(cyrillic.bytes == "\xCC\xEE\xF1\xEA\xE2\xE0");
  CHECK(cyrillic.unencodable.empty());
  const EncodedLabel german = encode_label("Z\u00fcrich \u00fc\u00f6");
  CHECK(german.bytes == "Z?rich ??");
  CHECK(german.unencodable == "\u00fc\u00f6");
  CHECK(encode_label(" a\r\n[END]\t b ").bytes == "a [END] b");
  CHECK(encode_label("\xCC\xEE").bytes == "\xCC\xEE");
}

}  // namespace ferrowen::test
