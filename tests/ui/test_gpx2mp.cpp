// The window gpx2mp, by clicks and keys: from a track to a file, and from there to the main window.
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>
#include <QTimer>

#include "base/text.hpp"
#include "ui/converter_desk.hpp"
#include "ui/desk.hpp"
#include "ui/gpx2mp.hpp"

using namespace ferrowen;
using ui::from_qt;
using ui::to_qt;
using Texts = std::vector<std::string>;
using Kind = test::ScriptedPrompts::Kind;

namespace {

const char* const track =
    "<gpx><name>\xC3\x9C \xD0\x9C</name><trkseg><trkpt lat='46' lon='7'/><trkpt lat='46.5' lon='8'/>"
    "<trkpt lat='46.2' lon='8.5'/></trkseg></gpx>";

using Window = test::ConverterDesk<ui::gpx2mp>;

}  // namespace

class TestGpx2mp : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void from_a_track_to_a_file();
  void what_cannot_be_converted();
  void a_stop_leaves_nothing();
  void to_the_main_window();
};

void TestGpx2mp::from_a_track_to_a_file() {
  Window desk;
  QVERIFY(!desk.find<QPushButton>("mp_convert")->isEnabled());
  const int empty = desk.drawn_pixels();
  desk.add(desk.write("tour.gpx", track));
  QVERIFY(desk.drawn_pixels() > empty + 100);
  // By name, and by a number of one's own; the point types wait for their switch.
  auto* type = desk.find<QComboBox>("Text1_0");
  QCOMPARE(type->currentText(), QStringLiteral("16  Trail"));
  desk.type("Text1_0", "1601");
  QVERIFY(!desk.find<QComboBox>("Text1_1")->isEnabled());
  desk.tick("Check3");
  auto* half_way = desk.find<QComboBox>("Text1_2");
  half_way->setCurrentIndex(half_way->findText(QStringLiteral("6616  Summit")));
  desk.tick("Check1");
  desk.prompts.answers = {Answer::yes};
  desk.press("mp_convert");
  const std::string written = read_whole_file(desk.workspace.path("mps/tour.mp"));
  QVERIFY(
      contains(written, "[POLYLINE]\r\nType=0x16\r\nLabel=? \xCC\r\nData0=(46,7),(46.5,8),(46.2,8.5)\r\n"));
  QVERIFY(contains(written, "[POI]\r\nType=0x6616\r\nLabel=half way\r\n"));
  QCOMPARE(desk.summary(), std::string("Lines:1\nPOIs:3\nCoordinates:3"));
  QCOMPARE(type->currentText(), QStringLiteral("16  Trail"));
  QCOMPARE(desk.prompts.texts(Kind::ask),
           Texts{"Found label:\r\n\r\n'\xC3\x9C \xD0\x9C'\r\n\r\nUse as label?"});
  QCOMPARE(desk.prompts.texts(Kind::tell)[0], std::string("mkgmap patch:TYPE changed to 16"));
  desk.press("mp_show");
  QCOMPARE(desk.prompts.texts(Kind::show_file), Texts{desk.workspace.path("mps/tour.mp")});
  // Handed over, with the code page that its labels need.
  desk.find<QComboBox>("mp_encoding")->setCurrentIndex(1);
  desk.press("mp_build");
  QVERIFY(!desk.window->isVisible());
  QCOMPARE(from_qt(desk.window->file_to_build()), desk.workspace.path("mps/tour.mp"));
  QCOMPARE(desk.workspace.settings.options_text, std::string("--code-page=1251"));
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestGpx2mp::what_cannot_be_converted() {
  Window desk;
  desk.window->add_files({to_qt(desk.write("notes.txt", track))});
  QCOMPARE(desk.prompts.texts(), Texts{"Not a gpx file."});
  QCOMPARE(desk.find<QListWidget>("mp_files")->count(), 0);
  desk.prompts.chosen_together = {{desk.write("bad.gpx", "<gpx/>"), desk.write("later.gpx", track)}, {}};
  desk.press("mp_add");
  QCOMPARE(desk.find<QListWidget>("mp_files")->count(), 2);
  desk.press("mp_add");  // given up
  QCOMPARE(desk.prompts.file_questions.back().filters.front().pattern, std::string("*.gpx"));
  QCOMPARE(desk.find<QListWidget>("mp_files")->count(), 2);
  desk.press("mp_convert");
  QCOMPARE(desk.prompts.texts(Kind::tell).back(), std::string("Cannot find required data"));
  QCOMPARE(desk.find<QLabel>("mp_status")->text(), QStringLiteral("0 of 2 files written"));
  QVERIFY(!desk.find<QPushButton>("mp_build")->isEnabled());
  QVERIFY(!file_exists(desk.workspace.path("mps/later.mp")));
  desk.find<QListWidget>("mp_files")->item(0)->setSelected(true);
  desk.press("mp_remove");
  desk.press("mp_convert");
  QVERIFY(file_has_content(desk.workspace.path("mps/later.mp")));
}

void TestGpx2mp::a_stop_leaves_nothing() {
  Window desk;
  std::string points;
  for (int i = 0; i < 50000; ++i)
    points += "<trkpt lat=\"46." + std::to_string(i) + "\" lon=\"7\"/>";
  desk.add(desk.write("long.gpx", "<trkseg>" + points));
  // The click comes while the conversion lets events in.
  QTimer::singleShot(0, desk.window.get(), [&] {
    QVERIFY(desk.find<QPushButton>("mp_stop")->isEnabled());
    QVERIFY(!desk.find<QListWidget>("mp_files")->isEnabled());
    desk.press("mp_stop");
  });
  desk.press("mp_convert");
  QCOMPARE(desk.find<QLabel>("mp_status")->text(), QStringLiteral("Stopped; 0 of 1 files written"));
  QVERIFY(list_files(desk.workspace.path("mps"), {""}).empty());
  QVERIFY(desk.prompts.said.empty());
}

void TestGpx2mp::to_the_main_window() {
  test::Desk desk;
  desk.open();
  const std::string file = desk.write("tour.gpx", track);
  QTimer::singleShot(0, desk.window.get(), [&] {
    auto* window = desk.window->findChild<ui::gpx2mp*>();
    QVERIFY(window != nullptr);
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(to_qt(file))});
    // Qt drops where something was dragged to.
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter);
    QDropEvent drop({10, 10}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &drop);
    QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("mp_convert")), Qt::LeftButton);
    QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("mp_build")), Qt::LeftButton);
  });
  desk.trigger("mtools_gpx2mp");
  QCOMPARE(desk.workspace().settings.input, desk.path("mps/tour.mp"));
  QCOMPARE(desk.control<QLabel>("lab1")->text(), QStringLiteral("Does not need splitting"));
  desk.close();
}

QTEST_MAIN(TestGpx2mp)
#include "test_gpx2mp.moc"
