#include <QDialogButtonBox>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include "base/files.hpp"
#include "ui/qt_text.hpp"
#include "ui/qt_texts.hpp"

using namespace ferrowen;
using namespace ferrowen::ui;

namespace {

// What a message box has on its button now.
QString cancel_text() {
  const QMessageBox box(QMessageBox::Question, QString(), QString(), QMessageBox::Cancel);
  return box.button(QMessageBox::Cancel)->text().remove(QLatin1Char('&'));
}

}  // namespace

class TestQtTexts : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  static void a_language_is_known_by_its_own_name_or_its_code_data();
  static void a_language_is_known_by_its_own_name_or_its_code();
  static void message_boxes_speak_the_chosen_language();
};

void TestQtTexts::a_language_is_known_by_its_own_name_or_its_code_data() {
  QTest::addColumn<QLocale::Language>("language");
  const std::pair<const char*, QLocale::Language> rows[] = {
      {"Deutsch", QLocale::German},   {"deutsch", QLocale::German},
      {"Français", QLocale::French},  {"Español", QLocale::Spanish},
      {"pt_BR", QLocale::Portuguese}, {"de", QLocale::German},
      {"Nederlands", QLocale::Dutch}, {"English", QLocale::English},
      {"my own", QLocale::C},         {"", QLocale::C},
  };
  for (const auto& [name, language] : rows)
    QTest::newRow(name) << language;
}

void TestQtTexts::a_language_is_known_by_its_own_name_or_its_code() {
  QFETCH(QLocale::Language, language);
  QCOMPARE(locale_of_language(QString::fromUtf8(QTest::currentDataTag())).language(), language);
}

void TestQtTexts::message_boxes_speak_the_chosen_language() {
  const QTemporaryDir folder;
  Workspace workspace;
  workspace.settings.languages_folder = from_qt(folder.path());
  for (const char* name : {"Deutsch", "Gibberish"}) {
    const QString path = folder.filePath(QLatin1String(name) + QLatin1String(" 1.m5l"));
    QVERIFY(safe_write(from_qt(path), std::string("<language>\nmlanguage=") + name + "\n").ok());
  }
  const bool installed =
      QFile::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + QLatin1String("/qtbase_de.qm"));
  const QString german = QString::fromUtf8(installed ? "Abbrechen" : "Cancel");
  const std::pair<const char*, QString> choices[] = {{"Deutsch 1.m5l", german},
                                                     {"Gibberish 1.m5l", QStringLiteral("Cancel")},
                                                     {"Deutsch 1.m5l", german},
                                                     {"", QStringLiteral("Cancel")}};
  for (const auto& [file, text] : choices) {
    workspace.settings.language = file;
    translate_qt(workspace);
    QCOMPARE(cancel_text(), text);
  }
  if (!installed) QSKIP("Qt's translations are not installed.");
}

QTEST_MAIN(TestQtTexts)
#include "test_qt_texts.moc"
