// The text of a rule file with its includes, to read: a rule of it highlighted, a word to search.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWidget>

#include "base/prompts.hpp"
#include "styletools/style_text.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name: Text1  the style text   Label8  included files
//   doctor_search, doctor_search_next  search   doctor_line  file and line of the highlighted rule
class StyleView : public QWidget {
  Q_OBJECT
 public:
  StyleView(TextBinder& binder, Prompts& prompts, QWidget* parent = nullptr);

  void show_style(const StyleText& style);
  // The rule at a place; nothing is changed when the text does not hold it.
  // All lines of a rule from one line of the file to another.
  void show_place(const std::string& file, std::uint32_t line, std::uint32_t last_line);

 private:
  void search();
  void highlight(std::size_t line, std::size_t last);

  TextBinder& m_binder;
  Prompts& m_prompts;
  StyleText m_style;
  std::string m_found_word;  // of the last hit; "": there was none in this text
  std::size_t m_found_line = 0;
  QLabel *m_includes, *m_line;
  QPlainTextEdit* m_text;
  QLineEdit* m_search;
};

}  // namespace ferrowen::ui
