// The merge window with the real osmconvert.
#include "ui/merge.hpp"
#include "ui/tool_desk.hpp"

using namespace ferrowen;
using ferrowen::test::ToolDesk;
using Texts = std::vector<std::string>;

class TestMerge : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void files_are_listed_ordered_kept_and_merged();

 private:
  static std::string make_pbf(const ToolDesk& desk, const std::string& name, const std::string& node) {
    const std::string osm = desk.write(
        name + ".osm", "<osm version='0.6'><node id='" + node + "' version='1' lat='46.5' lon='9.5'/></osm>");
    const std::string target = desk.path(name + ".pbf");
    QProcess process;
    process.start(ui::to_qt(desk.workspace.settings.osmconvert), {ui::to_qt(osm), ui::to_qt("-o=" + target)});
    if (!process.waitForFinished() || process.exitCode() != 0) qFatal("no pbf");
    return target;
  }
};

void TestMerge::files_are_listed_ordered_kept_and_merged() {
  ToolDesk desk;
  const std::string one = make_pbf(desk, "one", "1");
  const std::string two = make_pbf(desk, "two", "2");
  const std::string broken = desk.write("broken.pbf", "no pbf");
  ui::merge window(desk.workspace, desk.prompts);
  ToolDesk::show(window);
  auto* files = ToolDesk::find<QListWidget>(window, "List1");
  desk.prompts.chosen = {one};
  ToolDesk::click(window, "Command1");
  ToolDesk::click(window, "Command7");
  QVERIFY(desk.prompts.has("Must contain at least 2 files"));
  desk.prompts.chosen_together = {{two, broken}};
  ToolDesk::click(window, "Command1");
  files->setCurrentRow(2);
  ToolDesk::click(window, "Command3");
  QCOMPARE(files->item(1)->text(), ui::to_qt(broken));
  ToolDesk::click(window, "Command4");
  const std::string list = desk.path("parts.lst");
  desk.prompts.chosen = {list, list};
  ToolDesk::click(window, "Command6");
  QCOMPARE(read_whole_file(list), one + "\r\n" + two + "\r\n" + broken + "\r\n");
  files->selectAll();
  files->setFocus();
  QTest::keyClick(files, Qt::Key_Delete);
  QCOMPARE(files->count(), 0);
  ToolDesk::click(window, "Command5");
  QCOMPARE(files->count(), 3);
  const std::string target = desk.write("all.pbf", "older");
  ToolDesk::find<QLineEdit>(window, "Text1")->setText(ui::to_qt(target));
  desk.prompts.chosen = {target};
  qobject_cast<ui::PathEdit*>(ToolDesk::find<QLineEdit>(window, "Text1")->parentWidget())->browse();
  QVERIFY(desk.prompts.file_questions.back().save);
  QVERIFY(!desk.prompts.file_questions.back().confirms);  // the merge itself asks
  desk.prompts.forget();
  desk.prompts.answers = {Answer::no, Answer::yes};
  ToolDesk::click(window, "Command7");
  QCOMPARE(read_whole_file(target), std::string("older"));
  ToolDesk::click(window, "Command7");
  const std::string question = "Target PBF File exists.\r\n\r\nReplace " + target + "?";
  QCOMPARE(desk.prompts.texts(), (Texts{question, question, broken + " not included", target + " created."}));
  QVERIFY(file_size(target) > 100);
  QVERIFY(!file_exists(desk.path("temp/merge")));
  QVERIFY(desk.prompts.unexpected.empty());
}

QTEST_MAIN(TestMerge)
#include "test_merge.moc"
