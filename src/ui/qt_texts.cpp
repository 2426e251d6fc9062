#include "ui/qt_texts.hpp"

#include <QApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTranslator>

#include "app/language_file.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr const char* own_name = "qt_texts";

// The code in the file's name, or the name that the language gives itself in the file.
QLocale locale_of_file(const Workspace& workspace, const std::string& file) {
  const QLocale by_code = locale_of_language(QFileInfo(to_qt(file)).completeBaseName());
  if (by_code.language() != QLocale::C) return by_code;
  for (const Language& language : loadlanguages(workspace))
    if (language.file == file) return locale_of_language(to_qt(language.display_name));
  return QLocale::c();
}

}  // namespace

QLocale locale_of_language(const QString& name) {
  if (name.isEmpty()) return QLocale::c();
  QLocale regional = QLocale::c();
  for (const QLocale& locale :
       QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
    const QString native = locale.nativeLanguageName();
    const QString code = locale.name();
    for (const QString& one : {native, code, code.section(QLatin1Char('_'), 0, 0)})
      if (one.compare(name, Qt::CaseInsensitive) == 0) return locale;
    // Spanish calls itself by its countries.
    const bool begins_so = native.startsWith(name + QLatin1Char(' '), Qt::CaseInsensitive);
    if (begins_so && regional.language() == QLocale::C) regional = locale;
  }
  return regional;
}

void translate_qt(const Workspace& workspace) {
  const std::string& file = workspace.settings.language;
  auto* old = qApp->findChild<QTranslator*>(QLatin1String(own_name), Qt::FindDirectChildrenOnly);
  if (old != nullptr ? old->property("language") == to_qt(file) : file.empty()) return;
  delete old;  // takes its texts back
  if (file.empty()) return;
  auto* translator = new QTranslator(qApp);
  translator->setObjectName(QLatin1String(own_name));
  translator->setProperty("language", to_qt(file));
  const QLocale locale = locale_of_file(workspace, file);
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (locale.language() != QLocale::C &&
      translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), folder))
    QApplication::installTranslator(translator);
}

}  // namespace ferrowen::ui
