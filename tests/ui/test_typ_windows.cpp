// createtyp and cmcolor with real clicks and keys.
#include <QClipboard>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>

#include "app/tools.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/fake_progress.hpp"
#include "ui/cmcolor.hpp"
#include "ui/createtyp.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"

using namespace ferrowen;
using namespace ferrowen::ui;
using ferrowen::test::FakeProgress;
using ferrowen::test::ScriptedPrompts;
using Texts = std::vector<std::string>;

namespace {

struct Desk {
  Desk() {
    workspace.folder = ProgramFolder(from_qt(home.path()));
    workspace.settings = default_settings(workspace.folder.path());
    workspace.settings.styles_folder = workspace.path("styles");
    find_tools(workspace.settings);
    write("styles/plain/lines", "highway=motorway [0x02 level 2]\n");
    write("styles/plain/points", "amenity=fuel [0x2f0c level 2]\n");
    write("styles/plain/polygons", "natural=wood [0x50 level 2]\nlanduse=military [0x04 level 2]\n");
    write("styles/roads/lines", "highway=primary [0x03 level 2]\n");
  }
  void write(const std::string& name, const std::string& text) const {
    const std::string path = workspace.path(name);
    if (!make_folder(platform_folder(path)).ok() || !safe_write(path, text).ok()) qFatal("not written");
  }
  static std::string platform_folder(const std::string& path) {
    return path.substr(0, path.find_last_of("/\\"));
  }
  void open() {
    window = std::make_unique<createtyp>(workspace, prompts, progress);
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get())) qFatal("not shown");
  }
  template <typename Control>
  Control* find(const char* name) const {
    auto* found = window->findChild<Control*>(QLatin1String(name));
    if (found == nullptr) qFatal("no control %s", name);
    return found;
  }
  void click(const char* name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
  void choose_style(const char* name) const {
    auto* list = find<QListWidget>("List2");
    list->setCurrentItem(list->findItems(QLatin1String(name), Qt::MatchExactly).value(0));
  }
  [[nodiscard]] QString state() const { return find<QLabel>("typ_state")->text(); }

  QTemporaryDir home;
  Workspace workspace;
  ScriptedPrompts prompts;
  FakeProgress progress;
  std::unique_ptr<createtyp> window;
};

void save_picture(QWidget& window, const char* name) {
  const QString folder = qEnvironmentVariable("FERROWEN_PICTURES");
  if (!folder.isEmpty() && !window.grab().save(folder + QLatin1Char('/') + QLatin1String(name)))
    qFatal("no picture");
}

}  // namespace

class TypWindows : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void a_sheet_is_shown_before_it_is_written();
  void mkgmap_judges_the_text();
  void mistakes_are_told();
  void the_preview_follows_the_style();
  void digits_are_typed();
  void colours_are_picked();
};

void TypWindows::a_sheet_is_shown_before_it_is_written() {
  Desk desk;
  desk.open();
  QCOMPARE(desk.find<QLineEdit>("Text1")->text(), QStringLiteral("12345"));
  desk.choose_style("plain");
  QCOMPARE(desk.find<QListWidget>("File1")->count(), 3);
  auto* list = desk.find<QTreeWidget>("typ_list");
  QCOMPARE(list->topLevelItemCount(), 4);
  QCOMPARE(list->topLevelItem(1)->text(3), QStringLiteral("0x04"));
  QCOMPARE(list->topLevelItem(1)->text(4), QStringLiteral("military (no colour)"));
  QCOMPARE(desk.state(),
           QStringLiteral("2 polygons, 1 lines, 1 points. 1 polygons have no colour: mkgmap refuses "
                          "the text until they have one."));
  // The line by day: its colour in the middle of the picture, its border beside it.
  const QImage line = list->topLevelItem(2)->icon(0).pixmap(72, 32).toImage();
  QCOMPARE(line.pixelColor(36 * line.width() / 72, 16 * line.height() / 32), QColor(0x1C, 0xA9, 0xDE));
  auto* fid = desk.find<QLineEdit>("Text1");
  fid->selectAll();
  QTest::keyClicks(fid, QStringLiteral("4711"));
  save_picture(*desk.window, "createtyp.png");
  desk.click("Command1");
  const std::string path = desk.workspace.path("temp.txt");
  QCOMPARE(desk.prompts.texts(), Texts{"Locate Tyvask in Settings to load file.\r\n\r\n" + path});
  const std::string written = read_whole_file(path);
  QVERIFY(contains(written, "FID=4711\r\n"));
  QCOMPARE(desk.find<QPlainTextEdit>("typ_text")->toPlainText(), shown_text(written));
}

void TypWindows::mkgmap_judges_the_text() {
  Desk desk;
  if (!file_exists(desk.workspace.settings.mkgmap_jar)) QSKIP("mkgmap is not installed");
  desk.open();
  desk.choose_style("plain");
  desk.click("typ_check");
  QVERIFY2(desk.state().contains(QStringLiteral("[_polygon] Type=0x04: No XPM tag")),
           qPrintable(desk.state()));
  QVERIFY(desk.find<QPlainTextEdit>("typ_text")->textCursor().blockNumber() > 0);
  QVERIFY(desk.find<QPlainTextEdit>("typ_text")->isVisible());
  QVERIFY(desk.state().contains(QStringLiteral("1 polygons have no colour")));
  desk.find<QCheckBox>("typ_complete")->click();
  desk.write("typcheck.txt", "mine");
  desk.write("sheet.txt.check", "mine");
  desk.prompts.chosen.emplace_back(desk.workspace.path("sheet"));
  desk.click("typ_save_as");
  QCOMPARE(desk.state(),
           to_qt(desk.workspace.path("sheet.txt")) + QStringLiteral("\nmkgmap accepts this text."));
  QCOMPARE(read_whole_file(desk.workspace.path("sheet.txt.check")), std::string("mine"));
  desk.prompts.forget();
  desk.click("typ_check");
  QCOMPARE(desk.state(), QStringLiteral("mkgmap accepts this text."));
  QCOMPARE(read_whole_file(desk.workspace.path("typcheck.txt")), std::string("mine"));
  QVERIFY(desk.prompts.texts().empty());
}

void TypWindows::mistakes_are_told() {
  Desk desk;
  desk.open();
  desk.find<QListWidget>("List2")->setCurrentRow(-1);
  desk.click("Command1");
  desk.choose_style("roads");
  desk.click("Command1");
  desk.choose_style("plain");
  desk.find<QLineEdit>("Text1")->setText(QStringLiteral("65001"));
  desk.click("Command1");
  QCOMPARE(desk.prompts.texts(),
           (Texts{"No style selected.", "missing points", "missing polygons", "Invalid FID. (1 - 65000)"}));
  QVERIFY(!file_exists(desk.workspace.path("temp.txt")));
}

void TypWindows::the_preview_follows_the_style() {
  Desk desk;
  desk.open();
  desk.choose_style("plain");
  auto* problems = desk.find<QListWidget>("typ_problems");
  auto* list = desk.find<QTreeWidget>("typ_list");
  QVERIFY(!problems->isVisible());
  desk.choose_style("roads");
  QCOMPARE(problems->count(), 2);
  QCOMPARE(problems->item(0)->text(), QStringLiteral("missing points"));
  QVERIFY(problems->isVisible());
  // The file is replaced, as editors do, and then one more comes.
  desk.write("styles/roads/lines", "highway=primary [0x03 level 2]\ninclude 'none';\nhighway=path [0x16]\n");
  QTRY_COMPARE(list->topLevelItemCount(), 2);
  QCOMPARE(problems->item(2)->text(), QStringLiteral("lines:2: The included file 'none' is missing."));
  desk.write("styles/roads/points", "amenity=fuel [0x2f0c level 2]\n");
  QTRY_COMPARE(list->topLevelItemCount(), 3);
  desk.write("styles/roads/lines", "highway=primary [0x03 level 2]\n");
  QTRY_COMPARE(list->topLevelItemCount(), 2);
  // Nothing is read while the family ID is typed.
  std::filesystem::remove_all(desk.workspace.path("styles/roads"));
  desk.find<QLineEdit>("Text1")->setText(QStringLiteral("77"));
  QVERIFY(desk.find<QPlainTextEdit>("typ_text")->toPlainText().contains(QStringLiteral("FID=77")));
  QCOMPARE(list->topLevelItemCount(), 2);
}

void TypWindows::digits_are_typed() {
  const InterfaceTexts texts;
  cmcolor window(texts);
  window.show();
  auto* line = window.findChild<QLineEdit*>(QStringLiteral("Text1"));
  const auto shown = [&] {
    return window.findChild<QLabel*>(QStringLiteral("Labelcol"))->palette().color(QPalette::Window);
  };
  QTest::keyClicks(line, QStringLiteral("g1c x"));
  QCOMPARE(line->text(), QStringLiteral("1C"));
  QTest::keyClicks(line, QStringLiteral("ff0"));
  QCOMPARE(shown(), QColor(0x1C, 0xA9, 0xDE));
  QTest::keyClicks(line, QStringLiteral("07"));
  QCOMPARE(line->text(), QStringLiteral("1CFF00"));
  QCOMPARE(shown(), QColor(0x1C, 0xFF, 0x00));
  QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("colour_copy")), Qt::LeftButton);
  QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("1CFF00"));
}

void TypWindows::colours_are_picked() {
  const InterfaceTexts texts;
  cmcolor window(texts);
  window.show();
  auto* cells = window.findChild<ColourCells*>(QStringLiteral("palette"));
  auto* shade_row = window.findChild<ColourCells*>(QStringLiteral("shades"));
  auto* field = window.findChild<ColourField*>(QStringLiteral("picker"));
  QTest::mouseClick(cells, Qt::LeftButton, {}, cells->cell_rect(19).center());
  QCOMPARE(window.text(), QStringLiteral("FC5830"));
  // The next cell holds the same colour; the arrow keys walk over both.
  QTest::keyClick(cells, Qt::Key_Right);
  QCOMPARE(cells->marked(), std::optional<std::size_t>(20));
  QTest::keyClick(cells, Qt::Key_Right);
  QCOMPARE(window.text(), QStringLiteral("9E9E9E"));
  QCOMPARE(shade_row->marked(), std::optional<std::size_t>(shade_count / 2));
  QTest::mouseClick(shade_row, Qt::LeftButton, {}, shade_row->cell_rect(0).center());
  QVERIFY(hsl_of(*rgb_of_text(from_qt(window.text()))).lightness < 40);
  window.set_text(QStringLiteral("0000FF"));
  save_picture(window, "cmcolor.png");
  QTest::keyClick(field, Qt::Key_Left);
  QCOMPARE(window.text(), QStringLiteral("0015FF"));
  QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(0, field->height() / 2));
  QVERIFY(window.text().startsWith(QStringLiteral("FF")));
}

QTEST_MAIN(TypWindows)
#include "test_typ_windows.moc"
