#include "ui/text_binder.hpp"

#include "app/said_texts.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

QString TextBinder::text(Section section, std::string_view key) const { return to_qt(m_texts(section, key)); }

QString TextBinder::said(std::string_view english) const {
  return shown_text(ferrowen::said(m_texts, english));
}

void TextBinder::custom(std::function<void()> setter) {
  setter();
  m_setters.push_back(std::move(setter));
}

void TextBinder::caption(QAbstractButton* button, Section section, std::string_view key) {
  custom([this, button, section, wanted = std::string(key)] {
    button->setText(caption_text(text(section, wanted)));
    button->setAccessibleName(text(section, wanted));
  });
}

void TextBinder::caption(QLabel* label, Section section, std::string_view key) {
  custom([this, label, section, wanted = std::string(key)] {
    label->setText(label->buddy() ? caption_text(text(section, wanted)) : text(section, wanted));
    if (label->buddy()) label->buddy()->setAccessibleName(text(section, wanted));
  });
}

void TextBinder::caption(QGroupBox* box, Section section, std::string_view key) {
  custom([this, box, section, wanted = std::string(key)] {
    box->setTitle(caption_text(text(section, wanted)));
    box->setAccessibleName(text(section, wanted));
  });
}

void TextBinder::caption(QAction* action, std::string_view key) {
  custom([this, action, wanted = std::string(key)] {
    action->setText(caption_text(text(Section::menus, wanted)));
  });
}

void TextBinder::caption(QMenu* menu, std::string_view key) {
  custom([this, menu, wanted = std::string(key)] {
    menu->setTitle(caption_text(text(Section::menus, wanted)));
  });
}

void TextBinder::tooltip(QWidget* widget, std::string_view key) {
  custom([this, widget, wanted = std::string(key)] {
    widget->setToolTip(text(Section::tooltips, wanted));
    widget->setAccessibleDescription(text(Section::tooltips, wanted));
  });
}

void TextBinder::name(QWidget* widget, Section section, std::string_view key) {
  custom([this, widget, section, wanted = std::string(key)] {
    widget->setAccessibleName(text(section, wanted));
  });
}

void TextBinder::apply() const {
  for (const std::function<void()>& setter : m_setters)
    setter();
}

namespace {

// Marks the first letter that is still free, preferring the beginnings of words. "&&" is a plain "&".
QString with_mnemonic(const QString& caption, QSet<QChar>& taken) {
  const auto try_at = [&](qsizetype index) -> QString {
    const QChar letter = caption.at(index).toLower();
    if (!letter.isLetterOrNumber() || taken.contains(letter)) return {};
    taken.insert(letter);
    QString marked = caption;
    return marked.insert(index, QLatin1Char('&'));
  };
  for (const bool word_starts : {true, false}) {
    for (qsizetype index = 0; index < caption.size(); ++index) {
      const bool starts = index == 0 || caption.at(index - 1).isSpace();
      if (starts != word_starts) continue;
      if (QString marked = try_at(index); !marked.isEmpty()) return marked;
    }
  }
  return caption;
}

template <typename Control>
void mark(Control* control, QSet<QChar>& taken) {
  const QString caption = control->text();
  if (!caption.isEmpty()) control->setText(with_mnemonic(caption, taken));
}

}  // namespace

QSet<QChar> assign_mnemonics(const QList<QAction*>& actions) {
  QSet<QChar> taken;
  for (QAction* action : actions) {
    if (!action->isSeparator()) mark(action, taken);
    if (action->menu()) assign_mnemonics(action->menu()->actions());
  }
  return taken;
}

QSet<QChar> assign_mnemonics(QWidget& window, QSet<QChar> taken) {
  for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
    if (!button->inherits("QToolButton")) mark(button, taken);
  }
  for (QLabel* label : window.findChildren<QLabel*>()) {
    if (label->buddy()) mark(label, taken);
  }
  return taken;
}

}  // namespace ferrowen::ui
