// The Style Doctor with real clicks, on a style and a TYP file of its own.
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>

#include "base/files.hpp"
#include "platform/paths.hpp"
#include "ui/doctor.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"
#include "ui/theme.hpp"

using namespace ferrowen;
using namespace ferrowen::ui;
using ferrowen::test::ScriptedPrompts;

namespace {

void append(std::string& bytes, unsigned number, int width) {
  for (int at = 0; at < width; ++at)
    bytes += static_cast<char>((number >> (8 * at)) & 0xFFU);
}

// A TYP file with one polygon, type 0x01 in plain green and by night in dark blue, without labels.
std::string small_typ() {
  constexpr unsigned header = 0x5B, definition = 7, entry = 4;
  std::string bytes;
  append(bytes, header, 2);
  bytes += "GARMIN TYP";
  append(bytes, 1, 2);                    // version
  bytes.append(7, '\0');                  // date
  append(bytes, 1252, 2);                 // code page
  for (int kind = 0; kind < 3; ++kind) {  // definitions: points, lines, polygons
    append(bytes, header, 4);
    append(bytes, kind == 2 ? definition : 0, 4);
  }
  append(bytes, 1, 2);                    // family
  append(bytes, 1, 2);                    // product
  for (int kind = 0; kind < 3; ++kind) {  // indexes
    append(bytes, header + definition, 4);
    append(bytes, entry, 2);
    append(bytes, kind == 2 ? entry : 0, 4);
  }
  append(bytes, header + definition + entry, 4);  // draw order
  append(bytes, 5, 2);
  append(bytes, 5, 4);
  bytes += static_cast<char>(7);  // scheme: solid, by day and by night
  bytes += std::string("\x20\xC0\x20\x60\x10\x10", 6);
  append(bytes, 0x01U << 5U, 2);
  append(bytes, 0, 2);
  append(bytes, 0x01, 1);
  append(bytes, 0, 4);
  return bytes;
}

struct Opened {
  Opened() {
    workspace.folder = ProgramFolder(from_qt(home.path()));
    workspace.settings = default_settings(workspace.folder.path());
    write("styles/mine/polygons",
          "natural=wood [0x01 resolution 20]\ninclude 'inc';\nnatural=water [0x02]\n");
    write("styles/mine/inc", "# included\n\nnatural=wood & a=b [0x03 resolution 22]\n");
    write("styles/mine/lines", "highway=primary [0x03 road_class=4 resolution 20]\n#a=b [0x01]\n");
    write("styles/empty/info", "");
    workspace.settings.style = "mine";
    workspace.settings.doctor_typ = write("small.typ", small_typ());
    window = std::make_unique<ui::doctor>(workspace, prompts);
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get())) qFatal("not shown");
  }
  ~Opened() {
    if (!prompts.unexpected.empty()) QTest::qFail("unexpected question", __FILE__, __LINE__);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

  std::string write(const std::string& name, const std::string& bytes) const {
    std::string path = workspace.path(name);
    if (!make_folder(platform::folder_of(path)).ok() || !safe_write(path, bytes).ok()) qFatal("not written");
    return path;
  }
  template <typename Control>
  Control* find(const char* name) const {
    auto* found = window->findChild<Control*>(QLatin1String(name));
    if (found == nullptr) qFatal("no control %s", name);
    return found;
  }
  void click(const char* name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
  [[nodiscard]] QTableView* list() const { return find<QTableView>("List4"); }
  // "finding|place" of the rows that are shown.
  [[nodiscard]] QStringList rows() const {
    QStringList rows;
    const QAbstractItemModel* model = list()->model();
    for (int row = 0; row < model->rowCount(); ++row)
      rows << model->index(row, DoctorTable::finding).data().toString() + QLatin1Char('|') +
                  model->index(row, DoctorTable::place).data().toString();
    return rows;
  }
  void choose(const char* finding) const {
    const QAbstractItemModel* model = list()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
      const QModelIndex cell = model->index(row, DoctorTable::finding);
      if (cell.data().toString() != QLatin1String(finding)) continue;
      list()->scrollTo(cell);
      QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->visualRect(cell).center());
      return;
    }
    qFatal("no row %s", finding);
  }
  [[nodiscard]] QString highlighted() const {
    const auto marks = find<QPlainTextEdit>("Text1")->extraSelections();
    return marks.isEmpty() ? QString() : marks.front().cursor.block().text();
  }

  QTemporaryDir home{QDir::tempPath() + QStringLiteral("/doctor home-XXXXXX")};
  ScriptedPrompts prompts;
  Workspace workspace;
  std::unique_ptr<ui::doctor> window;
};

QColor centre_of(const QLabel& label) {
  const QImage image = label.pixmap().toImage();
  return image.pixelColor(image.rect().center());
}

}  // namespace

class TestDoctor : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void findings_lead_to_their_rules();
  void drawings_are_shown_by_day_and_by_night();
  void the_list_is_filtered_sorted_and_counted();
  void checks_of_the_other_kinds();
  void the_report_is_of_what_is_chosen();
  void texts_types_and_tags_are_found();
  void reports_are_saved_and_shown();
  void what_is_missing_is_told();
  void pictures_of_both_themes();
};

void TestDoctor::findings_lead_to_their_rules() {
  const Opened opened;
  QCOMPARE(opened.find<QLabel>("Label8")->text(), QStringLiteral("Include: a) inc"));
  opened.click("doctor_check_style");
  QVERIFY(opened.rows().contains(QStringLiteral("Not rendered|inc:3")));
  opened.choose("Not rendered");
  QCOMPARE(opened.highlighted(), QStringLiteral("natural=wood & a=b [0x03 resolution 22]"));
  QVERIFY(opened.find<QLabel>("doctor_line")->text().endsWith(QStringLiteral("inc:3")));
  opened.choose("Add 'continue':");
  QCOMPARE(opened.highlighted(), QStringLiteral("natural=wood [0x01 resolution 20]"));
  // What is edited meanwhile is read by the next check.
  const std::string fixed = opened.write("styles/mine/inc", "natural=peak [0x03 resolution 22]\n");
  opened.click("doctor_check_style");
  QCOMPARE(opened.rows().last(), QStringLiteral("No issues found.|"));
}

void TestDoctor::drawings_are_shown_by_day_and_by_night() {
  const Opened opened;
  opened.click("doctor_check_typ");
  opened.choose("In Style");
  QCOMPARE(centre_of(*opened.find<QLabel>("doctor_day")), QColor(0x20, 0xC0, 0x20));
  QCOMPARE(centre_of(*opened.find<QLabel>("doctor_night")), QColor(0x10, 0x10, 0x60));
  QVERIFY(opened.find<QLabel>("doctor_label")->text().startsWith(QStringLiteral("00100")));
  opened.choose("Not in TYP");
  QVERIFY(opened.find<QLabel>("doctor_day")->pixmap().isNull());
  QCOMPARE(opened.find<QLabel>("doctor_label")->text(), QStringLiteral("00200 is not in the TYP file"));
}

void TestDoctor::the_list_is_filtered_sorted_and_counted() {
  const Opened opened;
  opened.click("doctor_all");
  QCOMPARE(opened.find<QLabel>("doctor_counts")->text(), QStringLiteral("7 findings"));
  auto* show = opened.find<QComboBox>("doctor_show");
  QCOMPARE(show->itemText(0), QStringLiteral("Everything (7)"));
  QCOMPARE(show->itemText(2), QStringLiteral("Road class (1)"));
  show->setCurrentIndex(show->findText(QStringLiteral("Not used (1)")));
  QCOMPARE(opened.rows(), QStringList{QStringLiteral("Not Used|lines:2")});
  show->setCurrentIndex(0);
  QTest::keyClicks(opened.find<QLineEdit>("doctor_filter"), QStringLiteral("rendered 0x03"));
  QCOMPARE(opened.rows(), QStringList{QStringLiteral("Not rendered|inc:3")});
  opened.find<QLineEdit>("doctor_filter")->clear();
  opened.list()->sortByColumn(DoctorTable::marker, Qt::AscendingOrder);
  QCOMPARE(opened.rows().first(), QStringLiteral("Not rendered|inc:3"));
}

void TestDoctor::checks_of_the_other_kinds() {
  const Opened opened;
  opened.click("doctor_check_road-class");
  QVERIFY(opened.find<QAbstractButton>("Option2_1")->isChecked());
  opened.choose("(change road_class:3)");
  QCOMPARE(opened.highlighted(), QStringLiteral("highway=primary [0x03 road_class=4 resolution 20]"));
  opened.click("Option2_0");
  opened.click("doctor_check_resolution");
  QVERIFY(opened.rows().contains(QStringLiteral("RESOLUTION 22|")));
}

void TestDoctor::the_report_is_of_what_is_chosen() {
  Opened opened;
  const auto* types = opened.find<QTreeWidget>("doctor_typ_list");
  QCOMPARE(types->topLevelItemCount(), 1);
  QCOMPARE(types->topLevelItem(0)->text(3), QStringLiteral("0x01"));
  QCOMPARE(types->topLevelItem(0)->text(5), QStringLiteral("1"));
  opened.click("doctor_check_typ");
  QVERIFY(!opened.rows().isEmpty());
  // A box that was emptied: the earlier file is not compared with any more.
  opened.find<QLineEdit>("doctor_typ")->clear();
  QCOMPARE(types->topLevelItemCount(), 0);
  opened.click("doctor_all");
  for (const QString& row : opened.rows())
    QVERIFY2(!row.startsWith(QStringLiteral("Not in TYP")), qPrintable(row));
  std::string bytes = small_typ();
  bytes[0x15] = bytes[0x16] = '\x11';
  opened.find<QLineEdit>("doctor_typ")->setText(to_qt(opened.write("damaged.typ", bytes)));
  opened.click("doctor_check_typ");
  QVERIFY(opened.rows().first().startsWith(QStringLiteral("Check|")));
  QVERIFY(opened.prompts.said.back().text.find("byte 21: the code page 4369") != std::string::npos);
  opened.find<QComboBox>("doctor_style")->setCurrentText(QStringLiteral("empty"));
  QVERIFY(opened.rows().isEmpty());
}

void TestDoctor::texts_types_and_tags_are_found() {
  Opened opened;
  opened.click("doctor_search_next");
  QVERIFY(opened.prompts.has("No text to search."));
  QTest::keyClicks(opened.find<QLineEdit>("doctor_search"), QStringLiteral("INCLUDED"));
  QTest::keyClick(opened.find<QLineEdit>("doctor_search"), Qt::Key_Return);
  QCOMPARE(opened.highlighted(), QStringLiteral("# included"));
  opened.find<QPlainTextEdit>("Text1")->moveCursor(QTextCursor::Start);
  opened.find<QLineEdit>("doctor_search")->setText(QStringLiteral("natural=w"));
  opened.click("doctor_search_next");
  QCOMPARE(opened.highlighted(), QStringLiteral("natural=wood [0x01 resolution 20]"));
  opened.click("doctor_search_next");
  QCOMPARE(opened.highlighted(), QStringLiteral("natural=water [0x02]"));
  auto* types = opened.find<QComboBox>("Combo3");
  QCOMPARE(types->itemText(types->count() - 1), QStringLiteral("see types"));
  types->setCurrentIndex(types->findText(QStringLiteral("00200")));
  QCOMPARE(opened.highlighted(), QStringLiteral("natural=water [0x02]"));
  auto* conditions = opened.find<QListWidget>("List2");
  QCOMPARE(conditions->item(2)->text(), QStringLiteral("natural=wood & a=b "));
  conditions->setCurrentRow(0);
  QCOMPARE(opened.highlighted(), QStringLiteral("natural=wood [0x01 resolution 20]"));
  auto* tags = opened.find<QTreeWidget>("doctor_tags");
  QCOMPARE(tags->topLevelItem(0)->text(1), QStringLiteral("wood"));
  QCOMPARE(tags->topLevelItem(0)->text(2), QStringLiteral("2"));
  tags->setCurrentItem(tags->topLevelItem(0));
  std::string opened_address;
  opened.window->open_address = [&](const std::string& address) {
    opened_address = address;
    return std::string();
  };
  opened.find<QPushButton>("doctor_tag_web")->click();
  QVERIFY(opened_address.ends_with("search=natural%3Dwood"));
}

void TestDoctor::reports_are_saved_and_shown() {
  Opened opened;
  opened.click("Command13");
  QVERIFY(opened.prompts.has(opened.workspace.path("typ.txt")));
  QVERIFY(read_whole_file(opened.workspace.path("typ.txt")).starts_with("Style:\t"));
  opened.click("doctor_check_unused");
  for (const char* name : {"my.txt", "my.csv", "my.tvkx"})
    opened.prompts.chosen.emplace_back(opened.workspace.path(name));
  opened.click("doctor_export_text");
  opened.click("doctor_export_csv");
  opened.click("doctor_export_editor");
  QVERIFY(read_whole_file(opened.workspace.path("my.txt")).find("Style Check") != std::string::npos);
  QVERIFY(read_whole_file(opened.workspace.path("my.csv")).starts_with("check,weight"));
  QVERIFY(file_exists(opened.workspace.path("my_polygons.tvkx")));
}

void TestDoctor::what_is_missing_is_told() {
  Opened opened;
  opened.find<QLineEdit>("doctor_typ")->setText(QStringLiteral("/gone.typ"));
  opened.click("doctor_check_typ");
  QVERIFY(opened.prompts.has("Can't find TYP file. Please select.\r\n/gone.typ"));
  opened.find<QLineEdit>("doctor_typ")->clear();
  opened.click("Command13");
  QVERIFY(opened.prompts.has("Can't find TYP file. "));
  opened.find<QComboBox>("doctor_style")->setCurrentText(QStringLiteral("empty"));
  opened.click("doctor_check_style");
  QVERIFY(opened.prompts.has("No style data"));
}

// Written where FERROWEN_TEST_PICTURES names a folder, for a look at the window.
void TestDoctor::pictures_of_both_themes() {
  const QByteArray folder = qgetenv("FERROWEN_TEST_PICTURES");
  for (const char* theme : {"light", "dark"}) {
    apply_theme(QLatin1String(theme));
    const Opened opened;
    opened.click("doctor_all");
    opened.choose("Not rendered");
    const QPixmap picture = opened.window->grab();
    QVERIFY(picture.width() > 600);
    if (!folder.isEmpty())
      QVERIFY(picture.save(QString::fromUtf8(folder) + QStringLiteral("/doctor-") + QLatin1String(theme) +
                           QStringLiteral(".png")));
  }
  apply_theme({});
}

QTEST_MAIN(TestDoctor)
#include "test_doctor.moc"
