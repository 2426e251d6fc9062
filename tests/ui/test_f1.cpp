// The main window, by clicks and keys: from a map file to a finished map, the checks on the way, and what is
// remembered.
#include <QDialog>
#include <QGroupBox>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "app/start_up.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "ui/desk.hpp"

using namespace ferrowen;
using test::Desk;
using Kind = test::ScriptedPrompts::Kind;
using ui::from_qt;
using ui::to_qt;

namespace {

const char* const small_map =
    "<?xml version='1.0'?>\n<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n";

// A window whose tools are the stand-ins, with a small map as its input.
struct PreparedDesk : Desk {
  explicit PreparedDesk(const std::string& mode = "") {
    open();
    use_stand_ins(mode);
    write("map.osm", small_map);
    window->open_input(to_qt(path("map.osm")));
    workspace().settings.device_image = true;
    workspace().settings.use_typ = false;
    workspace().settings.fid = "1234";
    window->show_record();
    prompts.forget();
  }
  void split() {
    press("Command_split");
    QCOMPARE(workspace().tiles.size(), std::size_t{3});
  }
};

QString plain(QString text) { return text.remove(QLatin1Char('&')).trimmed(); }

// Captions and tooltips of the whole window and its menus, by where they stand.
QMap<QString, QString> texts_of(const ui::f1& window) {
  QMap<QString, QString> texts;
  const auto add = [&](const QString& kind, const QString& text) {
    if (!text.isEmpty()) texts.insert(kind + QString::number(texts.size()), plain(text));
  };
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) add("button", button->text());
    if (const auto* label = qobject_cast<const QLabel*>(widget)) add("label", label->text());
    if (const auto* box = qobject_cast<const QGroupBox*>(widget)) add("box", box->title());
    if (const auto* menu = qobject_cast<const QMenu*>(widget)) add("menu", menu->title());
    add("tooltip", widget->toolTip());
  }
  for (const QAction* action : window.findChildren<QAction*>())
    if (!action->objectName().isEmpty()) add("entry", action->text());
  return texts;
}

// What the program itself has to say in English, without the names and words that other languages share.
QSet<QString> english_texts() {
  QSet<QString> texts;
  for (const Section section :
       {Section::commands, Section::settings, Section::menus, Section::tooltips, Section::labels})
    for (const InterfaceItem& item : interface_items(section))
      texts.insert(plain(to_qt(item.english)));
  const std::string shared =
      read_whole_file(FERROWEN_SOURCE_FOLDER "/tests/fixtures/languages/same_words.txt");
  for (const std::string& word : split_lines(shared))
    texts.remove(to_qt(word));
  return texts;
}

void choose_language(const Desk& desk, const QString& name) {
  auto* menu = desk.control<QMenu>("mlan");
  Q_EMIT menu->aboutToShow();
  for (QAction* action : menu->actions()) {
    if (action->text() == name) return action->trigger();
  }
  QFAIL("no such language");
}

QPoint middle_of(ui::TilePlot* plot, std::size_t tile) {
  return plot->tile_rectangle(tile).center().toPoint();
}

}  // namespace

class TestF1 : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void real_task_from_input_to_map();
  void selecting_tiles();
  void checks_before_a_build_data();
  void checks_before_a_build();
  void failed_build_explains_itself();
  void stopped_run_leaves_the_window_ready();
  void closing_during_a_run();
  void languages();
  void shipped_languages();
  void first_message();
  void first_start_without_tools();
  void odd_settings_files();
  void folder_that_cannot_be_used();
  void files_menu();
  void inputs_of_every_kind();
  void locks_are_kept_at_once();
};

// With the real splitter and mkgmap on the sample map.
void TestF1::real_task_from_input_to_map() {
  Desk desk;
  desk.open();
  QVERIFY2(essential_tools_present(desk.workspace()), "java, mkgmap and mkgmap-splitter must be installed");
  desk.workspace().settings.splitter_options = "--output=o5m\r\n--max-nodes=10000";
  QVERIFY(desk.control<QLineEdit>("Text1")->text().endsWith(QStringLiteral("faroe-islands.osm.pbf")));
  desk.press("Command_split");
  auto* plot = desk.control<ui::TilePlot>("lb1");
  QVERIFY(plot->tiles().size() >= 3);
  QCOMPARE(desk.control<QLabel>("lab_tiles")->text(), QStringLiteral("Using all splitter files"));

  QTest::mouseClick(plot, Qt::LeftButton, {}, middle_of(plot, 0));
  QTest::mouseClick(plot, Qt::LeftButton, {}, middle_of(plot, 1));
  QCOMPARE(desk.control<QLabel>("lab_tiles")->text(), QStringLiteral(" (Maps Selected:2)"));
  desk.type("Text12", QStringLiteral("Færøer & Co"));
  desk.tick("Check2", true);
  desk.press("Command_create");
  QVERIFY2(desk.prompts.texts(Kind::ask).empty(),
           desk.prompts.said.empty() ? "" : desk.prompts.said.back().text.c_str());
  const std::string output = build_output_folder(desk.workspace().settings);
  const std::string first = platform::join(output, plot->tiles()[0].number + ".img");
  QVERIFY2(file_has_content(first),
           from_qt(desk.control<QPlainTextEdit>("Text10dos")->toPlainText()).c_str());
  QVERIFY(!file_exists(platform::join(output, plot->tiles()[2].number + ".img")));
  QVERIFY(!file_exists(platform::join(output, "gmapsupp.img")));
  QVERIFY(file_has_content(platform::join(desk.workspace().settings.gmapsupp_folder, "Færøer&Co.img")));
  QVERIFY(desk.control<QPlainTextEdit>("Text7")->toPlainText().contains(QStringLiteral("\n--family-name=")));
  QVERIFY(desk.control<QLineEdit>("Text12")->styleSheet().contains(QColor(220, 251, 125).name()));
  QCOMPARE(desk.control<QProgressBar>("progress_bar")->value(),
           desk.control<QProgressBar>("progress_bar")->maximum());

  // A new start knows it all.
  const int tiles = static_cast<int>(plot->tiles().size());
  desk.window->resize(1001, 702);
  desk.close();
  desk.open();
  QCOMPARE(desk.control<QLineEdit>("Text12")->text(), QStringLiteral("Færøer & Co"));
  QCOMPARE(static_cast<int>(desk.control<ui::TilePlot>("lb1")->tiles().size()), tiles);
  QVERIFY(desk.control<QCheckBox>("Check2")->isChecked());
  QCOMPARE(desk.window->size(), QSize(1001, 702));
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestF1::selecting_tiles() {
  PreparedDesk desk;
  desk.split();
  auto* plot = desk.control<ui::TilePlot>("lb1");
  const auto chosen = [&] { return static_cast<int>(selected_count(desk.workspace().tiles)); };
  QTest::mouseClick(plot, Qt::LeftButton, {}, middle_of(plot, 2));
  QTest::mouseClick(plot, Qt::LeftButton, Qt::ShiftModifier, middle_of(plot, 0));
  QCOMPARE(chosen(), 3);
  QTest::mouseClick(plot, Qt::RightButton, {}, middle_of(plot, 1));
  QCOMPARE(chosen(), 2);
  desk.press("select_invert");
  QCOMPARE(chosen(), 1);
  QVERIFY(desk.workspace().tiles[1].selected);
  // A band over the two tiles on the left; with Ctrl the one on the right stays.
  desk.press("select_none");
  QTest::mouseClick(plot, Qt::LeftButton, {}, middle_of(plot, 2));
  const QPoint from = plot->tile_rectangle(0).topLeft().toPoint() - QPoint(4, 4);
  const QPoint to = plot->tile_rectangle(1).center().toPoint();
  QTest::mousePress(plot, Qt::LeftButton, Qt::ControlModifier, from);
  QTest::mouseMove(plot, to);
  QTest::mouseRelease(plot, Qt::LeftButton, Qt::ControlModifier, to);
  QCOMPARE(chosen(), 3);
  // By keyboard alone: from tile to tile, Space turns one over.
  desk.press("select_none");
  plot->setFocus();
  QTest::mouseClick(plot, Qt::LeftButton, {}, middle_of(plot, 0));
  QTest::keyClick(plot, Qt::Key_Right);
  QTest::keyClick(plot, Qt::Key_Space);
  QVERIFY(desk.workspace().tiles[0].selected && desk.workspace().tiles[1].selected);
  QTest::keySequence(plot, QKeySequence::SelectAll);
  QCOMPARE(chosen(), 3);
  // Zooming about a point leaves it where it is, and the whole comes back.
  const QRectF before = plot->tile_rectangle(1);
  desk.press("zoom_in");
  QVERIFY(plot->tile_rectangle(1).width() > before.width());
  desk.press("zoom_fit");
  QCOMPARE(plot->tile_rectangle(1), before);
}

void TestF1::checks_before_a_build_data() {
  QTest::addColumn<QString>("settings");
  QTest::addColumn<bool>("split_first");
  QTest::addColumn<QString>("expected");
  const auto row = [](const char* settings, bool split_first, const char* expected) {
    QTest::newRow(expected) << QString::fromUtf8(settings) << split_first << QString::fromUtf8(expected);
  };
  row("gmapsupp=0", false, "Please select gmapsupp & or Add to Basecamp");
  row("contours=1; clip-contours=1; clip-folder-1=/no/such/folder", true,
      "Clip folder (/no/such/folder) does not exist.");
  row("map-name= ", false, "needs a Map Name.");
  row("style=none such", false, "Please select a valid style.");
  row("use-typ=1; typ=/no/such.typ", false, "Please select a valid TYP file.");
  row("mkgmap=/no/such.jar", false, "Please locate:'\r\n/no/such.jar'");
  row("fid=0; fid-locked=1", false, "FID can't be 0 . Please unlock FID");
  row("dem=1; hgt-folder={home}/heights; hgt-folder-1={home}/heights; hgt-folder-2={home}/heights", true,
      "No HGT!");
  row("transparent=1; routing=1", false, "A transparent map may cause routing problems.");
  row("input=/no/such.osm", false, "main file does not exist. Click 'Check Last Splitter Files' .");
}

void TestF1::checks_before_a_build() {
  QFETCH(QString, settings);
  QFETCH(bool, split_first);
  QFETCH(QString, expected);
  PreparedDesk desk;
  if (split_first) desk.split();
  desk.write("heights/S10W010.hgt", "of another place");
  desk.prompts.forget();
  for (const std::string& one : split(replace_all(from_qt(settings), "{home}", desk.home()), "; ")) {
    const std::size_t sign = one.find('=');
    const Field* field = find_field(one.substr(0, sign));
    QVERIFY(field != nullptr);
    assign_stored(desk.workspace().settings, *field, one.substr(sign + 1), "");
    if (one == "map-name= ") desk.workspace().settings.map_name = " ";
  }
  desk.window->show_record();
  desk.press("Command_create");
  bool told = false;
  for (const std::string& text : desk.prompts.texts())
    told = told || contains(text, from_qt(expected));
  QVERIFY2(told, join_texts(desk.prompts.texts(), " | ").c_str());
}

void TestF1::failed_build_explains_itself() {
  PreparedDesk desk("style-error");
  desk.split();
  desk.press("Command_create");
  QVERIFY(desk.prompts.said.size() >= 2);
  const std::vector<std::string> told = desk.prompts.texts(Kind::tell);
  QVERIFY(told.back().starts_with("IMG not created.\r\nThis has been unsuccessful."));
  QCOMPARE(desk.prompts.said.back().kind, Kind::show_file);
  QVERIFY(desk.control<QPushButton>("Command_create")->isEnabled());
  QVERIFY(!desk.control<QPushButton>("Command_stop")->isEnabled());
  QVERIFY(desk.control<QLineEdit>("Text12")->styleSheet().isEmpty());
}

void TestF1::stopped_run_leaves_the_window_ready() {
  PreparedDesk desk("hang");
  desk.split();
  QTimer::singleShot(700, desk.window.get(), [&] {
    QVERIFY(desk.window->busy());
    QVERIFY(!desk.control<QPushButton>("Command_create")->isEnabled());
    // What is chosen while a run works on it does not change.
    QTest::mouseClick(desk.control<ui::TilePlot>("lb1"), Qt::LeftButton, {},
                      middle_of(desk.control<ui::TilePlot>("lb1"), 0));
    QCOMPARE(selected_count(desk.workspace().tiles), std::size_t{0});
    desk.press("Command_stop");
  });
  desk.press("Command_create");
  QVERIFY(!desk.window->busy());
  QVERIFY(desk.control<QPushButton>("Command_create")->isEnabled());
  QCOMPARE(desk.control<QLabel>("status")->text(), QStringLiteral("Process cancelled"));
  // And the next build runs.
  desk.write("stand-in-mode", "");
  desk.press("Command_create");
  QVERIFY(file_has_content(platform::join(build_output_folder(desk.workspace().settings), "13224385.img")));
}

void TestF1::closing_during_a_run() {
  PreparedDesk desk("hang");
  desk.split();
  desk.prompts.answers = {Answer::no, Answer::yes};
  int refused = 0;
  QTimer::singleShot(500, desk.window.get(), [&] {
    refused += desk.window->close() ? 0 : 1;
    refused += desk.window->close() ? 0 : 1;
  });
  desk.press("Command_create");
  QCOMPARE(refused, 2);
  QTRY_VERIFY(!desk.window->isVisible());
  QVERIFY(file_exists(desk.path("ferrow6.dat")));
}

void TestF1::languages() {
  PreparedDesk desk;
  desk.write(
      "languages/test.m5l",
      "mlanguage=Prüfsprache\n<language>\n<commands>\na:Schließen\nb:Anwenden\nc:Abbrechen\nd:Weiter?\ne:"
      "Karte "
      "teilen\n</commands>\n<labels>\nmap_data:1 Kartendaten\n</labels>\n<messages>\n37:Muss nicht geteilt "
      "werden\n");
  const auto caption = [&] {
    return desk.control<QPushButton>("Command_split")->text().remove(QLatin1Char('&'));
  };
  choose_language(desk, QStringLiteral("Prüfsprache"));
  QCOMPARE(caption(), QStringLiteral("Karte teilen"));
  QCOMPARE(desk.control<QLabel>("lab1")->text(), QStringLiteral("Muss nicht geteilt werden"));
  desk.close();
  desk.open();
  QCOMPARE(caption(), QStringLiteral("Karte teilen"));
  choose_language(desk, QStringLiteral("English"));
  QCOMPARE(caption(), QStringLiteral("Split Map"));
  QCOMPARE(desk.control<QLabel>("lab1")->text(), QStringLiteral("Does not need splitting"));
}

// Deutsch, Français and back, in the open window: no caption stays behind.
void TestF1::shipped_languages() {
  PreparedDesk desk;
  for (const char* file : {"deutsch.m5l", "francais.m5l"})
    desk.write("languages/" + std::string(file),
               read_whole_file(std::string(FERROWEN_SOURCE_FOLDER "/assets/languages/") + file));
  const QMap<QString, QString> before = texts_of(*desk.window);
  const QSet<QString> english = english_texts();
  for (const QString& language : {QStringLiteral("Deutsch"), QStringLiteral("Français")}) {
    choose_language(desk, language);
    const QMap<QString, QString> after = texts_of(*desk.window);
    QCOMPARE(after.keys(), before.keys());
    for (const QString& text : after)
      QVERIFY2(!english.contains(text), qPrintable(language + QStringLiteral(": ") + text));
    QVERIFY(plain(desk.control<QMenu>("mf")->title()) != QStringLiteral("File"));
  }
  choose_language(desk, QStringLiteral("English"));
  QCOMPARE(texts_of(*desk.window), before);
}

// What the start-up had to say stands over a window that knows its tools.
void TestF1::first_message() {
  Desk desk;
  desk.open();
  const auto* java = desk.control<QLabel>("javlab");
  ui::HeldPrompts notes;
  notes.tell("one", Icon::information);
  notes.tell("two", Icon::warning);
  ui::f1 window(desk.workspace(), &desk.prompts);
  QVERIFY(window.findChild<QLabel*>(QStringLiteral("javlab"))->text().isEmpty());
  bool is_seen = false;
  desk.prompts.on_text = [&](const auto& said) {
    is_seen = said.text == "one\r\n\r\ntwo" && said.icon == Icon::warning && !window.busy() &&
              window.findChild<QLabel*>(QStringLiteral("javlab"))->text() == java->text();
  };
  window.first_activation(notes);
  QVERIFY(is_seen);
}

void TestF1::first_start_without_tools() {
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", "/nowhere");
  Desk desk;
  desk.open();
  qputenv("PATH", path);
  QVERIFY(!essential_tools_present(desk.workspace()));
  QCOMPARE(desk.control<QStackedWidget>("pages")->currentIndex(), 1);
  QVERIFY2(desk.prompts.said.empty(), "a friendly page instead of a row of boxes");
  // Once Java is there, the page says so and the sample map can be tried.
  desk.window->findChild<ui::ToolsPage*>()->look_again(desk.window->progress());
  Q_EMIT desk.window->findChild<ui::ToolsPage*>()->sample_requested();
  QCOMPARE(desk.control<QStackedWidget>("pages")->currentIndex(), 0);
}

void TestF1::odd_settings_files() {
  const std::string five_thousand(5000, '\n');
  for (const std::string& bytes : {std::string("one line"), five_thousand, std::string("a\0b\r\n\0\r\n", 9),
                                   std::string("\xff\xfe\x00\x41", 4)}) {
    Desk desk;
    desk.write("ferrow6.dat", bytes);
    desk.open();
    QVERIFY(desk.window->isVisible());
    QCOMPARE(desk.workspace().settings.max_nodes, std::string("1000000"));
    desk.close();
  }
}

void TestF1::folder_that_cannot_be_used() {
  Desk desk;
  // A file where the program folder should be: nobody can write there, not even root.
  QVERIFY(safe_write(desk.home(), "a file").ok());
  desk.open();
  QVERIFY(desk.window->isVisible());
  QVERIFY(desk.opened == ui::WindowSession::Opened::read_only);
  QVERIFY(!desk.session->notes.texts().empty());
  QVERIFY(contains(desk.session->notes.texts().front(), "nothing is saved"));
  desk.close();
  QVERIFY(desk.prompts.said.empty());
}

void TestF1::files_menu() {
  PreparedDesk desk;
  desk.split();
  auto* plot = desk.control<ui::TilePlot>("lb1");
  QTest::mouseClick(plot, Qt::LeftButton, {}, middle_of(plot, 1));
  desk.trigger("mf_save_selection");
  QCOMPARE(desk.prompts.said.back().text, std::string("Tiles Saved:1"));
  desk.press("select_all");
  desk.trigger("mf_load_selection");
  QCOMPARE(selected_count(desk.workspace().tiles), std::size_t{1});
  QVERIFY(desk.workspace().tiles[1].selected);
  desk.trigger("mf_save_arguments");
  QVERIFY(file_has_content(desk.path("args/sel.args")));
  desk.press("Command_create");
  desk.prompts.answers = {Answer::yes};
  desk.trigger("mf_remove_previous");
  QVERIFY(!file_exists(platform::join(build_output_folder(desk.workspace().settings), "13224386.img")));
  desk.trigger("mf_remove_previous");
  QCOMPARE(desk.prompts.said.back().text, std::string("Cannot find map to remove."));
  // A script is asked about; the input stays what it was.
  desk.prompts.answers = {Answer::no};
  desk.window->open_input(QStringLiteral("/x/y.auto"));
  QCOMPARE(desk.prompts.said.back().text, std::string("/x/y.auto\r\n\r\nAuto Create?"));
  QVERIFY(desk.control<QLineEdit>("Text1")->text().endsWith(QStringLiteral("map.osm")));
}

void TestF1::inputs_of_every_kind() {
  PreparedDesk desk;
  desk.split();
  const auto state = [&] { return desk.control<QLabel>("lab1")->text(); };
  // Changed after the split: the tiles are still shown, with the warning.
  std::filesystem::last_write_time(desk.path("map.osm"),
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  desk.window->open_input(to_qt(desk.path("map.osm")));
  QCOMPARE(state(), QStringLiteral("Splitter files may not be up-to-date"));
  QCOMPARE(desk.workspace().tiles.size(), std::size_t{3});
  // A name that looks like HTML is shown as it is.
  desk.window->open_input(QStringLiteral("/no/<b>such</b>.pbf"));
  QCOMPARE(state(), QStringLiteral("Cannot find file /no/<b>such</b>.pbf"));
  QCOMPARE(desk.control<QLabel>("lab1")->textFormat(), Qt::PlainText);
  QVERIFY(desk.workspace().tiles.empty());
  desk.prompts.forget();
  desk.window->open_input(to_qt(desk.home()));
  QVERIFY(contains(desk.prompts.said.back().text, "is a folder"));
  QCOMPARE(desk.workspace().settings.input, std::string("/no/<b>such</b>.pbf"));
  // One that a second start was to open waits while a question is open, and brings the window back.
  desk.window->showMinimized();
  const std::string handed = desk.write("system/handed-over.1", desk.path("map.osm"));
  QDialog question(desk.window.get());
  question.setModal(true);
  question.show();
  desk.window->open_handed_over();
  QVERIFY(file_exists(handed));
  question.close();
  desk.window->open_handed_over();
  QVERIFY(!file_exists(handed));
  QVERIFY(!desk.window->isMinimized());
  QCOMPARE(desk.workspace().settings.input, desk.path("map.osm"));
  // An input that needs no split tells so, and Create Map builds it whole.
  const std::string other = desk.write("other & more.osm", small_map);
  desk.window->open_input(to_qt(other));
  QCOMPARE(state(), QStringLiteral("Does not need splitting"));
  desk.press("Command_create");
  QVERIFY(file_has_content(platform::join(build_output_folder(desk.workspace().settings), "13224385.img")));
}

void TestF1::locks_are_kept_at_once() {
  PreparedDesk desk;
  const auto stored = [&](const char* field) {
    const std::vector<std::string> lines = split_lines(read_whole_file(desk.path("ferrow6.dat")));
    return lines.at(static_cast<std::size_t>(find_field(field)->line));
  };
  desk.type("Text12", QStringLiteral("not to be kept yet"));
  for (const char* lock : {"fid-locked", "map-id-locked"}) {
    for (const bool on : {true, false}) {
      desk.tick(lock, on);
      QCOMPARE(stored(lock), std::string(on ? "1" : "0"));
    }
  }
  QVERIFY(stored("map-name") != "not to be kept yet");
}

QTEST_MAIN(TestF1)
#include "test_f1.moc"
