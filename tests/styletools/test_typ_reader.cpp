#include "styletools/typ_reader.hpp"

#include <doctest/doctest.h>

#include <algorithm>

#include "styletools/typ_file_bytes.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

TypFile read(const std::string& bytes) {
  const Result<TypFile> typ = read_typ(bytes);
  REQUIRE_MESSAGE(typ.ok(), typ.error);
  return typ.value;
}

bool finds(const TypFile& typ, std::string_view part) {
  return std::any_of(typ.findings.begin(), typ.findings.end(),
                     [&](const TypFinding& finding) { return finding.text.find(part) != std::string::npos; });
}

// The sample with one definition in the place of its three polygons.
std::string with_definition(std::string_view hex, RuleKind kind, int code_page = 1252) {
  std::string bytes = typ_file_bytes();
  const std::string definition = bytes_of_hex(hex);
  constexpr std::array<std::size_t, 3> starts{0x27, 0x1F, 0x17};
  constexpr std::array<std::size_t, 3> index_lengths{0x4D, 0x43, 0x39};
  for (const std::size_t at : index_lengths)
    set_number(bytes, at, 0, 4);
  const auto place = static_cast<std::size_t>(kind);
  set_number(bytes, starts.at(place), bytes.size(), 4);
  set_number(bytes, starts.at(place) + 4, definition.size(), 4);
  set_number(bytes, index_lengths.at(place), 3, 4);
  set_number(bytes, 0x15, static_cast<std::size_t>(code_page), 2);
  return bytes + definition;
}

TypDefinition definition_of(std::string_view hex, RuleKind kind, int code_page = 1252) {
  const TypFile typ = read(with_definition(hex, kind, code_page));
  REQUIRE(typ.of(kind).size() == 1);
  return typ.of(kind).front();
}

}  // namespace

TEST_CASE("TYP reader: header, types and draw order of a whole file") {
  const TypFile typ = read(typ_file_bytes());
  CHECK(typ.code_page == 1252);
  CHECK(typ.family_id == 4660);
  CHECK(typ.product_code == 7);
  CHECK(typ.findings.empty());
  const auto keys = [&](RuleKind kind) {
    std::string text;
    for (const TypDefinition& one : typ.of(kind))
      text += one.key + ":" + std::to_string(one.draw_order) + " ";
    return text;
  };
  CHECK(keys(RuleKind::polygons) == "00100:1 05000:3 10F04:2 ");
  CHECK(keys(RuleKind::lines) == "00100:0 01400:0 ");
  CHECK(keys(RuleKind::points) == "02F0C:0 ");
  REQUIRE(typ.draw_order.size() == 3);
  CHECK(typ.draw_order[1] == std::vector<TypOrderEntry>{{0x10F, 0}, {0x10F, 4}});
  CHECK(subtypes(typ, RuleKind::points, 0x2F) == std::vector<std::uint8_t>{0x0C});
  CHECK(find_definition(typ, RuleKind::polygons, "00400") == nullptr);
}

TEST_CASE("TYP reader: drawings and labels of a whole file") {
  const TypFile typ = read(typ_file_bytes());
  const TypDefinition& labelled = typ.of(RuleKind::polygons)[1];
  CHECK(labelled.labels == std::vector<TypLabel>{{4, "Forest"}, {1, "For\xC3\xAAt"}});
  CHECK(label_text(labelled) == "Forest");
  CHECK(labelled.colours.day_foreground == TypColour{0xBF, 0xFF, 0x80});
  CHECK(labelled.colours.night_foreground == TypColour{0x20, 0x40, 0x10});
  REQUIRE(labelled.font.has_value());
  CHECK(labelled.font->style == 2);
  CHECK(labelled.font->day == TypColour{0x7B, 0x30, 0x00});
  const TypDefinition& bitmap = typ.of(RuleKind::polygons)[2];
  CHECK(bitmap.scheme == 0xE);
  CHECK(bitmap.rows.size() == 32);
  CHECK(bitmap.rows[0] == 0x80000003);
  CHECK_FALSE(bitmap.colours.day_background.has_value());
  const TypDefinition& line = typ.of(RuleKind::lines)[0];
  CHECK(line.line_width == 5);
  CHECK(line.border_width == 1);
  CHECK_FALSE(line.follows_direction);
  CHECK(line.colours.day_background == TypColour{0, 0, 0xA0});
  CHECK(typ.of(RuleKind::lines)[1].rows == std::vector<std::uint32_t>{0xFFFFFFFF, 0xC03FC03F, 0x7FFFFFFF});
  CHECK(typ.of(RuleKind::lines)[1].follows_direction);
  const TypImage& icon = typ.of(RuleKind::points)[0].day_image.value();
  CHECK(icon.colours == std::vector<TypColour>{{0xFF, 0, 0}, {0, 0x80, 0xC0}});
  CHECK(icon.has_transparent);
  CHECK(std::vector<int>(icon.pixels.begin(), icon.pixels.begin() + 4) == std::vector<int>{0, 1, 2, 2});
  CHECK(icon.pixels[31] == 0);
}

TEST_CASE("TYP reader: line schemes") {
  const TypDefinition night_border = definition_of("0302332211998877CCBBAA0307", RuleKind::lines);
  CHECK_FALSE(night_border.colours.day_background.has_value());
  CHECK(night_border.colours.night_background == TypColour{0xAA, 0xBB, 0xCC});
  CHECK(night_border.border_width == 2);
  const TypDefinition day_border = definition_of("0500332211665544998877 03 07", RuleKind::lines);
  CHECK(day_border.colours.day_background == TypColour{0x44, 0x55, 0x66});
  CHECK_FALSE(day_border.colours.night_background.has_value());
  CHECK(day_border.follows_direction);
  const TypDefinition plain = definition_of("06023322110C", RuleKind::lines);
  CHECK(plain.line_width == 12);
  CHECK_FALSE(plain.border_width.has_value());
  CHECK(definition_of("1702332211665544FFFFFFFF55555555", RuleKind::lines).rows.size() == 2);
}

TEST_CASE("TYP reader: point images") {
  const TypDefinition translucent = definition_of("0103010320332211605645849988770D24", RuleKind::points);
  CHECK(translucent.day_image->colours[1] == TypColour{0x44, 0x55, 0x66, 8});
  CHECK(translucent.day_image->colours[2] == TypColour{0x77, 0x88, 0x99, 13});
  CHECK(translucent.day_image->pixels == std::vector<std::uint16_t>{0, 1, 2});
  const TypDefinition night =
      definition_of("0B050203003322116655449988772401510001100302010401 51 00 10 0C 0B 0A", RuleKind::points);
  CHECK(night.damage == "");
  CHECK(night.day_image->pixels == std::vector<std::uint16_t>{0, 1, 2, 0, 1, 1, 0, 1, 1, 0});
  CHECK(night.night_image->pixels == std::vector<std::uint16_t>{0, 1, 0, 0, 1, 1, 0, 1, 1, 0});
  CHECK_FALSE(night.font->day.has_value());
  CHECK(night.font->night == TypColour{0x0A, 0x0B, 0x0C});
  // The night table alone, for the pixels of the day image.
  const TypDefinition table = definition_of("02 03 01 02 00 332211 665544 06 01 00 0C0B0A", RuleKind::points);
  CHECK(table.day_image->pixels == std::vector<std::uint16_t>{2, 1, 0});
  CHECK(table.night_image->colours == std::vector<TypColour>{{0x0A, 0x0B, 0x0C}});
  CHECK(table.night_image->pixels == std::vector<std::uint16_t>{1, 1, 0});
  // One colour per pixel, the first one stands for transparent.
  const TypDefinition pixels =
      definition_of("01 02 02 00 10 000000 332211 000000 332211 665544", RuleKind::points);
  CHECK(pixels.day_image->true_colour);
  CHECK(pixels.day_image->pixels == std::vector<std::uint16_t>{0, 2, 0, 1});
}

TEST_CASE("TYP reader: labels in every code page") {
  struct Case {
    int code_page;
    const char* hex;  // label block behind the fill
    const char* text;
  };
  const Case cases[] = {
      {1250, "0D00 8A 9E 41 42 00", "ŠžAB"}, {1251, "0900 C4 C0 00", "ДА"},     {1252, "0900 C4 80 00", "Ä€"},
      {1253, "0900 C4 E1 00", "Δα"},         {1254, "0900 D0 FE 00", "Ğş"},     {1255, "0900 E0 FA 00", "את"},
      {1256, "0900 C7 E1 00", "ال"},         {1257, "0900 D0 E0 00", "Šą"},     {1258, "0900 D0 FE 00", "Đ₫"},
      {932, "0D00 93 FA 83 5C 00", "日ソ"},  {65001, "0B00 E6 97 A5 00", "日"}, {0, "0700 C4 00", "Ä"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.code_page);
    const TypFile typ =
        read(with_definition(std::string("16332211") + each.hex, RuleKind::polygons, each.code_page));
    REQUIRE(typ.of(RuleKind::polygons).size() == 1);
    REQUIRE(typ.of(RuleKind::polygons)[0].labels.size() == 1);
    CHECK(typ.of(RuleKind::polygons)[0].labels[0].text == each.text);
    CHECK(typ.findings.empty());
  }
}

TEST_CASE("TYP reader: what cannot be decoded is marked and named") {
  struct Case {
    int code_page;
    const char* hex;
    const char* text;
    const char* finding;
  };
  const Case cases[] = {
      {1252, "1633221109 00 41 81 00", "A\xEF\xBF\xBD", "not in the code page: 81"},
      {65001, "163322110B 00 41 C4 42 00",
       "A\xEF\xBF\xBD"
       "B",
       "not in the code page: C4"},
      {932, "163322110D 00 93 FA 41 FD 00", "日A\xEF\xBF\xBD", "not in the code page: FD"},
      {12345, "163322110B 00 41 C4 42 00",
       "A\xEF\xBF\xBD"
       "B",
       "the code page 12345 is not known"},
      {1252, "1633221107 00 41 42", "AB", "has no end"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.hex);
    const TypFile typ = read(with_definition(each.hex, RuleKind::polygons, each.code_page));
    REQUIRE(typ.of(RuleKind::polygons)[0].labels.size() == 1);
    CHECK(typ.of(RuleKind::polygons)[0].labels[0].text == each.text);
    CHECK(finds(typ, each.finding));
  }
}

TEST_CASE("TYP reader: long label blocks") {
  std::string label(126, 'a');
  std::string hex;
  for (const char character : label)
    hex += f_mat(hexadecimal_text(static_cast<unsigned char>(character)));
  const TypDefinition two_bytes = definition_of("16332211 0202 00" + hex + "00", RuleKind::polygons);
  CHECK(two_bytes.labels == std::vector<TypLabel>{{0, label}});
  CHECK(two_bytes.damage == "");
  CHECK(definition_of("1633221101", RuleKind::polygons).labels.empty());
}

TEST_CASE("TYP reader: damaged definitions keep their type") {
  // A polygon that claims a bitmap and has none, with its label behind the two colours.
  const std::string no_bitmap = with_definition("18 332211 665544 09 04 41 42 00", RuleKind::polygons);
  const TypFile repaired = read(no_bitmap);
  CHECK(label_text(repaired.of(RuleKind::polygons)[0]) == "AB");
  CHECK(repaired.of(RuleKind::polygons)[0].rows.empty());
  CHECK(finds(repaired, "claims a bitmap that is not there"));
  // 255 x 255 pixels and no data.
  const TypFile huge = read(with_definition("01 FF FF 10 00", RuleKind::points));
  CHECK(huge.of(RuleKind::points)[0].key == "02F0C");
  CHECK_FALSE(huge.of(RuleKind::points)[0].day_image.has_value());
  CHECK(finds(huge, "points, type 02F0C: the image goes beyond"));
  CHECK(finds(read(with_definition("01 02 02 01 77 332211 00 00", RuleKind::points)),
              "unknown colour mode 0x77"));
}

TEST_CASE("TYP reader: headers that lie") {
  std::string no_entries = typ_file_bytes();
  no_entries[0x4B] = 0;
  CHECK(read(no_entries).of(RuleKind::polygons).empty());
  CHECK(finds(read(no_entries), "an entry size of 0 holds no entries"));
  std::string outside = typ_file_bytes();
  set_number(outside, 0x47, 0xFFFFFFF0, 4);
  set_number(outside, 0x1F, 0xFFFFFFFF, 4);
  CHECK(finds(read(outside), "the index of the polygons goes beyond the end of the file"));
  CHECK(finds(read(outside), "the index of the lines names a definition beyond the end"));
  CHECK(read(outside).of(RuleKind::points).size() == 1);
  CHECK_FALSE(read_typ("").ok());
  CHECK_FALSE(read_typ(std::string(500, 'x')).ok());
  CHECK_FALSE(read_typ(typ_file_bytes().substr(0, 0x5A)).ok());
}

TEST_CASE("TYP reader: offsets of one, two and three bytes, many levels") {
  std::string bytes = typ_file_bytes();
  const std::string index = bytes_of_hex("2000 0400 2000 040000");
  for (const auto& [entry_size, from, length] : {std::array<std::size_t, 3>{4, 0, 4}, {5, 4, 5}}) {
    std::string changed = bytes + index;
    set_number(changed, 0x47, bytes.size() + from, 4);
    changed[0x4B] = static_cast<char>(entry_size);
    set_number(changed, 0x4D, length, 4);
    REQUIRE(read(changed).of(RuleKind::polygons).size() == 1);
    CHECK(label_text(read(changed).of(RuleKind::polygons)[0]) == "Forest");
  }
  std::string levels = bytes;
  for (char type = 1; type <= 53; ++type)
    levels += std::string(type == 1 ? 0 : 5, '\0') + type + std::string(4, '\0');
  set_number(levels, 0x51, bytes.size(), 4);
  set_number(levels, 0x57, levels.size() - bytes.size(), 4);
  CHECK(read(levels).draw_order.size() == 53);
  CHECK(read(levels).draw_order[52] == std::vector<TypOrderEntry>{{53, 0}});
}

TEST_CASE("TYP reader: a file cut off at any byte is read as far as it goes") {
  const std::string bytes = typ_file_bytes();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const Result<TypFile> typ = read_typ(std::string(bytes.data(), length));
    CHECK(typ.ok() == (length >= 0x5B));
    if (typ.ok()) CHECK_FALSE(typ.value.findings.empty());
  }
}
