// The window kml2mp, by clicks and keys.
#include <QTest>

#include "base/text.hpp"
#include "ui/converter_desk.hpp"
#include "ui/kml2mp.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const char* const places =
    "<kml><Placemark><coordinates>7.1,46.2,0</coordinates></Placemark>"
    "<Placemark><coordinates>7,46 8,47\n9,46.5</coordinates></Placemark>"
    "<Placemark><coordinates>999,1</coordinates></Placemark></kml>";

}  // namespace

class TestKml2mp : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void places_and_paths();
};

void TestKml2mp::places_and_paths() {
  test::ConverterDesk<ui::kml2mp> desk;
  desk.add(desk.write("places.kml", places));
  auto* coordinates = desk.find<QPlainTextEdit>("Text5");
  QCOMPARE(coordinates->toPlainText(), QStringLiteral("7,46 8,47\n9,46.5"));
  QVERIFY(desk.prompts.said.empty());  // a look at a file says nothing
  QSignalSpy shown(desk.window.get(), &ui::ConverterWindow::preview_shown);
  desk.tick("Check2");
  QVERIFY(shown.wait());
  QVERIFY(coordinates->toPlainText().startsWith(QStringLiteral("7.1,46.2,0\n")));
  QTest::keyClicks(desk.find<QLineEdit>("Text4"), QStringLiteral("Mine"));
  desk.type("Text1", "zz");
  desk.press("mp_convert");
  QCOMPARE(desk.summary(), std::string("Lines:0\nPOIs:1\nCoordinates:1"));
  QCOMPARE(desk.prompts.texts().front(), std::string("Invalid Type:zzType must be hexadecimal"));
  QVERIFY(desk.prompts.texts().back().starts_with("There were errors:\r\nplaces.kml: line 2: longitude 999"));
  desk.type("Text1", "1c");
  desk.press("mp_convert");
  const std::string written = read_whole_file(desk.workspace.path("mps/places.mp"));
  QVERIFY(written.ends_with(
      "[POI]\r\nType=0x2f\r\nLabel=Mine\r\nData0=(46.2,7.1)\r\n[END]\r\n"
      "[POLYLINE]\r\nType=0x1c\r\nLabel=Mine\r\nData0=(46,7),(47,8),(46.5,9)\r\n[END]\r\n"));
  // Labels that any map can hold: the options of the build stay as they are.
  desk.press("mp_build");
  QVERIFY(!desk.window->file_to_build().isEmpty());
  QVERIFY(desk.workspace.settings.options_text.empty());
}

QTEST_MAIN(TestKml2mp)
#include "test_kml2mp.moc"
