// The settings window and the tools page, used with mouse and keys.
#include <QClipboard>
#include <QTemporaryDir>
#include <QtTest>

#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"
#include "ui/settings.hpp"
#include "ui/tools_page.hpp"

using namespace ferrowen;

namespace {

class QuietProgress : public Progress {
 public:
  void fraction(double /*done*/) override {}
  void status(std::string_view /*text*/) override {}
  void elapsed(double /*seconds*/) override {}
  void output(std::string_view /*text*/) override {}
  void command(std::string_view /*text*/) override {}
  void process_events() override { QCoreApplication::processEvents(); }
  bool stop_requested() override { return false; }
};

using Texts = std::vector<std::string>;

}  // namespace

class TestSettingsWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void every_field_has_a_control_on_its_page();
  void accepted_values_are_saved();
  void refused_values_data();
  void refused_values();
  void missing_folder_is_asked_about_until_it_is_there();
  void cancel_changes_nothing();
  void applied_values_survive_cancel();
  void a_failed_save_keeps_the_window_open();
  void chosen_paths_are_looked_at();
  void colour_that_is_none_is_cleared();
  void search_finds_settings_by_keyboard();
  void defaults_of_one_page();
  void letters_are_unique();
  void tools_are_found_and_described();
  void tools_page_says_what_is_missing();

 private:
  ui::settings& open(Page page = Page::map);
  [[nodiscard]] QLineEdit* line(const char* name) const {
    return m_window->findChild<QLineEdit*>(QLatin1String(name));
  }
  void type(const char* name, const QString& text);
  void click(const char* button);
  // Messages and questions since the last call.
  Texts take_texts();
  [[nodiscard]] std::string saved() const { return read_whole_file(m_workspace.path(file_name::settings)); }
  [[nodiscard]] std::string in_home(std::string_view name) const { return m_workspace.path(name); }

  std::unique_ptr<QTemporaryDir> m_folder;
  Workspace m_workspace;
  test::ScriptedPrompts m_prompts;
  QuietProgress m_progress;
  std::unique_ptr<ui::settings> m_window;
};

void TestSettingsWindow::init() {
  m_folder = std::make_unique<QTemporaryDir>();
  m_workspace = Workspace();
  m_workspace.folder = ProgramFolder(ui::from_qt(QDir::toNativeSeparators(m_folder->path())));
  QVERIFY(start_up(m_workspace, m_prompts).ok());
  take_texts();
}

void TestSettingsWindow::cleanup() {
  m_window.reset();
  QCOMPARE(m_prompts.unexpected, Texts{});
}

Texts TestSettingsWindow::take_texts() {
  using Kind = test::ScriptedPrompts::Kind;
  Texts texts;
  for (const auto& one : m_prompts.said)
    if (one.kind == Kind::tell || one.kind == Kind::ask) texts.push_back(one.text);
  m_prompts.forget();
  return texts;
}

ui::settings& TestSettingsWindow::open(Page page) {
  m_window = std::make_unique<ui::settings>(m_workspace, m_prompts, m_progress, page);
  m_window->show();
  if (!QTest::qWaitForWindowActive(m_window.get())) qFatal("the window did not become active");
  return *m_window;
}

void TestSettingsWindow::type(const char* name, const QString& text) {
  QLineEdit* edit = line(name);
  QVERIFY2(edit != nullptr, name);
  edit->setFocus();
  edit->selectAll();
  if (text.isEmpty())
    QTest::keyClick(edit, Qt::Key_Delete);
  else
    QTest::keyClicks(edit, text);
}

void TestSettingsWindow::click(const char* button) {
  auto* found = m_window->findChild<QPushButton*>(QLatin1String(button));
  QVERIFY2(found != nullptr, button);
  QTest::mouseClick(found, Qt::LeftButton);
}

void TestSettingsWindow::every_field_has_a_control_on_its_page() {
  open();
  const auto* pages = m_window->findChild<QStackedWidget*>();
  QCOMPARE(pages->count(), ui::page_count);
  for (const auto* group : m_window->findChildren<QGroupBox*>())
    QVERIFY2(!group->title().contains(QLatin1Char('_')), qPrintable(group->title()));  // a key without a text
  for (const Field& field : settings_fields()) {
    const QString name = field.name == "max-jobs" ? QStringLiteral("maxj") : ui::to_qt(field.name);
    auto* control = m_window->findChild<QWidget*>(name);
    QVERIFY2(control != nullptr, field.name.data());
    QVERIFY2(pages->widget(static_cast<int>(field.page))->isAncestorOf(control), field.name.data());
    QVERIFY2(!control->accessibleName().isEmpty(), field.name.data());
    QVERIFY2(!control->toolTip().isEmpty() || control->parentWidget()->toolTip() != QString(),
             field.name.data());
  }
}

void TestSettingsWindow::accepted_values_are_saved() {
  open(Page::options);
  m_window->findChild<QListWidget*>(QStringLiteral("pages"))->setFocus();
  QTest::keyClick(m_window->focusWidget(), Qt::Key_Down);
  QCOMPARE(m_window->findChild<QStackedWidget*>()->currentIndex(), static_cast<int>(Page::splitter));
  type("max-nodes", QStringLiteral("1200000"));
  auto* priority = m_window->findChild<QComboBox*>(QStringLiteral("thread-priority"));
  QCOMPARE(priority->count(), 7);
  priority->setFocus();
  QTest::keyClick(priority, Qt::Key_End);
  m_window->findChild<QListWidget*>(QStringLiteral("pages"))->setCurrentRow(static_cast<int>(Page::options));
  QTest::keyClick(m_window->findChild<QCheckBox*>(QStringLiteral("transparent")), Qt::Key_Space);
  type("maxj", QStringLiteral("3"));
  m_window->findChild<QPlainTextEdit*>(QStringLiteral("options-text"))
      ->setPlainText(QStringLiteral("--a\n--b=1"));
  QTest::keyClick(line("maxj"), Qt::Key_Return);
  QCOMPARE(m_window->result(), static_cast<int>(QDialog::Accepted));
  QCOMPARE(take_texts(), Texts{});
  m_workspace.settings = Settings();
  loaddata(m_workspace, m_prompts);
  QCOMPARE(m_workspace.settings.max_nodes, std::string("1200000"));
  QCOMPARE(m_workspace.settings.thread_priority, std::string("highest"));
  QCOMPARE(m_workspace.settings.transparent, true);
  QCOMPARE(m_workspace.settings.max_jobs, 3);
  QCOMPARE(m_workspace.settings.options_text, std::string("--a\r\n--b=1"));
}

void TestSettingsWindow::refused_values_data() {
  QTest::addColumn<QString>("control");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("told");
  QTest::newRow("zero jobs") << "maxj"
                             << "0"
                             << "max-jobs must be > 0 ";
  QTest::newRow("jobs in words") << "maxj"
                                 << "all"
                                 << "max-jobs must be > 0 ";
  QTest::newRow("relative output") << "output-folder"
                                   << "maps"
                                   << "output-folder: 'maps' is not an absolute path.";
  QTest::newRow("other java") << "java"
                              << "/opt/javaw"
                              << "You have selected:\r\njavaw";
  QTest::newRow("no number") << "contour-tolerance"
                             << "low"
                             << "contour-tolerance: 'low' is not a number.";
}

void TestSettingsWindow::refused_values() {
  QFETCH(QString, control);
  QFETCH(QString, text);
  QFETCH(QString, told);
  open();
  const QByteArray name = control.toLatin1();
  m_window->findChild<QListWidget*>(QStringLiteral("pages"))
      ->setCurrentRow(
          static_cast<int>(find_field(control == QLatin1String("maxj") ? "max-jobs" : name.data())->page));
  type(name.data(), text);
  m_window->findChild<QListWidget*>(QStringLiteral("pages"))->setCurrentRow(0);
  click("ok");
  QCOMPARE(take_texts(), Texts{ui::from_qt(told)});
  QVERIFY(m_window->isVisible());
  QCOMPARE(m_window->focusWidget()->objectName(), control);
  QCOMPARE(line(name.data())->text(), text);
  QVERIFY(!file_exists(m_workspace.path(file_name::settings)));
}

void TestSettingsWindow::missing_folder_is_asked_about_until_it_is_there() {
  const std::string folder = in_home("later");
  const std::string question =
      folder + " does not exist.\r\n\r\nPlease create this folder \r\n\r\nTry again?";
  open(Page::folders);
  type("archive-folder", ui::to_qt(folder));
  m_prompts.answers = {Answer::yes, Answer::no};
  click("ok");
  QCOMPARE(take_texts(), (Texts{question, question}));
  QVERIFY(m_window->isVisible());
  QCOMPARE(m_window->focusWidget(), line("archive-folder"));
  QCOMPARE(line("archive-folder")->text(), ui::to_qt(folder));
  QVERIFY(make_folder(folder).ok());
  click("ok");
  QCOMPARE(take_texts(), Texts{});
  QCOMPARE(m_workspace.settings.archive_folder, folder);
}

void TestSettingsWindow::cancel_changes_nothing() {
  open();
  type("country", QStringLiteral("Norway"));
  QTest::keyClick(m_window.get(), Qt::Key_Escape);
  QCOMPARE(m_window->result(), static_cast<int>(QDialog::Rejected));
  QVERIFY(m_workspace.settings.country.empty());
  QVERIFY(!file_exists(m_workspace.path(file_name::settings)));
}

void TestSettingsWindow::applied_values_survive_cancel() {
  open();
  type("country", QStringLiteral("Norway"));
  click("apply");
  type("country", QStringLiteral("Sweden"));
  click("cancel");
  // The owner has to show the record again.
  QCOMPARE(m_window->result(), static_cast<int>(QDialog::Accepted));
  QCOMPARE(m_workspace.settings.country, std::string("Norway"));
  QVERIFY(saved().find("Norway") != std::string::npos);
}

void TestSettingsWindow::a_failed_save_keeps_the_window_open() {
  QVERIFY(make_folder(m_workspace.path(file_name::settings)).ok());  // no file can be written there
  open();
  type("country", QStringLiteral("Norway"));
  click("ok");
  const Texts told = take_texts();
  QCOMPARE(told.size(), 1U);
  QVERIFY2(told.front().find("ferrow6.dat") != std::string::npos, told.front().c_str());
  QVERIFY(m_window->isVisible());
  QVERIFY(m_workspace.settings.country.empty());
}

void TestSettingsWindow::chosen_paths_are_looked_at() {
  open(Page::tools);
  const auto browse = [this](const char* name, const std::string& chosen) {
    m_prompts.chosen = {chosen};
    QTest::mouseClick(line(name)->parentWidget()->findChild<QToolButton*>(), Qt::LeftButton);
  };
  const std::string other = in_home("mkgmap-r4905.jar");
  browse("mkgmap", other);
  QCOMPARE(m_prompts.file_questions.back().filters.front().name, std::string("Java Files"));
  QCOMPARE(m_prompts.file_questions.back().filters.front().pattern, std::string("*.jar"));
  QCOMPARE(take_texts(), Texts{"You have selected:\r\nmkgmap-r4905.jar"});
  m_window->findChild<QListWidget*>(QStringLiteral("pages"))->setCurrentRow(static_cast<int>(Page::folders));
  browse("output-folder", in_home("maps"));
  QCOMPARE(m_prompts.said.back().text, std::string("Output Folder"));
  const std::string bare = in_home("bare");
  QVERIFY(make_folder(bare).ok());
  browse("styles-folder", bare);
  QCOMPARE(take_texts(), Texts{bare + " not a styles folder.\r\nDouble Click on styles folder.\r\n"
                                      "Double Click on Styles Folder"});
  QCOMPARE(line("styles-folder")->text(), ui::to_qt(m_workspace.settings.styles_folder));
  click("ok");
  QCOMPARE(take_texts(), Texts{});  // the other name has been told already
  QCOMPARE(m_workspace.settings.mkgmap_jar, other);
}

void TestSettingsWindow::colour_that_is_none_is_cleared() {
  m_workspace.settings.colour = "C9C8C1";
  open(Page::program);
  type("colour", QStringLiteral("zz"));
  QTest::keyClick(line("colour"), Qt::Key_Tab);
  QCOMPARE(line("colour")->text(), QString());
  click("apply");
  QVERIFY(m_workspace.settings.colour.empty());
  type("colour", QStringLiteral("dcfb7d"));
  click("ok");
  QCOMPARE(m_workspace.settings.colour, std::string("dcfb7d"));
}

void TestSettingsWindow::search_finds_settings_by_keyboard() {
  open();
  auto* list = m_window->findChild<QListWidget*>(QStringLiteral("pages"));
  QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(m_window->focusWidget(), QStringLiteral("Clip FOLDER 3"));
  QCOMPARE(list->currentRow(), static_cast<int>(Page::elevation));
  QVERIFY(list->item(static_cast<int>(Page::map))->isHidden());
  QVERIFY(line("clip-folder-3")->isVisible());
  QVERIFY(!line("clip-folder-4")->isVisible());
  QTest::keyClick(m_window->focusWidget(), Qt::Key_Return);
  QCOMPARE(m_window->focusWidget(), line("clip-folder-3"));
  QVERIFY(m_window->isVisible());
  line("search")->setFocus();
  QTest::keyClick(line("search"), Qt::Key_Escape);
  QVERIFY(m_window->isVisible());
  QVERIFY(line("clip-folder-4")->isVisible());
  QVERIFY(!list->item(static_cast<int>(Page::map))->isHidden());
}

void TestSettingsWindow::defaults_of_one_page() {
  m_workspace.settings.max_areas = "77";
  m_workspace.settings.country = "Norway";
  m_workspace.settings.recent_files = "a.pbf";
  open(Page::splitter);
  click("reset_page");
  QCOMPARE(line("max-areas")->text(), QStringLiteral("255"));
  QCOMPARE(line("country")->text(), QStringLiteral("Norway"));
  QCOMPARE(m_workspace.settings.max_areas, std::string("77"));
  m_window->findChild<QListWidget*>(QStringLiteral("pages"))->setCurrentRow(static_cast<int>(Page::program));
  click("reset_page");
  click("ok");
  QCOMPARE(m_workspace.settings.max_areas, std::string("255"));
  QCOMPARE(m_workspace.settings.recent_files, std::string("a.pbf"));
}

// A letter that two controls of a page share would only move the focus between them.
void TestSettingsWindow::letters_are_unique() {
  open();
  const auto letters = [](QWidget* part) {
    QString found;
    for (const QAbstractButton* button : part->findChildren<QAbstractButton*>())
      found += QKeySequence::mnemonic(button->text()).toString().right(1);
    for (const QLabel* label : part->findChildren<QLabel*>())
      if (label->buddy() != nullptr) found += QKeySequence::mnemonic(label->text()).toString().right(1);
    return found;
  };
  const QString frame = letters(m_window->findChild<QPushButton*>(QStringLiteral("ok"))->parentWidget());
  QVERIFY(frame.size() >= 4);
  for (ui::SettingsPage* page : m_window->findChildren<ui::SettingsPage*>()) {
    QString all = frame + letters(page);
    std::sort(all.begin(), all.end());
    QVERIFY2(std::adjacent_find(all.begin(), all.end()) == all.end(), qPrintable(all));
    QVERIFY(all.size() > frame.size());
  }
}

void TestSettingsWindow::tools_are_found_and_described() {
  m_workspace.settings.java = m_workspace.settings.osmconvert = m_workspace.settings.splitter_jar = {};
  m_workspace.settings.seven_zip = in_home("no-such-7z");
  open(Page::tools);
  click("find_tools");
  const auto state = [this](const char* field) {
    return m_window->findChild<QLabel*>(QStringLiteral("state_") + QLatin1String(field))->text();
  };
  QTRY_COMPARE_WITH_TIMEOUT(state("7z"), QStringLiteral("does not exist"), 20000);
  QCOMPARE(line("7z")->text(), ui::to_qt(in_home("no-such-7z")));  // a set path is never changed
  QVERIFY(m_workspace.settings.osmconvert.empty());                // nothing is accepted yet
  // On a machine with the tools their paths have come, and each says its version.
  const std::string osmconvert = platform::find_program("osmconvert");
  QCOMPARE(line("osmconvert")->text(), ui::to_qt(osmconvert));
  if (!osmconvert.empty())
    QTRY_VERIFY_WITH_TIMEOUT(state("osmconvert").startsWith(QLatin1String("osmconvert ")), 20000);
  QTRY_COMPARE_WITH_TIMEOUT(state("typ-editor"), QStringLiteral("not set"), 20000);
}

void TestSettingsWindow::tools_page_says_what_is_missing() {
  ui::TextBinder binder(m_workspace.texts);
  ui::ToolsPage page(m_workspace, m_prompts, binder);
  page.show();
  m_workspace.settings.mkgmap_jar = in_home("gone/mkgmap.jar");
  m_workspace.settings.splitter_jar = in_home("gone/splitter.jar");
  QVERIFY(!page.look_again(m_progress));
  auto* sample = page.findChild<QPushButton*>(QStringLiteral("open_sample"));
  QVERIFY(!sample->isEnabled());
  auto* card = page.findChild<QWidget*>(QStringLiteral("tool_mkgmap"));
  QCOMPARE(card->findChild<QLabel*>(QStringLiteral("state"))->text(),
           ui::to_qt("not found: " + in_home("gone/mkgmap.jar")));
#ifndef _WIN32
  auto* copy = card->findChildren<QPushButton*>().constFirst();
  QTest::mouseClick(copy, Qt::LeftButton);
  QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("sudo apt install mkgmap"));
  const QString all = page.findChild<QLabel*>(QStringLiteral("install_all"))->text();
  QVERIFY2(all.endsWith(QLatin1String("mkgmap mkgmap-splitter")), qPrintable(all));
#endif
  QSignalSpy asked(&page, &ui::ToolsPage::settings_requested);
  QTest::mouseClick(page.findChild<QPushButton*>(QStringLiteral("open_settings")), Qt::LeftButton);
  QCOMPARE(asked.count(), 1);
  QCOMPARE(take_texts(), Texts{});
}

QTEST_MAIN(TestSettingsWindow)
#include "test_settings_window.moc"
