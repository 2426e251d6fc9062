#include "styletools/typ_text.hpp"

#include <doctest/doctest.h>

#include "base/files.hpp"
#include "base/text.hpp"
#include "styletools/typ_export.hpp"
#include "styletools/typ_file_bytes.hpp"
#include "styletools/typ_picture.hpp"
#include "styletools/typ_reader.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

TypFile sample() { return read_typ(typ_file_bytes()).value; }

std::string lines_of(RuleKind kind, std::size_t index) {
  return join_texts(definition_lines(kind, sample().of(kind).at(index)), "\n");
}

std::uint32_t pixel(const TypPicture& picture, int column, int row) {
  const auto at = static_cast<std::size_t>(row * picture.width + column) * 4;
  return static_cast<std::uint32_t>(picture.pixels.at(at) << 24 | picture.pixels.at(at + 1) << 16 |
                                    picture.pixels.at(at + 2) << 8 | picture.pixels.at(at + 3));
}

}  // namespace

TEST_CASE("TYP text: every key in its order") {
  CHECK(lines_of(RuleKind::polygons, 1) ==
        "Type=0x50\nString1=0x4,Forest\nString2=0x1,For\xC3\xAAt\nCustomColor=DayAndNight\nDaycustomColor:#"
        "7B3000\n"
        "NightcustomColor:#FF8040\nExtendedLabels=Y\nFontStyle=SmallFont\nXpm=\"0 0 2 0\"\n\"0 c #BFFF80\"\n"
        "\"1 c #204010\"");
  CHECK(lines_of(RuleKind::lines, 0) ==
        "Type=0x01\nString1=0x0,Road\nCustomColor=No\nExtendedLabels=N\nLineWidth=5\nBorderWidth=1\n"
        "UseOrientation=N\nXpm=\"0 0 2 0\"\n\"0 c #1CA9DE\"\n\"1 c #0000A0\"");
  CHECK(lines_of(RuleKind::lines, 1) ==
        "Type=0x14\nString1=0x0,\nCustomColor=No\nExtendedLabels=N\nUseOrientation=Y\nXpm=\"32 3 2 1\"\n"
        "\"0 c #000000\"\n\"1 c #FFFFFF\"\n\"00000000000000000000000000000000\"\n"
        "\"00000011111111000000001111111100\"\n\"00000000000000000000000000000001\"");
  const std::string bitmap = lines_of(RuleKind::polygons, 2);
  CHECK(contains(bitmap, "Type=0x10f04\n"));
  CHECK(contains(bitmap,
                 "Xpm=\"32 32 2 1\"\n\"0 c #AABBCC\"\n\"1 c none\"\n\"00111111111111111111111111111110\"\n"));
  const std::string icon = lines_of(RuleKind::points, 0);
  CHECK(contains(icon, "Type=0x2f0c\n"));
  CHECK(contains(
      icon, "Xpm=\"16 16 3 1\"\n\"0 c #FF0000\"\n\"1 c #0080C0\"\n\"2 c none\"\n\"0122222222222222\"\n"));
}

TEST_CASE("TYP text: the whole file") {
  const std::string text = typ_text(sample());
  CHECK(
      text.starts_with("[_id]\r\nProductCode=7\r\nFID=4660\r\nCodePage=1252\r\n[end]\r\n\r\n[_drawOrder]\r\n"
                       "Type=0x01,1\r\nType=0x10f00,2\r\nType=0x10f04,2\r\nType=0x50,3\r\n[end]\r\n\r\n"
                       "[_polygon]\r\nType=0x01\r\n"));
  TypFile damaged = sample();
  damaged.definitions[2][0].damage = "no pixels";
  damaged.definitions[0][1].labels[0].text = "two\r\nlines";
  damaged.code_page = 0;
  const std::string other = typ_text(damaged);
  CHECK(contains(other, "; [_point] Type=0x2f0c left out: no pixels\r\n"));
  CHECK(contains(other, "String1=0x4,two  lines\r\n"));
  CHECK(contains(other, "CodePage=1252\r\n"));
  CHECK_FALSE(contains(typ_text(sample(), RuleKind::lines), "_polygon"));
}

TEST_CASE("TYP text: images of many colours, with transparency, without a table") {
  TypDefinition point;
  point.type = 1;
  point.day_image = TypImage{2, 1, {{1, 2, 3, 8}, {4, 5, 6, 0}}, {0, 2}, true, true};
  CHECK(contains(join_texts(definition_lines(RuleKind::points, point), "\n"),
                 "Xpm=\"2 1 0 0\"\n\"#01020377#00000000\""));
  point.day_image->true_colour = false;
  CHECK(contains(join_texts(definition_lines(RuleKind::points, point), "\n"),
                 "\"0 c #010203\" alpha=8\n\"1 c #040506\"\n\"2 c none\"\n\"02\""));
  point.day_image->colours.resize(70);
  point.day_image->pixels = {69, 70};
  CHECK(contains(join_texts(definition_lines(RuleKind::points, point), "\n"),
                 "\"17 c #000000\"\n\"18 c none\"\n\"1718\""));
}

TEST_CASE("TYP text leaves in its code page or not at all") {
  CHECK(encode_typ_text("a\r\n\xC3\xAA", 1252).value == "a\r\n\xEA");
  CHECK(encode_typ_text("a\r\n\xD0\x94", 1252).error ==
        "Line 2: \"\xD0\x94\" has no place in code page 1252.");
  CHECK(encode_typ_text("\xD0\x94", 1251).value == "\xC4");
}

TEST_CASE("TYP export: a label that cannot be read costs that label alone") {
  const TempFolder folder;
  TypFile typ = sample();
  typ.definitions[0][1].labels[0].text = "A\xEF\xBF\xBD";
  FakePrompts prompts;
  REQUIRE(export_editor_files(typ, folder / "mine.tvkx", prompts));
  const std::string text = read_whole_file(folder / "mine_polygons.tvkx");
  CHECK(contains(text, "String1=0x4,A?\r\nString2=0x1,For\xEAt\r\n"));
  CHECK(contains(text, "code page\r\n[_polygon]\r\nType=0x50\r\n"));
  REQUIRE(prompts.tells().size() == 1);
  CHECK(prompts.tells().front().starts_with("1 types have labels"));
  typ.code_page = 12345;
  CHECK(contains(typ_text(typ), "CodePage=65001\r\n"));
  CHECK(text_losses(typ).size() == 2);
  CHECK(encode_typ_text(typ_text(typ), text_code_page(typ)).ok());
}

TEST_CASE("TYP export: table and editor files") {
  const std::string csv = typ_csv(sample());
  CHECK(contains(
      csv, "\r\nPolygons,0x50,05000,3,\"0x4:Forest; 0x1:For\xC3\xAAt\",SmallFont,,,,#BFFF80,#204010,,\r\n"));
  CHECK(contains(csv, "\r\nLines,0x01,00100,,0x0:Road,,5,1,N,#1CA9DE #0000A0,#1CA9DE #0000A0,,\r\n"));
  const TempFolder folder;
  const std::string path = folder / "mine.tvkx";
  FakePrompts prompts;
  REQUIRE(export_editor_files(sample(), path, prompts));
  CHECK(contains(read_whole_file(folder / "mine_polygons.tvkx"), "String2=0x1,For\xEAt\r\n"));
  CHECK(contains(read_whole_file(folder / "mine_lines.tvkx"), "[_line]\r\nType=0x01\r\n"));
  CHECK(contains(read_whole_file(folder / "mine_points.tvkx"), "[_point]\r\nType=0x2f0c\r\n"));
  CHECK(prompts.said.empty());
  prompts.answers = {Answer::no};
  CHECK_FALSE(export_editor_files(sample(), path, prompts));
  CHECK(prompts.said.back().text == "Overwrite?");
  CHECK_FALSE(export_editor_files(TypFile{}, path, prompts));
  CHECK(prompts.said.back().text == "No data");
}

TEST_CASE("TYP pictures: fills, borders, patterns and icons by day and night") {
  const TypFile typ = sample();
  const auto& polygons = typ.of(RuleKind::polygons);
  CHECK(pixel(polygon_picture(polygons[1], TypLight::day, 4, 4), 3, 3) == 0xBFFF80FF);
  CHECK(pixel(polygon_picture(polygons[1], TypLight::night, 4, 4), 3, 3) == 0x204010FF);
  const TypPicture pattern = polygon_picture(polygons[2], TypLight::day, 40, 40);
  CHECK(pixel(pattern, 1, 0) == 0xAABBCCFF);
  CHECK(pixel(pattern, 2, 0) == 0);
  CHECK(pixel(pattern, 33, 32) == 0xAABBCCFF);
  const TypPicture line = line_picture(typ.of(RuleKind::lines)[0], TypLight::day, 3, 11);
  CHECK(pixel(line, 0, 1) == 0);
  CHECK(pixel(line, 0, 2) == 0x0000A0FF);
  CHECK(pixel(line, 0, 3) == 0x1CA9DEFF);
  CHECK(pixel(line, 0, 7) == 0x1CA9DEFF);
  CHECK(pixel(line, 0, 8) == 0x0000A0FF);
  const TypPicture icon = drawbmp(RuleKind::points, typ.of(RuleKind::points)[0], TypLight::night, 20, 18);
  CHECK(pixel(icon, 2, 1) == 0xFF0000FF);
  CHECK(pixel(icon, 4, 1) == 0);
  // Smaller than what is drawn: cut, not written beyond.
  CHECK(drawbmp(RuleKind::points, typ.of(RuleKind::points)[0], TypLight::day, 3, 3).pixels.size() == 36);
  CHECK(drawbmp(RuleKind::lines, typ.of(RuleKind::lines)[1], TypLight::day, 3, 1).pixels.size() == 12);
}
