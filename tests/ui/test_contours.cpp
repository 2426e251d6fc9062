// The window of folders, clipping and DEM options.
#include <QRadioButton>

#include "ui/contours.hpp"
#include "ui/tool_desk.hpp"

using namespace ferrowen;
using ferrowen::test::ToolDesk;

class TestContours : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void folders_are_chosen_and_kept();
};

void TestContours::folders_are_chosen_and_kept() {
  ToolDesk desk;
  desk.write("h g/N46E009.hgt", std::string(test::cell_bytes, '\0'));
  desk.write("h g/N46E010.hgt.zip", "x");
  desk.write("clips/N46E009clp.pbf", "x");
  ui::contours window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  auto* heights = ToolDesk::find<QListWidget>(window, "List1");
  QCOMPARE(heights->count(), 2);
  QCOMPARE(ToolDesk::find<QLabel>(window, "Label3")->text(), QStringLiteral("OSM Files to be created:2"));
  QCOMPARE(ToolDesk::find<QLabel>(window, "Label1")->text(), QStringLiteral("HGT Folder"));
  // An empty folder is answered with a hint, one that is not there with a message.
  if (!make_folder(desk.path("empty")).ok()) qFatal("no folder");
  auto* second = ToolDesk::find<ui::PathEdit>(window, "Text2_2_row");
  desk.prompts.chosen = {desk.path("empty")};
  QTest::mouseClick(second->button(), Qt::LeftButton);
  QCOMPARE(desk.prompts.texts(),
           (std::vector<std::string>{"Select Directory", "The folder must hold .hgt or .hgt.zip files !"}));
  auto* to_create = ToolDesk::find<QLabel>(window, "Label3");
  ToolDesk::find<QRadioButton>(window, "Option1_2")->click();
  QCOMPARE(heights->count(), 0);
  QCOMPARE(to_create->text(), QStringLiteral("OSM Files to be created:0"));
  ToolDesk::find<QRadioButton>(window, "Option1_auto")->click();
  QCOMPARE(heights->count(), 2);
  QCOMPARE(to_create->text(), QStringLiteral("OSM Files to be created:2"));
  QTest::mouseClick(ToolDesk::find<QCheckBox>(window, "Check1"), Qt::LeftButton, Qt::NoModifier,
                    QPoint(8, 8));
  QVERIFY(
      ToolDesk::find<QLabel>(window, "Label1")->text().startsWith(QStringLiteral("Contour Clip Settings")));
  ToolDesk::find<ui::PathEdit>(window, "Clip2_3_row")->set_text(ui::to_qt(desk.path("clips")));
  ToolDesk::find<QRadioButton>(window, "Option2_3")->click();
  QCOMPARE(ToolDesk::find<QListWidget>(window, "List2")->count(), 1);
  auto* options = ToolDesk::find<QPlainTextEdit>(window, "Text3");
  options->setPlainText(QStringLiteral("--dem-dists=1"));
  ToolDesk::click(window, "Command5");
  QCOMPARE(options->toPlainText(), QStringLiteral("--overview-dem-dist=88888\n--dem-dists=3312,6624"));
  std::string opened;
  window.open_address = [&](const std::string& address) {
    opened = address;
    return std::string();
  };
  ToolDesk::click(window, "Label4");
  QVERIFY(opened.starts_with("https://"));
  ToolDesk::click(window, "contours_ok");
  QVERIFY(!window.isVisible());
  const Settings& settings = desk.workspace.settings;
  QVERIFY(settings.hgt_auto_search);
  QCOMPARE(settings.hgt_folders[1], desk.path("empty"));
  QCOMPARE(settings.clip_slot, 2);
  QCOMPARE(settings.clip_folders[2], desk.path("clips"));
  QVERIFY(read_whole_file(desk.path("ferrow6.dat")).find("clips") != std::string::npos);
  // The program's own folder takes a free slot; what stands in the others stays.
  ui::contours again(desk.workspace, desk.prompts);
  ToolDesk::show(again);
  ToolDesk::find<QRadioButton>(again, "Option2_default")->click();
  ToolDesk::click(again, "contours_ok");
  QCOMPARE(settings.clip_slot, 0);
  QCOMPARE(settings.clip_folders[0], desk.workspace.path("files"));
  QCOMPARE(settings.clip_folders[2], desk.path("clips"));
  QVERIFY(desk.prompts.unexpected.empty());
}

QTEST_MAIN(TestContours)
#include "test_contours.moc"
