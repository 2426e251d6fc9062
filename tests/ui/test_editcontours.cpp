// The contour window through a whole task: what is missing, downloaded, unzipped, made.
#include <QComboBox>
#include <QTabWidget>
#include <QTimer>

#include "elevation/download_help.hpp"
#include "ui/editcontours.hpp"
#include "ui/tool_desk.hpp"

using namespace ferrowen;
using ferrowen::test::ToolDesk;
using Texts = std::vector<std::string>;

namespace {

// Writes a contour file that holds its own arguments, unless it is the cell that fails or waits.
constexpr const char* stand_in_tool =
    "#!/bin/sh\nfor word; do case $word in --Outfile=*) out=${word#*=};; esac; done\n"
    "if [ -e slow ]; then touch started; sleep 60; fi\nprintf '<osm>%s</osm>\\n' \"$*\" >$out\n";

}  // namespace

class TestEditContours : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void heights_are_downloaded_and_unzipped();
  void contours_are_made();
  void a_run_can_be_stopped();
};

void TestEditContours::heights_are_downloaded_and_unzipped() {
  ToolDesk desk;
  desk.write("h g/N46E009.hgt", std::string(test::cell_bytes, '\0'));
  desk.write("N46E010.hgt", std::string(test::cell_bytes, '\0'));
  desk.zip("M32.zip", "N46E010.hgt");
  ui::editcontours window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  QCOMPARE(ToolDesk::find<QLabel>(window, "Label9")->text(), ui::to_qt("Paste into " + desk.path("h g")));
  QCOMPARE(ToolDesk::find<QLabel>(window, "Label8")->text(),
           QStringLiteral("3 HGT needed: 2 HGT not found: /3"));
  ToolDesk::find<QTabWidget>(window, "editcontours_tabs")->setCurrentIndex(1);
  Texts opened;
  window.open_address = [&](const std::string& address) {
    opened.push_back(address);
    return std::string();
  };
  ToolDesk::find<QComboBox>(window, "Combo1")->setCurrentText(QStringLiteral("Eurasia"));
  ToolDesk::find<QLineEdit>(window, "Text4")->setText(QStringLiteral("https://example.org/SRTM3"));
  ToolDesk::click(window, "Command3");
  QCOMPARE(opened, (Texts{"https://example.org/SRTM3/Eurasia/N46E010.hgt.zip",
                          "https://example.org/SRTM3/Eurasia/N47E009.hgt.zip"}));
  ToolDesk::drop(window, desk.path("M32.zip"));
  QCOMPARE(desk.prompts.texts(), (Texts{"Please unzip zip files\r\n" + desk.path("h g/M32.zip")}));
  desk.prompts.forget();
  ToolDesk::click(window, "Command8");
  QCOMPARE(desk.prompts.texts(), (Texts{"Successfully zipped:\r\nN46E010.hgt"}));
  QCOMPARE(ToolDesk::find<QListWidget>(window, "List5")->count(), 1);
  ToolDesk::click(window, "Command13");
  QVERIFY(desk.prompts.has("HGT files missing (1)\r\nN47E009.hgt"));
  desk.workspace.settings.seven_zip.clear();
  ToolDesk::find<QTabWidget>(window, "editcontours_tabs")->setCurrentIndex(0);
  desk.prompts.forget();
  ToolDesk::click(window, "Command9");
  QVERIFY(desk.prompts.has("Please locate 7z.exe  (Contours,Unzip)"));
  // The download address is kept; an empty one gives the usual one back.
  window.reject();
  QVERIFY(read_whole_file(desk.path("ferrow6.dat")).find("https://example.org/SRTM3") != std::string::npos);
  ui::editcontours again(desk.workspace, desk.prompts);
  auto* address = ToolDesk::find<QLineEdit>(again, "Text4");
  QCOMPARE(address->text(), QStringLiteral("https://example.org/SRTM3"));
  address->clear();
  again.reject();
  QCOMPARE(srtm_base_address(desk.workspace.settings), std::string(usual_srtm_address));
}

void TestEditContours::contours_are_made() {
  ToolDesk desk;
  desk.workspace.settings.contour_tool = desk.write_program("my tool", stand_in_tool);
  for (const char* name : {"h g/N46E009.hgt", "h g/N46E010.hgt"})
    desk.write(name, std::string(test::cell_bytes, '\0'));
  ui::editcontours window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  QCOMPARE(ToolDesk::find<QListWidget>(window, "List2")->count(), 3);
  QCOMPARE(ToolDesk::find<QLineEdit>(window, "Text1")->text(), QStringLiteral("20"));
  for (const char* wrong : {"4", "1001"}) {
    ToolDesk::type(window, "Text1", QLatin1String(wrong));
    ToolDesk::click(window, "Command7");
    QCOMPARE(desk.prompts.texts().back(), std::string("Intervals  5 - 1000"));
  }
  ToolDesk::type(window, "Text1", QStringLiteral("50"));
  ToolDesk::type(window, "Text2", QStringLiteral("0,3"));
  desk.prompts.forget();
  ToolDesk::click(window, "Command7");
  const Texts texts = desk.prompts.texts();
  QCOMPARE(texts.size(), std::size_t{3});
  QCOMPARE(texts[0], std::string("N47E009.hgt\r\nPlease download or unzip:"));
  QVERIFY(texts[1].ends_with("Interval: 50\r\nDouglas-Peucker: 0.3\r\n\r\nTotal files to create:2"));
  QCOMPARE(texts[2], std::string("Can't find HGT files"));
  const std::string made = read_whole_file(desk.path("h g/N46E010.osm"));
  QVERIFY(made.find("--Lat=10 --Lon=46") != std::string::npos);
  QVERIFY(made.find("--DouglasPeucker=0.3 --MinorDistance=50") != std::string::npos);
  QVERIFY(ToolDesk::find<QLabel>(window, "Label5")->text().startsWith(QStringLiteral("Contours: 2/2")));
  QVERIFY(read_whole_file(desk.path("ferrow6.dat")).find("MinorDistance=50") != std::string::npos);
  // Some of the second list are used instead of the first; what is there is not made again without a tick.
  auto* further = ToolDesk::find<QListWidget>(window, "List3");
  QCOMPARE(further->count(), 2);
  further->item(0)->setSelected(true);
  QCOMPARE(ToolDesk::find<QListWidget>(window, "List2")->count(), 1);
  ToolDesk::click(window, "Command7");
  QCOMPARE(desk.prompts.texts().back(),
           desk.path("h g/N46E009.osm") + "\r\nFile(s) exist. Tick 'overwrite' ");
  ToolDesk::find<QCheckBox>(window, "Check1")->click();
  ToolDesk::click(window, "Command7");
  QVERIFY(read_whole_file(desk.path("h g/N46E009.osm")).find("--OutputOverwrite=True") != std::string::npos);
  // What is typed is kept without a run too, as long as it makes sense.
  ToolDesk::type(window, "Text1", QStringLiteral("40"));
  window.reject();
  QVERIFY(desk.workspace.settings.contour_options.find("MinorDistance=40") != std::string::npos);
  QVERIFY(read_whole_file(desk.path("ferrow6.dat")).find("MinorDistance=40") != std::string::npos);
  desk.workspace.settings.hgt_folders[0] = desk.path("gone");
  desk.workspace.settings.hgt_folder.clear();
  desk.prompts.forget();
  ui::editcontours lost(desk.workspace, desk.prompts);
  ToolDesk::show(lost);
  QTRY_VERIFY(desk.prompts.has("Can't locate HGT folder. Click on a Tile with HGT files"));
  ToolDesk::type(lost, "Text1", QStringLiteral("4"));
  lost.reject();
  QVERIFY(desk.workspace.settings.contour_options.find("MinorDistance=40") != std::string::npos);
}

void TestEditContours::a_run_can_be_stopped() {
  ToolDesk desk;
  desk.workspace.settings.contour_tool = desk.write_program("my tool", stand_in_tool);
  desk.write("h g/N46E009.hgt", std::string(test::cell_bytes, '\0'));
  desk.write("h g/N46E009.osm", "older");
  desk.write("h g/slow", "");
  ui::editcontours window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  ToolDesk::find<QListWidget>(window, "List3")->item(0)->setSelected(true);
  ToolDesk::find<QCheckBox>(window, "Check1")->click();
  desk.prompts.answers = {Answer::yes};
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &window, [&] {
    if (!file_exists(desk.path("h g/started"))) return;
    watch.stop();
    window.reject();
  });
  watch.start(50);
  ToolDesk::click(window, "Command7");
  QVERIFY(desk.prompts.has("A run is under way. End it?"));
  QTRY_VERIFY(!window.isVisible());
  QCOMPARE(read_whole_file(desk.path("h g/N46E009.osm")), std::string("older"));
}

QTEST_MAIN(TestEditContours)
#include "test_editcontours.moc"
