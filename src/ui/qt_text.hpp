// Between our UTF-8 texts and Qt's strings.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace ferrowen::ui {

inline QString to_qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string from_qt(const QString& text) { return text.toStdString(); }

// A message of the core, with the line ends of Qt's controls.
inline QString shown_text(std::string_view text) {
  return to_qt(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

// A path as buttons and titles show it: "&" stands for itself.
inline QString caption_text(QString text) { return text.replace(QLatin1Char('&'), QStringLiteral("&&")); }

}  // namespace ferrowen::ui
