// The windows of an installed Ferrowen, from the folder that it is installed in: this program is put beside
// ferrowen6.exe for the time of the test. Its first test leaves a registered map, its second removes it. The
// tools are set beforehand. Pictures go to the folder of the environment variable FERROWEN_PICTURES.
#include <QDir>
#include <QInputMethodEvent>
#include <QSet>
#include <QTest>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/map_folder.hpp"
#include "platform/paths.hpp"
#include "platform/registry.hpp"
#include "ui/f1.hpp"
#include "ui/installed_maps_list.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"
#include "ui/window_session.hpp"

using namespace ferrowen;
using ui::from_qt;
using ui::to_qt;

namespace {

constexpr const char* families_key = "SOFTWARE\\Wow6432Node\\Garmin\\MapSource\\Families\\";
const char* const map_name = "Färöer & Co";

bool is_registered() {
  return platform::read_registry_key(platform::RegistryRoot::local_machine,
                                     std::string(families_key) + map_name)
      .exists;
}

template <typename Control>
Control* find(const QWidget& window, const char* name) {
  auto* found = window.findChild<Control*>(QString::fromUtf8(name));
  if (found == nullptr) qFatal("no control %s", name);
  return found;
}

// A picture that is not of one or two colours only.
bool keep_picture(QWidget& window, const char* name) {
  QCoreApplication::processEvents();
  const QImage picture = window.grab().toImage();
  QSet<QRgb> colours;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      colours.insert(picture.pixel(x, y));
  const QDir folder(qEnvironmentVariable("FERROWEN_PICTURES"));
  return picture.save(folder.filePath(QString::fromUtf8(name) + QStringLiteral(".png"))) &&
         colours.size() > 20;
}

// Every letter; key presses are for the plain ones alone.
void type(QLineEdit& line, const QString& text) {
  line.selectAll();
  QInputMethodEvent typed;
  typed.setCommitString(text);
  QCoreApplication::sendEvent(&line, &typed);
}

}  // namespace

class TestInstalled : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void sample_becomes_a_registered_map();
  void registered_map_is_listed_and_removed();
  void cleanupTestCase();

 private:
  void press(const char* name) const {
    QTest::mouseClick(find<QAbstractButton>(*m_window, name), Qt::LeftButton);
  }
  [[nodiscard]] const char* last_text() const {
    return m_prompts.said.empty() ? "nothing was said" : m_prompts.said.back().text.c_str();
  }

  test::ScriptedPrompts m_prompts;
  ui::WindowSession m_session;
  std::unique_ptr<ui::f1> m_window;
};

void TestInstalled::initTestCase() {
  QCOMPARE(static_cast<int>(m_session.open(std::nullopt)),
           static_cast<int>(ui::WindowSession::Opened::ready));
  QCOMPARE(to_qt(m_session.workspace.folder.path()), to_qt(platform::folder_of(platform::executable_path())));
  m_window = std::make_unique<ui::f1>(m_session.workspace, &m_prompts);
  m_window->resize(1200, 760);
  m_window->show();
  m_window->first_activation();
}

void TestInstalled::sample_becomes_a_registered_map() {
  const QString input = find<QLineEdit>(*m_window, "Text1")->text();
  QCOMPARE(input, to_qt(m_session.workspace.path("faroe-islands.osm.pbf")));
  QVERIFY(QFile::exists(input));
  QVERIFY(keep_picture(*m_window, "sample-opened"));

  press("Command_split");
  QVERIFY2(m_session.workspace.tiles.size() >= 3, last_text());
  QVERIFY(m_session.workspace.split_state == SplitState::no_need_to_split);
  QVERIFY(keep_picture(*m_window, "split"));

  type(*find<QLineEdit>(*m_window, "Text12"), QString::fromUtf8(map_name));
  type(*find<QLineEdit>(*m_window, "Text_fid"), QStringLiteral("6324"));
  if (auto* boxed = find<QCheckBox>(*m_window, "upmaps"); !boxed->isChecked()) boxed->click();
  QVERIFY(!is_registered());
  press("Command_create");
  QVERIFY(keep_picture(*m_window, "built"));
  QVERIFY2(m_prompts.has(std::string("'") + map_name + "' installed successfully"), last_text());
  QVERIFY(is_registered());
  QVERIFY(m_prompts.unexpected.empty());
}

void TestInstalled::registered_map_is_listed_and_removed() {
  // A new start knows the tiles and the name.
  QVERIFY(m_session.workspace.tiles.size() >= 3);
  QCOMPARE(find<QLineEdit>(*m_window, "Text12")->text(), QString::fromUtf8(map_name));
  ui::installed_maps_list window(m_session.workspace, m_prompts, m_window->progress(), m_window.get());
  window.show();
  auto* list = find<QTreeWidget>(window, "Li");
  QCOMPARE(list->topLevelItemCount(), 1);
  QCOMPARE(list->topLevelItem(0)->text(0), QString::fromUtf8(map_name));
  QCOMPARE(list->topLevelItem(0)->text(1), QStringLiteral("6324"));
  QVERIFY(keep_picture(window, "installed-maps"));

  m_prompts.answers = {Answer::yes};
  QTest::mouseClick(find<QPushButton>(window, "maps_remove"), Qt::LeftButton);
  QVERIFY2(m_prompts.has("All files were removed."), last_text());
  QCOMPARE(list->topLevelItemCount(), 0);
  QVERIFY(!is_registered());
  QVERIFY(keep_picture(window, "no-maps"));
  QVERIFY(m_prompts.unexpected.empty());
}

void TestInstalled::cleanupTestCase() {
  if (m_window) m_window->close();
}

QTEST_MAIN(TestInstalled)
#include "test_installed.moc"
