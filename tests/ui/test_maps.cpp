// From a built map to a registered one and away again, by clicks and keys: the installed maps, the unused
// ones, and where the device image goes.
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "app/start_up.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/registration_text.hpp"
#include "ui/desk.hpp"
#include "ui/installed_maps_list.hpp"
#include "ui/surplus.hpp"

using namespace ferrowen;
using test::Desk;
using Kind = test::ScriptedPrompts::Kind;
using ui::from_qt;
using ui::to_qt;

namespace {

constexpr const char* tdb_of_1000 = "P\x01\x02\x03\x04\xe8\x03";

// A program folder with two registered maps ("Alps", 1000, and "Zoo & Park", 77) and one that is not.
struct MapsDesk : Desk {
  MapsDesk() {
    open();
    use_stand_ins();
    workspace().settings.output_folder = path("out");
    add("Alps", "e8,03");
    add("Zoo & Park", "4d,00");
    write("out/old_map/osmmap.tdb", tdb_of_1000);
    write("out/old_map/63240001.img", std::string(5000, 'x'));
    write("out/old_map/old map.reg",
          encode_registry_text(registration_text(facts("old map", "e9,03", path("out/old_map")))));
    write("out/notes/readme.txt", "not a map");
    window->show_record();
  }
  [[nodiscard]] RegistrationFacts facts(const std::string& name, const std::string& fid,
                                        const std::string& folder) const {
    const std::unique_ptr<Registry> registry = open_registry(workspace());
    const auto registered = [&](const char* file) {
      return registry->registered_path(platform::join(folder, file));
    };
    return {name, fid, registry->registered_path(folder), registered("osmmap.img"), registered("osmmap.tdb"),
            "",   "",  registered("typ/my.typ"),          registry->is_64bit()};
  }
  void add(const std::string& name, const std::string& fid) const {
    const std::string folder = path("out/" + name);
    write("out/" + name + "/osmmap.tdb", tdb_of_1000);
    write("out/" + name + "/osmmap.img", "map");
    const std::string file =
        write("out/" + name + "/map.reg", encode_registry_text(registration_text(facts(name, fid, folder))));
    const Status imported = open_registry(workspace())->import_file(file, {});
    if (!imported.ok()) qFatal("%s", imported.error.c_str());
  }
  [[nodiscard]] std::vector<std::string> registered() const {
    test::ScriptedPrompts unheard;
    std::vector<std::string> names;
    for (const InstalledMap& map : installed_maps(*open_registry(workspace()), workspace().messages, unheard))
      names.push_back(map.product);
    return names;
  }
};

template <typename Control>
Control* find(const QWidget& window, const char* name) {
  auto* found = window.findChild<Control*>(QString::fromUtf8(name));
  if (found == nullptr) qFatal("no control %s", name);
  return found;
}

void click(const QWidget& window, const char* name) {
  QTest::mouseClick(find<QAbstractButton>(window, name), Qt::LeftButton);
}

using Texts = std::vector<std::string>;

}  // namespace

class TestMaps : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  // Without a Wine prefix of the person who runs the tests.
  void initTestCase() { qputenv("HOME", to_qt(platform::executable_path() + "-no-home").toUtf8()); }
  void real_map_is_registered_and_removed();
  void installed_maps_are_listed_and_removed();
  void unused_maps_are_deleted_or_recovered();
  void image_goes_where_the_button_says();
  void entries_of_the_menus();
};

// With the real splitter and mkgmap.
void TestMaps::real_map_is_registered_and_removed() {
  Desk desk;
  desk.open();
  QVERIFY2(essential_tools_present(desk.workspace()), "java, mkgmap and mkgmap-splitter must be installed");
  desk.workspace().settings.splitter_options = "--output=o5m\r\n--max-nodes=20000";
  desk.workspace().settings.always_collect_fids = true;
  desk.press("Command_split");
  desk.type("Text12", QStringLiteral("Færøer & Co"));
  desk.type("Text_fid", QStringLiteral("1000"));
  desk.tick("upmaps", true);
  desk.press("Command_create");
  QVERIFY2(desk.prompts.has("'Færøer & Co' installed successfully"),
           desk.prompts.said.empty() ? "" : desk.prompts.said.back().text.c_str());
  // A registered map is not marked as waiting for it.
  QVERIFY(!desk.control<QLineEdit>("Text12")->styleSheet().contains(QColor(220, 251, 125).name()));

  ui::installed_maps_list window(desk.workspace(), desk.prompts, desk.window->progress());
  auto* list = find<QTreeWidget>(window, "Li");
  QCOMPARE(list->topLevelItemCount(), 1);
  QCOMPARE(list->topLevelItem(0)->text(0), QStringLiteral("Færøer & Co"));
  QCOMPARE(list->topLevelItem(0)->text(1), QStringLiteral("1000"));
  const QString values = find<QPlainTextEdit>(window, "maps_values")->toPlainText();
  QVERIFY2(values.contains(QStringLiteral("ID = e8 03")), from_qt(values).c_str());
  const std::string folder = registered_map_folder(desk.workspace().settings);
  QVERIFY(folder_exists(folder));

  // The same again is refused before the time of a build is spent.
  desk.prompts.forget();
  desk.press("Command_create");
  QVERIFY(desk.prompts.has(
      "FID 1000 exists in Garmin Register. Can't upload map.\r\nLet ferrowen create new FID?"));
  QVERIFY(!desk.prompts.has("'Færøer & Co' installed successfully"));

  desk.prompts.forget();
  desk.prompts.unexpected.clear();
  desk.prompts.answers = {Answer::yes};
  click(window, "maps_remove");
  QVERIFY(desk.prompts.has("All files were removed."));
  QVERIFY(!file_exists(folder));
  QCOMPARE(list->topLevelItemCount(), 0);
  QVERIFY(!find<QPushButton>(window, "maps_remove")->isEnabled());
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestMaps::installed_maps_are_listed_and_removed() {
  MapsDesk desk;
  ui::installed_maps_list window(desk.workspace(), desk.prompts, desk.window->progress());
  window.show();
  auto* list = find<QTreeWidget>(window, "Li");
  QCOMPARE(list->topLevelItemCount(), 2);
  list->sortByColumn(1, Qt::AscendingOrder);  // by number: 77 before 1000
  QCOMPARE(list->topLevelItem(0)->text(0), QStringLiteral("Zoo & Park"));
  QVERIFY(find<QLabel>(window, "maps_place")->text().contains(QStringLiteral("registry.reg")));

  QTest::keyClicks(find<QLineEdit>(window, "maps_search"), QStringLiteral("zoo"));
  QVERIFY(list->topLevelItem(1)->isHidden());
  QCOMPARE(list->currentItem()->text(0), QStringLiteral("Zoo & Park"));
  std::string opened;
  window.open_folder = [&](const std::string& folder) {
    opened = folder;
    return std::string("no desktop");
  };
  click(window, "maps_open");
  QCOMPARE(to_qt(opened), to_qt(desk.path("out/Zoo & Park")));
  QVERIFY(desk.prompts.said.back().text.ends_with("no desktop"));

  // A No leaves all as it was.
  desk.prompts.answers = {Answer::no};
  QTest::keyClick(list, Qt::Key_Delete);
  QCOMPARE(list->topLevelItemCount(), 2);
  desk.prompts.answers = {Answer::yes};
  QTest::keyClick(list, Qt::Key_Delete);
  QCOMPARE(desk.registered(), Texts{"Alps"});
  QVERIFY(!file_exists(desk.path("out/Zoo & Park")));
  QVERIFY(file_exists(desk.path("out/Alps/osmmap.img")));

  // A map whose folder is the person's own goes from the registry alone.
  const std::string file = desk.write(
      "whole.reg", encode_registry_text(registration_text(desk.facts("Whole", "05,00", desk.home()))));
  QVERIFY(open_registry(desk.workspace())->import_file(file, {}).ok());
  find<QLineEdit>(window, "maps_search")->clear();
  click(window, "maps_refresh");
  find<QTreeWidget>(window, "Li")
      ->setCurrentItem(list->findItems(QStringLiteral("Whole"), Qt::MatchExactly).front());
  desk.prompts.answers = {Answer::yes};
  click(window, "maps_remove");
  QVERIFY(desk.prompts.said.back().text.starts_with("Not all files were removed"));
  QVERIFY(file_exists(desk.path("ferrow6.dat")) || folder_exists(desk.home()));
  QCOMPARE(desk.registered(), Texts{"Alps"});
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestMaps::unused_maps_are_deleted_or_recovered() {
  MapsDesk desk;
  ui::surplus window(desk.workspace(), desk.prompts, desk.window->progress());
  auto* list = find<QTreeWidget>(window, "List2");
  QCOMPARE(find<QComboBox>(window, "Dir2")->currentText(), to_qt(desk.path("out")));
  click(window, "surplus_search");
  QCOMPARE(list->topLevelItemCount(), 1);
  QTreeWidgetItem* old = list->topLevelItem(0);
  QCOMPARE(old->text(0), to_qt(desk.path("out/old_map")));

  click(window, "surplus_delete");
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("Tick box to select folders."));
  click(window, "surplus_recover");
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("Please select."));

  old->setCheckState(0, Qt::Checked);
  click(window, "surplus_recover");
  QVERIFY(desk.prompts.has("\r\nThe map you want to recover might share an FID with another map!"));
  QCOMPARE(desk.registered(), (Texts{"Alps", "old map", "Zoo & Park"}));
  QCOMPARE(list->topLevelItemCount(), 0);

  desk.prompts.answers = {Answer::yes};
  remove_registered_map(desk.workspace(), desk.prompts, desk.window->progress(),
                        *open_registry(desk.workspace()), {"Alps"});
  desk.write("out/Alps/osmmap.tdb", tdb_of_1000);
  click(window, "surplus_search");
  QCOMPARE(list->topLevelItemCount(), 1);
  click(window, "surplus_all");
  desk.prompts.answers = {Answer::no};
  click(window, "surplus_delete");
  QVERIFY(file_exists(desk.path("out/Alps/osmmap.tdb")));
  desk.prompts.answers = {Answer::yes};
  click(window, "surplus_delete");
  QVERIFY(!file_exists(desk.path("out/Alps")));
  QCOMPARE(list->topLevelItemCount(), 0);
  desk.prompts.forget();
  click(window, "surplus_search");
  QCOMPARE(to_qt(desk.prompts.said.back().text), to_qt("None found in folder: " + desk.path("out")));
  QVERIFY(file_exists(desk.path("out/notes/readme.txt")));
  QVERIFY(desk.prompts.unexpected.empty());
}

void TestMaps::image_goes_where_the_button_says() {
  MapsDesk desk;
  auto* button = desk.control<QPushButton>("image_place");
  auto* menu = button->menu();
  Q_EMIT menu->aboutToShow();
  QVERIFY(menu->actions().front()->isChecked());
  const std::string card = desk.path("my card");
  std::filesystem::create_directories(card);
  desk.prompts.chosen = {card};
  menu->actions().back()->trigger();
  QCOMPARE(to_qt(desk.workspace().settings.image_folder), to_qt(card));
  QVERIFY(button->text().contains(QStringLiteral("my card")));

  desk.write("map.osm",
             "<?xml version='1.0'?>\n<osm version='0.6'>\n<node id='1' lat='47' lon='9'/>\n</osm>\n");
  desk.window->open_input(to_qt(desk.path("map.osm")));
  desk.workspace().settings.use_typ = false;
  desk.workspace().settings.fid = "1234";
  desk.window->show_record();
  desk.tick("Check2", true);
  desk.type("Text12", QStringLiteral("My Map"));
  desk.press("Command_split");
  desk.press("Command_create");
  QVERIFY2(file_has_content(platform::join(card, "MyMap.img")),
           desk.prompts.said.empty() ? "" : desk.prompts.said.back().text.c_str());
  // The copy is refused: the map is built all the same, and waits to be registered.
  desk.prompts.answers = {Answer::yes, Answer::no, Answer::no};
  desk.press("Command_create");
  QVERIFY(desk.prompts.has("File exists. Overwrite?"));
  QVERIFY(desk.control<QLineEdit>("Text12")->styleSheet().contains(QColor(220, 251, 125).name()));
  Q_EMIT menu->aboutToShow();
  menu->actions().front()->trigger();
  QCOMPARE(to_qt(desk.workspace().settings.image_folder), QString());
}

void TestMaps::entries_of_the_menus() {
  MapsDesk desk;
  desk.prompts.forget();
  desk.trigger("mtools_installer");
  QVERIFY(!desk.prompts.said.empty());
  // Takes in the text of the map that the settings name; else asks for one.
  desk.workspace().settings.map_name = "old map";
  desk.window->show_record();
  desk.trigger("mtools_fix_registry");
  QVERIFY2(desk.prompts.has("'old map.reg' installed successfully"), desk.prompts.said.back().text.c_str());
  QCOMPARE(desk.registered(), (Texts{"Alps", "old map", "Zoo & Park"}));
  desk.type("Text12", QStringLiteral("no such map"));
  desk.prompts.chosen = {
      desk.write("hostile.reg", "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Other]\r\n\"a\"=\"b\"\r\n")};
  desk.trigger("mtools_fix_registry");
  QVERIFY(!open_registry(desk.workspace())->key(R"(HKEY_CURRENT_USER\Software\Other)").exists);
  QVERIFY(
      desk.prompts.has("Run program as Administrator\r\nor go Tools --> 'Fix Registry Problem'\r\n"
                       "Install manually : Tools -->'Create Window Installer'.\r\n"
                       "or double click on .reg file."));

  QCOMPARE(desk.control<QPushButton>("Command_launch")->text().remove(QLatin1Char('&')),
           QStringLiteral("Launch Basecamp"));
  desk.press("Command_launch");
  QCOMPARE(to_qt(desk.prompts.said.back().text), QStringLiteral("Use Settings to locate Basecamp"));
  for (const char* entry : {"mmaps_installed", "mmaps_unused"}) {
    QString seen;
    QTimer::singleShot(200, [&] {
      if (QWidget* open = QApplication::activeModalWidget()) {
        seen = open->objectName();
        open->close();
      }
    });
    desk.trigger(entry);
    QCOMPARE(seen, QString::fromUtf8(entry) == QStringLiteral("mmaps_unused")
                       ? QStringLiteral("surplus")
                       : QStringLiteral("installed_maps_list"));
  }
}

QTEST_MAIN(TestMaps)
#include "test_maps.moc"
