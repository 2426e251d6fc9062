// The unzip window with the real 7-Zip.
#include "ui/tool_desk.hpp"
#include "ui/unzip.hpp"

using namespace ferrowen;
using ferrowen::test::ToolDesk;
using Texts = std::vector<std::string>;

class TestUnzip : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void archives_are_unpacked();
  void without_archives_or_tool_nothing_runs();
};

void TestUnzip::archives_are_unpacked() {
  ToolDesk desk;
  for (const char* name : {"N46E009.hgt", "N47E009.hgt"}) {
    desk.write(name, std::string(test::cell_bytes, name[2]));
    desk.zip("h g/" + std::string(name) + ".zip", name);
  }
  desk.write("h g/N46E009.hgt", "an older one");
  ui::unzip window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  QCOMPARE(ToolDesk::find<QListWidget>(window, "List1")->count(), 2);
  ToolDesk::click(window, "Command1");
  QCOMPARE(desk.prompts.texts(), (Texts{"Successfully zipped:\r\nN46E009.hgt\r\nN47E009.hgt"}));
  QVERIFY(read_whole_file(desk.path("h g/N46E009.hgt")) == std::string(test::cell_bytes, '6'));
  QVERIFY(!file_exists(desk.path("h g/N46E009.hgt.before")));
  QVERIFY(!window.busy());
}

void TestUnzip::without_archives_or_tool_nothing_runs() {
  ToolDesk desk;
  ui::unzip window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  ToolDesk::click(window, "Command1");
  QVERIFY(desk.prompts.has("No files found: " + desk.path("h g")));
  ToolDesk::type(window, "Text2", QStringLiteral("/no/7z"));
  ToolDesk::click(window, "Command1");
  QVERIFY(desk.prompts.has("Cannot locate 7zip"));
  QCOMPARE(desk.workspace.settings.seven_zip, std::string("/no/7z"));
  ToolDesk::type(window, "Text1", QString());
  QTest::keyClick(ToolDesk::find<QLineEdit>(window, "Text1"), Qt::Key_Delete);
  QTest::keyClick(&window, Qt::Key_Escape);
  QVERIFY(!window.isVisible());
}

QTEST_MAIN(TestUnzip)
#include "test_unzip.moc"
