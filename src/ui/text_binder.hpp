// Puts the interface texts on the controls of one window, and puts them there again when the language
// changes.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QSet>
#include <functional>
#include <string>
#include <vector>

#include "app/interface_texts.hpp"

namespace ferrowen::ui {

class TextBinder {
 public:
  explicit TextBinder(const InterfaceTexts& texts) : m_texts(texts) {}

  [[nodiscard]] QString text(Section section, std::string_view key) const;
  // A line of the core, which speaks English, as the person reads it.
  [[nodiscard]] QString said(std::string_view english) const;
  // Each sets the text now, and again at every apply(). The control must outlive the binder.
  void caption(QAbstractButton* button, Section section, std::string_view key);
  void caption(QLabel* label, Section section, std::string_view key);
  void caption(QGroupBox* box, Section section, std::string_view key);
  void caption(QAction* action, std::string_view key);  // menus
  void caption(QMenu* menu, std::string_view key);      // menus
  // Tooltip; it is the accessible description too.
  void tooltip(QWidget* widget, std::string_view key);
  // What a screen reader calls a control without a caption of its own.
  void name(QWidget* widget, Section section, std::string_view key);
  void custom(std::function<void()> setter);
  void apply() const;

 private:
  const InterfaceTexts& m_texts;
  std::vector<std::function<void()>> m_setters;
};

// Gives every button, check box, labelled field and menu entry below a window a letter for the keyboard that
// no other of the same window has, as far as there are letters. The texts themselves need no marks for it.
// Letters that are `taken` are left alone; all that are taken afterwards come back, for pages of one window.
QSet<QChar> assign_mnemonics(QWidget& window, QSet<QChar> taken = {});
QSet<QChar> assign_mnemonics(const QList<QAction*>& actions);

}  // namespace ferrowen::ui
