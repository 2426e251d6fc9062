#include "ui/style_view.hpp"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>

#include "styletools/style_tags.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int highlight_opacity = 80;

QLabel* elided_label(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

StyleView::StyleView(TextBinder& binder, Prompts& prompts, QWidget* parent)
    : QWidget(parent),
      m_binder(binder),
      m_prompts(prompts),
      m_includes(elided_label("Label8", this)),
      m_line(elided_label("doctor_line", this)),
      m_text(new QPlainTextEdit(this)),
      m_search(new QLineEdit(this)) {
  m_text->setObjectName(QStringLiteral("Text1"));
  m_text->setReadOnly(true);
  m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
  m_text->setTabChangesFocus(true);
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_binder.name(m_text, Section::labels, "doctor_text");
  m_search->setObjectName(QStringLiteral("doctor_search"));
  m_search->setClearButtonEnabled(true);
  m_search->setPlaceholderText(m_binder.text(Section::labels, "doctor_search"));
  m_binder.name(m_search, Section::labels, "doctor_search");
  m_binder.tooltip(m_search, "doctor_search");
  auto* next = new QPushButton(this);
  next->setObjectName(QStringLiteral("doctor_search_next"));
  next->setAutoDefault(false);
  m_binder.caption(next, Section::commands, "search");
  auto* row = new QHBoxLayout;
  row->addWidget(m_search, 1);
  row->addWidget(next);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(row);
  column->addWidget(m_line);
  column->addWidget(m_text, 1);
  column->addWidget(m_includes);
  connect(next, &QPushButton::clicked, this, &StyleView::search);
  connect(m_search, &QLineEdit::returnPressed, this, &StyleView::search);
}

void StyleView::show_style(const StyleText& style) {
  m_style = style;
  m_found_word.clear();
  m_text->setPlainText(shown_text(style.text()));
  m_text->setExtraSelections({});
  m_includes->setText(style.files.size() > 1 ? to_qt(include_label(style)) : QString());
  m_includes->setVisible(style.files.size() > 1);
  m_line->setText(style.files.empty() ? QString() : to_qt(style.files.front().path));
}

void StyleView::show_place(const std::string& file, std::uint32_t line, std::uint32_t last_line) {
  const std::optional<std::size_t> first = line_at(m_style, file, line);
  const std::optional<std::size_t> last = line_at(m_style, file, std::max(line, last_line));
  if (first && last) highlight(*first, *last);
}

void StyleView::highlight(std::size_t line, std::size_t last) {
  const QTextBlock block = m_text->document()->findBlockByNumber(static_cast<int>(line));
  if (!block.isValid()) return;
  QTextEdit::ExtraSelection mark;
  mark.cursor = QTextCursor(block);
  const QTextBlock end = m_text->document()->findBlockByNumber(static_cast<int>(last));
  if (last > line && end.isValid())  // full width is drawn for each line of a selection
    mark.cursor.setPosition(end.position() + end.length() - 1, QTextCursor::KeepAnchor);
  QColor colour = palette().color(QPalette::Highlight);
  colour.setAlpha(highlight_opacity);
  mark.format.setBackground(colour);
  mark.format.setProperty(QTextFormat::FullWidthSelection, true);
  m_text->setExtraSelections({mark});
  m_text->setTextCursor(QTextCursor(block));
  m_text->centerCursor();
  const StylePlace place = m_style.lines[line].place;
  m_line->setText(to_qt(m_style.files[place.file].path) + QLatin1Char(':') + QString::number(place.line));
}

// "srch": from the line of the cursor on, or from the one behind it when that is the last hit; then from the
// top.
void StyleView::search() {
  const std::string word = from_qt(m_search->text());
  if (word.empty()) return m_prompts.tell("No text to search.");
  const auto line = static_cast<std::size_t>(m_text->textCursor().blockNumber());
  const bool is_last_hit = word == m_found_word && line == m_found_line;
  const std::optional<std::size_t> found = srch(m_style, word, is_last_hit ? line + 1 : line);
  if (found) {
    m_found_word = word;
    m_found_line = *found;
    return highlight(*found, *found);
  }
  m_line->setText(m_binder.text(Section::labels, "doctor_not_found").arg(m_search->text()));
}

}  // namespace ferrowen::ui
