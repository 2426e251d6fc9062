// The option editor, the tag keys and the about box, with real clicks and keys and the installed tools.
#include <QClipboard>
#include <QComboBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include "app/option_sets.hpp"
#include "app/settings_file.hpp"
#include "app/tools.hpp"
#include "app/version.hpp"
#include "base/files.hpp"
#include "support/fake_progress.hpp"
#include "ui/about_box.hpp"
#include "ui/option_editor.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"
#include "ui/tag_keys.hpp"

using namespace ferrowen;
using namespace ferrowen::ui;
using ferrowen::test::FakeProgress;
using ferrowen::test::ScriptedPrompts;
using Texts = std::vector<std::string>;

namespace {

constexpr int patience_milliseconds = 60000;

// An editor that is shown and has asked the tool.
struct Opened {
  explicit Opened(option_editor::Tool tool = option_editor::Tool::mkgmap, const std::string& text = "",
                  const std::string& sets = "") {
    workspace.folder = ProgramFolder(from_qt(home.path()));
    workspace.settings = default_settings(workspace.folder.path());
    find_tools(workspace.settings);
    workspace.settings.options_text = text;
    workspace.settings.splitter_options = text;
    if (!sets.empty() && !safe_write(workspace.path("mkopts"), sets).ok()) qFatal("no option sets");
    open(tool);
  }
  ~Opened() {
    for (const std::string& text : prompts.unexpected)
      qWarning("unexpected question: %s", text.c_str());
    if (!prompts.unexpected.empty()) QTest::qFail("unexpected question", __FILE__, __LINE__);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

  void open(option_editor::Tool tool) {
    editor = std::make_unique<option_editor>(workspace, prompts, progress, tool);
    QSignalSpy asked(editor.get(), &option_editor::catalogue_shown);
    editor->show();
    if (!QTest::qWaitForWindowExposed(editor.get())) qFatal("not shown");
    if (asked.isEmpty() && !asked.wait(patience_milliseconds)) qFatal("the tool was not asked");
  }
  template <typename Control>
  Control* find(const char* name) const {
    auto* found = editor->findChild<Control*>(QLatin1String(name));
    if (found == nullptr) qFatal("no control %s", name);
    return found;
  }
  void click(const char* name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
  [[nodiscard]] QPlainTextEdit* text_control() const { return find<QPlainTextEdit>("option_text"); }
  [[nodiscard]] QString text() const { return text_control()->toPlainText(); }
  void set_text(const char* text) const { text_control()->setPlainText(QString::fromUtf8(text)); }
  void to_line(int line) const {
    QTextCursor cursor(text_control()->document()->findBlockByNumber(line));
    text_control()->setTextCursor(cursor);
    text_control()->setFocus();
  }
  [[nodiscard]] QStringList shown_options() const {
    QStringList names;
    auto* list = find<QTreeWidget>("option_list");
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
      if (!list->topLevelItem(row)->isHidden()) names << list->topLevelItem(row)->text(0);
    }
    return names;
  }
  void type_search(const char* words) const {
    auto* search = find<QLineEdit>("option_search");
    search->clear();
    QTest::keyClicks(search, QLatin1String(words));
  }

  QTemporaryDir home{QDir::tempPath() + QStringLiteral("/option editor-XXXXXX")};
  ScriptedPrompts prompts;
  FakeProgress progress;
  Workspace workspace;
  std::unique_ptr<option_editor> editor;
};

}  // namespace

class TestOptionEditor : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void options_are_found_explained_and_inserted();
  void dem_options_go_into_their_block();
  void lines_are_switched_off_and_on();
  void doubtful_options_are_underlined_and_explained();
  void accepted_options_are_stored();
  void refused_changes_leave_everything();
  void sets_are_saved_recalled_and_deleted();
  void splitter_options_have_sets_of_their_own();
  void without_a_tool_it_edits_text();
  void a_folder_that_cannot_be_written_is_told();
  void tag_keys_are_found_and_opened();
  void about_box_tells_whose_work_it_is();
};

void TestOptionEditor::options_are_found_explained_and_inserted() {
  const Opened opened(option_editor::Tool::mkgmap, "--route\r\n\r\n#--latin1\r\n");
  QVERIFY(opened.shown_options().size() > 100);
  opened.type_search("max-jobs");
  QCOMPARE(opened.shown_options().first(), QStringLiteral("--max-jobs"));
  QVERIFY(opened.find<QTextBrowser>("option_help")->toPlainText().contains(QStringLiteral("threads")) ||
          opened.find<QTextBrowser>("option_help")->toPlainText().contains(QStringLiteral("jobs")));
  opened.to_line(1);
  QTest::keyClick(opened.find<QLineEdit>("option_search"), Qt::Key_Return);
  QCOMPARE(opened.text(), QStringLiteral("--route\n--max-jobs=integer\n#--latin1\n"));
  QVERIFY(opened.text_control()->hasFocus());
  QTest::keyClicks(opened.text_control(), QStringLiteral("2"));
  QCOMPARE(opened.text(), QStringLiteral("--route\n--max-jobs=2\n#--latin1\n"));
  // words of the help find it too, and a double click on an option that is there shows it
  opened.type_search("equivalent 1252");
  auto* list = opened.find<QTreeWidget>("option_list");
  QTreeWidgetItem* latin1 = list->findItems(QStringLiteral("--latin1"), Qt::MatchExactly).value(0);
  QVERIFY(latin1 != nullptr && !latin1->isHidden());
  QCOMPARE(latin1->text(1), QStringLiteral("off, line 3"));
  list->scrollToItem(latin1);
  const QPoint place = list->visualItemRect(latin1).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
  QCOMPARE(opened.text_control()->textCursor().selectedText(), QStringLiteral("--latin1"));
  QCOMPARE(opened.text().count(QStringLiteral("latin1")), 1);
  opened.type_search("no such words at all");
  QVERIFY(opened.shown_options().isEmpty());
  QVERIFY(!opened.find<QPushButton>("option_insert")->isEnabled());
  QCOMPARE(opened.find<QLabel>("option_state")->text().left(5), QStringLiteral("0 of "));
}

void TestOptionEditor::dem_options_go_into_their_block() {
  const Opened opened(option_editor::Tool::mkgmap, "--route\r\n");
  opened.type_search("dem-interpolation");
  opened.click("option_insert");
  QCOMPARE(opened.text(),
           QStringLiteral("--route\n<dem>\n--dem-interpolation=auto|bicubic|bilinear\n</dem>\n"));
  QCOMPARE(opened.text_control()->textCursor().selectedText(), QStringLiteral("auto|bicubic|bilinear"));
  opened.click("option_dem");
  opened.to_line(0);
  opened.type_search("dem-poly");
  opened.click("option_insert");
  QVERIFY(opened.text().startsWith(QStringLiteral("--route\n--dem-poly=filename\n<dem>")));
}

void TestOptionEditor::lines_are_switched_off_and_on() {
  const Opened opened(option_editor::Tool::mkgmap, "--route\r\n--latin1\r\n");
  opened.to_line(1);
  QTest::keyClick(opened.text_control(), Qt::Key_Slash, Qt::ControlModifier);
  QCOMPARE(opened.text(), QStringLiteral("--route\n#--latin1\n"));
  opened.text_control()->selectAll();
  opened.click("option_toggle");
  QCOMPARE(opened.text(), QStringLiteral("#--route\n#--latin1\n"));
  opened.text_control()->selectAll();
  opened.click("option_toggle");
  QCOMPARE(opened.text(), QStringLiteral("--route\n--latin1\n"));
}

void TestOptionEditor::doubtful_options_are_underlined_and_explained() {
  const Opened opened(option_editor::Tool::mkgmap, "--route\r\nü.osm --rout\r\n--route\r\n");
  const QString remarks = opened.find<QLabel>("option_remarks")->text();
  QVERIFY2(remarks.startsWith(QStringLiteral("In options: ü.osm Results will be unpredictable!")),
           qPrintable(remarks));
  opened.to_line(1);
  QVERIFY(opened.find<QLabel>("option_remarks")->text().contains(QStringLiteral("Line 2: ü.osm has no")));
  const QTextBlock block = opened.text_control()->document()->findBlockByNumber(1);
  QStringList underlined;
  for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
    if (range.format.underlineStyle() == QTextCharFormat::WaveUnderline)
      underlined << block.text().mid(range.start, range.length);
  }
  QCOMPARE(underlined.join(QString()), QStringLiteral("ü.osm--rout"));
  opened.to_line(0);
  QTest::keyClick(opened.text_control(), Qt::Key_F8);
  QTest::keyClick(opened.text_control(), Qt::Key_F8);
  QCOMPARE(opened.text_control()->textCursor().selectedText(), QStringLiteral("--rout"));
  opened.set_text("--route");
  QCOMPARE(opened.find<QLabel>("option_remarks")->text(), QStringLiteral("Nothing to remark."));
  QVERIFY(!opened.find<QPushButton>("option_next")->isEnabled());
}

void TestOptionEditor::accepted_options_are_stored() {
  Opened opened(option_editor::Tool::mkgmap, "--route\r\n");
  opened.set_text("--latin1\n# ü\n");
  opened.click("option_ok");
  QCOMPARE(opened.editor->result(), static_cast<int>(QDialog::Accepted));
  QCOMPARE(opened.workspace.settings.options_text, std::string("--latin1\r\n# ü\r\n"));
  QCOMPARE(read_whole_file(opened.workspace.path("mkopts")), std::string("--latin1\r\n# ü\r\n"));
  QVERIFY(opened.prompts.said.empty());
  loaddata(opened.workspace, opened.prompts);
  QCOMPARE(opened.workspace.settings.options_text, std::string("--latin1\r\n# ü\r\n"));
}

void TestOptionEditor::refused_changes_leave_everything() {
  Opened opened(option_editor::Tool::mkgmap, "--route\r\n");
  opened.click("option_clear");
  QCOMPARE(opened.prompts.unexpected, Texts{"This will clear your options. Continue?"});
  opened.prompts.unexpected.clear();
  QCOMPARE(opened.text(), QStringLiteral("--route\n"));
  opened.prompts.answers = {Answer::yes, Answer::cancel, Answer::no};
  opened.click("option_clear");
  QVERIFY(opened.text().isEmpty());
  opened.click("option_cancel");
  QVERIFY(opened.editor->isVisible());
  opened.click("option_cancel");
  QVERIFY(!opened.editor->isVisible());
  QCOMPARE(opened.prompts.said.back().text, std::string("Changes have not been saved. Apply changes?"));
  QCOMPARE(opened.workspace.settings.options_text, std::string("--route\r\n"));
  QVERIFY(!file_exists(opened.workspace.path("mkopts")));
  QVERIFY(!file_exists(opened.workspace.path("ferrow6.dat")));
  // asked again, Yes stores
  opened.open(option_editor::Tool::mkgmap);
  opened.set_text("--index");
  opened.prompts.answers = {Answer::yes};
  QTest::keyClick(opened.text_control(), Qt::Key_Escape);
  QCOMPARE(opened.workspace.settings.options_text, std::string("--index"));
}

void TestOptionEditor::sets_are_saved_recalled_and_deleted() {
  Opened opened(option_editor::Tool::mkgmap, "--route\r\n", "--route\r\n##\r\n[Hiking]\r\n--latin1\r\n");
  auto* sets = opened.find<QComboBox>("option_sets");
  QCOMPARE(sets->count(), 2);
  QCOMPARE(sets->currentIndex(), 0);
  // the next set with the keyboard: nothing is lost, nothing is asked
  QTest::keyClick(sets, Qt::Key_Down);
  QCOMPARE(opened.text(), QStringLiteral("--latin1\n"));
  QVERIFY(opened.prompts.said.empty());
  // changed and not saved: asked before it is lost
  opened.set_text("--index");
  opened.prompts.answers = {Answer::no, Answer::yes};
  QTest::keyClick(sets, Qt::Key_Up);
  QCOMPARE(sets->currentText(), QStringLiteral("Hiking"));
  QCOMPARE(opened.text(), QStringLiteral("--index"));
  opened.click("option_set_load");
  QCOMPARE(opened.prompts.texts(), (Texts{"Continue without saving?", "Continue without saving?"}));
  QCOMPARE(opened.text(), QStringLiteral("--latin1\n"));
  // Save and Save as
  opened.prompts.forget();
  opened.set_text("--index");
  opened.click("option_set_save");
  opened.click("option_set_save_as");
  auto* name = opened.find<QLineEdit>("option_set_name");
  name->clear();
  QTest::keyClicks(name, QStringLiteral("Winter [1]"));
  opened.click("option_set_keep");
  QCOMPARE(opened.prompts.texts(), (Texts{"Options saved.", "Error: [ or ] missing. Winter [1]"}));
  name->clear();
  QTest::keyClicks(name, QStringLiteral("Winter"));
  QTest::keyClick(name, Qt::Key_Return);
  QVERIFY(opened.editor->isVisible() && !name->isVisible());
  QCOMPARE(sets->currentText(), QStringLiteral("Winter"));
  QCOMPARE(read_whole_file(opened.workspace.path("mkopts")),
           std::string("--route\r\n##\r\n[Hiking]\r\n--index\r\n[Winter]\r\n--index\r\n"));
  QCOMPARE(opened.workspace.settings.options_text, std::string("--route\r\n"));
  // OK uses the set from now on; then it is deleted
  opened.click("option_ok");
  QCOMPARE(opened.workspace.settings.option_set, std::string("Winter"));
  opened.open(option_editor::Tool::mkgmap);
  QCOMPARE(opened.find<QComboBox>("option_sets")->currentText(), QStringLiteral("Winter"));
  opened.prompts.answers = {Answer::yes};
  opened.click("option_set_delete");
  QCOMPARE(opened.prompts.said.back().text, std::string("Remove [Winter]?"));
  QCOMPARE(opened.find<QComboBox>("option_sets")->count(), 2);
  QCOMPARE(opened.text(), QStringLiteral("--index"));
  opened.click("option_cancel");
  QCOMPARE(opened.workspace.settings.option_set, std::string());
}

void TestOptionEditor::splitter_options_have_sets_of_their_own() {
  Opened opened(option_editor::Tool::splitter, "--output=o5m\r\n");
  QVERIFY(opened.shown_options().contains(QStringLiteral("--keep-complete")));
  QVERIFY(!opened.find<QCheckBox>("option_dem")->isVisible());
  opened.set_text("--output=pbf\n--route");
  QVERIFY(opened.find<QLabel>("option_remarks")->text().contains(QStringLiteral("--route is not an option")));
  opened.click("option_ok");
  QCOMPARE(opened.workspace.settings.splitter_options, std::string("--output=pbf\r\n--route"));
  QCOMPARE(opened.workspace.settings.options_text, std::string("--output=o5m\r\n"));
  QCOMPARE(read_whole_file(opened.workspace.path("splopts")), std::string("--output=pbf\r\n--route\r\n"));
}

void TestOptionEditor::without_a_tool_it_edits_text() {
  Opened opened;
  opened.workspace.settings.mkgmap_jar.clear();
  opened.open(option_editor::Tool::mkgmap);
  const QString state = opened.find<QLabel>("option_state")->text();
  QVERIFY2(state.endsWith(QStringLiteral("Please locate mkgmap.jar in Settings")), qPrintable(state));
  QVERIFY(opened.shown_options().isEmpty());
  QTest::keyClicks(opened.text_control(), QStringLiteral("--rout"));
  QCOMPARE(opened.find<QLabel>("option_remarks")->text(), QStringLiteral("Nothing to remark."));
  QTest::keyClick(opened.text_control(), Qt::Key_Return, Qt::ControlModifier);
  QCOMPARE(opened.workspace.settings.options_text, std::string("--rout"));
}

void TestOptionEditor::a_folder_that_cannot_be_written_is_told() {
  Opened opened;
  // a folder in the place of the file
  QVERIFY(make_folder(opened.workspace.path("mkopts")).ok());
  opened.set_text("--latin1");
  opened.prompts.answers = {Answer::no};
  opened.click("option_ok");
  QVERIFY(opened.editor->isVisible());
  QVERIFY(opened.prompts.said.back().text.ends_with("Continue anyway?"));
  QVERIFY(opened.workspace.settings.options_text.empty());
  opened.prompts.answers = {Answer::yes};
  opened.click("option_ok");
  QVERIFY(!opened.editor->isVisible());
  QCOMPARE(opened.workspace.settings.options_text, std::string("--latin1"));
}

void TestOptionEditor::tag_keys_are_found_and_opened() {
  ScriptedPrompts prompts;
  const InterfaceTexts texts;
  tag_keys window(texts, prompts, nullptr);
  Texts addresses;
  window.open_address = [&](const std::string& address) {
    addresses.push_back(address);
    return addresses.size() == 1 ? "" : "no browser";
  };
  window.show();
  QVERIFY(QTest::qWaitForWindowExposed(&window));
  auto* search = window.findChild<QLineEdit*>(QStringLiteral("tag_search"));
  QTest::keyClicks(search, QStringLiteral("highw"));
  QTest::keyClick(search, Qt::Key_Return);
  QVERIFY(window.isVisible());
  QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("tag_open")), Qt::LeftButton);
  const std::string page = "https://wiki.openstreetmap.org/wiki/Key:highway";
  QCOMPARE(addresses, (Texts{page, page}));
  QCOMPARE(prompts.texts(), Texts{"no browser"});
  QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("tag_copy")), Qt::LeftButton);
  QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("highway"));
  QTest::keyClicks(search, QStringLiteral(" nothing like it"));
  QVERIFY(!window.findChild<QPushButton*>(QStringLiteral("tag_open"))->isEnabled());
}

void TestOptionEditor::about_box_tells_whose_work_it_is() {
  Workspace workspace;
  workspace.folder = ProgramFolder("/home/x/ferrowen <b>");
  workspace.java_version = "openjdk version \"17\" <b>";
  const about_box window(workspace);
  QString text;
  for (const QLabel* label : window.findChildren<QLabel*>())
    text += label->text() + QLatin1Char('\n');
  for (const char* expected : {version_text, "MIT", "OpenStreetMap contributors", "ODbL", "GSHHG", "LGPL",
                               "Qt 6", "openjdk  \"17\" <b>"})
    QVERIFY2(text.contains(QLatin1String(expected)), expected);
  QCOMPARE(window.findChild<QLineEdit*>(QStringLiteral("about_folder"))->text(),
           QStringLiteral("/home/x/ferrowen <b>"));
}

QTEST_MAIN(TestOptionEditor)
#include "test_option_editor.moc"
