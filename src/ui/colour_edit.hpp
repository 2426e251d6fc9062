// A colour as hexadecimal digits, with a swatch that shows it and lets a person choose another one.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QWidget>

#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class ColourEdit : public QWidget {
  Q_OBJECT
 public:
  explicit ColourEdit(TextBinder& binder, QWidget* parent = nullptr);

  [[nodiscard]] QString text() const { return m_line->text().trimmed(); }
  void set_text(const QString& text);
  [[nodiscard]] QLineEdit* line() const { return m_line; }

 Q_SIGNALS:
  void changed();  // by the person

 private:
  void finish();
  void choose();
  void show_swatch();

  TextBinder& m_binder;
  QLineEdit* m_line;
  QToolButton* m_swatch;
  QLabel* m_note;  // says why the line has become empty
};

}  // namespace ferrowen::ui
