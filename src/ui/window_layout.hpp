// Sizes and places of the windows, kept in one field of the settings: a line per window part, its name, "="
// and the bytes as base64.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include "app/settings.hpp"

namespace ferrowen::ui {

class WindowLayout {
 public:
  explicit WindowLayout(const Settings& settings);
  [[nodiscard]] QByteArray value(const QString& name) const { return m_values.value(name); }
  void set(const QString& name, const QByteArray& bytes) { m_values.insert(name, bytes); }
  void store(Settings& settings) const;

 private:
  QMap<QString, QByteArray> m_values;
};

}  // namespace ferrowen::ui
