// Automation from the window: the editor of scripts, and a script that is opened like a map file.
#include <QMenu>
#include <QTest>
#include <QTimer>

#include "ui/autoscr.hpp"
#include "ui/desk.hpp"

using namespace ferrowen;
using test::Desk;
using ui::from_qt;
using ui::to_qt;

namespace {

template <typename Control>
Control* find(const QWidget& window, const char* name) {
  auto* found = window.findChild<Control*>(QString::fromUtf8(name));
  if (found == nullptr) qFatal("no control %s", name);
  return found;
}

struct ScriptDesk : Desk {
  ScriptDesk() {
    open();
    use_stand_ins();
    write("newscrpt", read_whole_file(std::string(QT_TESTCASE_SOURCEDIR) + "/../../assets/newscrpt"));
    write("commands", read_whole_file(std::string(QT_TESTCASE_SOURCEDIR) + "/../../assets/commands"));
    write("map.osm", "<?xml version='1.0'?>\n<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
    workspace().settings.input = path("map.osm");
    workspace().settings.use_typ = false;
    workspace().settings.style = "default";
    workspace().settings.map_name = "By hand";
    window->show_record();
    prompts.forget();
  }
  std::string script(const std::string& lines) const {
    return write("scripts/one.auto",
                 "<ferrowen>\r\n<file>" + path("map.osm") + "</file>\r\n" + lines + "</ferrowen>\r\n");
  }
};

}  // namespace

class TestAutoscr : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void editor_marks_saves_and_deletes();
  void script_runs_and_leaves_the_window_ready();
  void stopped_and_broken_scripts();
};

void TestAutoscr::editor_marks_saves_and_deletes() {
  ScriptDesk desk;
  ui::autoscr window(desk.workspace(), desk.prompts);
  window.show();
  auto* text = find<QPlainTextEdit>(window, "Text1");
  auto* problems = find<QListWidget>(window, "Text2");
  QCOMPARE(window.windowTitle(), QStringLiteral("Auto Script untitled.auto"));
  QVERIFY(text->toPlainText().contains(QStringLiteral("<mapname>By hand</mapname>")));
  QCOMPARE(problems->item(0)->text(), QStringLiteral("Nothing to remark."));

  // A tag on a line of its own, then a mistake in it.
  QTextCursor cursor = text->textCursor();
  cursor.setPosition(static_cast<int>(text->toPlainText().indexOf(QStringLiteral("</ferrowen>"))));
  text->setTextCursor(cursor);
  auto* tags = find<QListWidget>(window, "List1");
  Q_EMIT tags->itemClicked(tags->findItems(QStringLiteral("<option></option>"), Qt::MatchExactly).front());
  QCOMPARE(text->textCursor().block().text(), QStringLiteral("<option></option>"));
  QCOMPARE(window.windowTitle(), QStringLiteral("Auto Script untitled.autoX"));
  QTest::keyClick(text, Qt::Key_Return);
  QTest::keyClicks(text, QStringLiteral("<bogus>12</bogus>"));
  QTRY_VERIFY(problems->item(0)->text().contains(QStringLiteral("Unknown tag: '<bogus>'")));
  QCOMPARE(static_cast<int>(text->extraSelections().size()), 1);
  text->moveCursor(QTextCursor::Start);
  Q_EMIT problems->itemClicked(problems->item(0));
  QCOMPARE(text->textCursor().block().text(), QStringLiteral("<bogus>12</bogus>"));

  // Saving names the mistakes first; then a name without its ending, and one that is there.
  const auto save = [&] { find<QAction>(window, "script_save")->trigger(); };
  desk.prompts.answers = {Answer::no};
  save();
  QVERIFY(desk.prompts.said.back().text.ends_with("Continue anyway?"));
  text->setPlainText(text->toPlainText().remove(QStringLiteral("<bogus>12</bogus>")));
  desk.prompts.chosen = {desk.path("scripts/mine")};
  save();
  QVERIFY(file_exists(desk.path("scripts/mine.auto")));
  QVERIFY(read_whole_file(desk.path("scripts/mine.auto")).find("</option>\r\n") != std::string::npos);
  QCOMPARE(window.windowTitle(), QStringLiteral("Auto Script mine.auto"));
  QCOMPARE(find<QListWidget>(window, "File1")->count(), 1);
  desk.script("");
  desk.prompts.chosen = {desk.path("scripts/one.auto")};
  desk.prompts.answers = {Answer::no};
  save();
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("File exists:one.auto\r\n\r\nOverwrite?"));

  // Unsaved changes hold the window back.
  QTest::keyClicks(text, QStringLiteral(" "));
  desk.prompts.answers = {Answer::cancel};
  QTest::mouseClick(find<QPushButton>(window, "Command1"), Qt::LeftButton);
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("Save changes?"));
  QVERIFY(window.isVisible());
  desk.prompts.answers = {Answer::no};
  find<QAction>(window, "script_new")->trigger();
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("Save data?"));

  // A new script is not the file that has its name already.
  const std::string untitled = desk.write("scripts/untitled.auto", "<ferrowen>\r\n</ferrowen>\r\n");
  find<QAction>(window, "script_delete")->trigger();
  desk.prompts.chosen = {untitled};
  desk.prompts.answers = {Answer::cancel};
  save();
  QCOMPARE(to_qt(desk.prompts.said.back().text),
           QStringLiteral("File exists:untitled.auto\r\n\r\nOverwrite?"));
  QCOMPARE(read_whole_file(untitled), std::string("<ferrowen>\r\n</ferrowen>\r\n"));

  window.open_script(to_qt(desk.path("scripts/mine.auto")));
  desk.prompts.answers = {Answer::yes};
  find<QAction>(window, "script_delete")->trigger();
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("mine.auto\r\n\r\nDelete? "));
  QVERIFY(!file_exists(desk.path("scripts/mine.auto")));
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestAutoscr::script_runs_and_leaves_the_window_ready() {
  ScriptDesk desk;
  const std::string script =
      desk.script("<mapname>Alps</mapname>\r\n<gmapsupp>yes</gmapsupp>\r\n<fid>auto</fid>\r\n");
  desk.prompts.answers = {Answer::no};
  desk.window->open_input(to_qt(script));
  QCOMPARE(to_qt(desk.prompts.said.back().text), to_qt(script + "\r\n\r\nAuto Create?"));
  QVERIFY(!file_exists(platform::join(build_output_folder(desk.workspace().settings), "13224385.img")));

  desk.prompts.forget();
  desk.prompts.answers = {Answer::yes};
  desk.window->open_input(to_qt(script));
  QVERIFY2(desk.prompts.said.back().text.find("one.auto: done") != std::string::npos,
           desk.prompts.said.back().text.c_str());
  QCOMPARE(static_cast<int>(desk.prompts.said.size()), 2);  // the question and the report alone
  QVERIFY(file_has_content(platform::join(desk.workspace().settings.gmapsupp_folder, "Alps.img")));
  QVERIFY(!desk.window->busy());
  QCOMPARE(desk.control<QLineEdit>("Text12")->text(), QStringLiteral("By hand"));
  QCOMPARE(to_qt(desk.workspace().settings.last_script), to_qt(script));
  QVERIFY(desk.control<QPushButton>("Command_create")->isEnabled());
  QVERIFY(
      desk.control<QPlainTextEdit>("Text10dos")->toPlainText().contains(QStringLiteral("Mkgmap version")));
  // By hand again: the quiet flag is gone.
  desk.prompts.forget();
  desk.tick("Check2", true);
  desk.press("Command_split");
  desk.press("Command_create");
  QVERIFY(desk.prompts.said.back().text.find("Copied as '") != std::string::npos);
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestAutoscr::stopped_and_broken_scripts() {
  ScriptDesk desk;
  desk.prompts.answers = {Answer::yes};
  desk.window->open_input(to_qt(desk.script("<mapid>1</mapid>\r\n")));
  QVERIFY(desk.prompts.said.back().text.find("line 3: <mapid>") != std::string::npos);
  desk.write("stand-in-mode", "hang");
  desk.prompts.answers = {Answer::yes};
  QTimer::singleShot(1500, [&] { desk.press("Command_stop"); });
  desk.window->open_input(to_qt(desk.script("")));
  QVERIFY2(desk.prompts.said.back().text.find("cancelled") != std::string::npos,
           desk.prompts.said.back().text.c_str());
  QVERIFY(!desk.window->busy());
  QVERIFY(!desk.workspace().script_running);
}

QTEST_MAIN(TestAutoscr)
#include "test_autoscr.moc"
