#include "ui/options_view.hpp"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QToolTip>
#include <algorithm>
#include <span>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int dark_below = 128;

struct Colours {
  QColor comment, mark, name, value, fault, ignored;
};

Colours colours_on(const QPalette& palette) {
  const bool dark = palette.color(QPalette::Base).lightness() < dark_below;
  const QColor ignored = palette.color(QPalette::PlaceholderText);
  if (dark)
    return {{130, 185, 130}, {205, 150, 230}, {120, 180, 255}, {235, 190, 120}, {255, 110, 100}, ignored};
  return {{60, 115, 60}, {130, 40, 150}, {20, 80, 170}, {140, 75, 0}, {210, 30, 30}, ignored};
}

// Place in a line counted in bytes, as Qt counts it.
int qt_place(const QString& line, std::size_t bytes) {
  return static_cast<int>(QString::fromUtf8(line.toUtf8().left(static_cast<qsizetype>(bytes))).size());
}

template <typename Item>
std::span<const Item> items_of_line(const std::vector<Item>& items, std::size_t line) {
  const auto before = [](const Item& item, std::size_t wanted) { return item.range.line < wanted; };
  const auto begin = std::lower_bound(items.begin(), items.end(), line, before);
  const auto end = std::lower_bound(begin, items.end(), line + 1, before);
  return std::span<const Item>(items).subspan(static_cast<std::size_t>(begin - items.begin()),
                                              static_cast<std::size_t>(end - begin));
}

}  // namespace

class OptionColours : public QSyntaxHighlighter {
 public:
  OptionColours(QTextDocument* document, const OptionsLint& lint)
      : QSyntaxHighlighter(document), m_lint(lint) {}
  void use(const QPalette& palette) {
    m_colours = colours_on(palette);
    rehighlight();
  }

 protected:
  void highlightBlock(const QString& text) override {
    const auto line = static_cast<std::size_t>(currentBlock().blockNumber());
    for (const OptionSpan& span : items_of_line(m_lint.spans, line)) {
      QTextCharFormat format;
      format.setForeground(colour_of(span.part));
      if (span.part == OptionPart::block_mark) format.setFontWeight(QFont::Bold);
      if (span.part == OptionPart::comment) format.setFontItalic(true);
      apply(text, span.range, format);
    }
    for (const OptionFinding& finding : items_of_line(m_lint.findings, line))
      underline(text, finding.range);
  }

 private:
  [[nodiscard]] QColor colour_of(OptionPart part) const {
    switch (part) {
      case OptionPart::comment:
        return m_colours.comment;
      case OptionPart::block_mark:
        return m_colours.mark;
      case OptionPart::name:
        return m_colours.name;
      case OptionPart::value:
      case OptionPart::word:
        return m_colours.value;
      case OptionPart::ignored:
        break;
    }
    return m_colours.ignored;
  }

  void apply(const QString& text, TextRange range, const QTextCharFormat& format) {
    const int begin = qt_place(text, range.begin);
    setFormat(begin, qt_place(text, range.begin + range.length) - begin, format);
  }

  // Keeps the colour of the part.
  void underline(const QString& text, TextRange range) {
    const int end = qt_place(text, range.begin + range.length);
    for (int place = qt_place(text, range.begin); place < end; ++place) {
      QTextCharFormat marked = format(place);
      marked.setUnderlineStyle(QTextCharFormat::WaveUnderline);
      marked.setUnderlineColor(m_colours.fault);
      setFormat(place, 1, marked);
    }
  }

  const OptionsLint& m_lint;
  Colours m_colours;
};

OptionsView::OptionsView(OptionTool tool, const TextBinder& binder, QWidget* parent)
    : QPlainTextEdit(parent),
      m_tool(tool),
      m_binder(binder),
      m_colours(new OptionColours(document(), m_lint)) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTabChangesFocus(true);
  m_colours->use(palette());
  connect(this, &QPlainTextEdit::textChanged, this, [this] {
    // Colouring counts as a change too.
    if (toPlainText() != m_linted_text) lint_again();
  });
}

void OptionsView::set_known(std::vector<CatalogueOption> known) {
  m_known = std::move(known);
  lint_again();
}

void OptionsView::lint_again() {
  m_linted_text = toPlainText();
  m_lint = lint_options(from_qt(m_linted_text), m_tool, m_known);
  m_colours->rehighlight();
  Q_EMIT linted();
}

void OptionsView::replace_text(const QString& text) {
  QTextCursor all(document());
  all.select(QTextCursor::Document);
  all.insertText(text);
  moveCursor(QTextCursor::Start);
}

void OptionsView::insert(const CatalogueOption& option, bool in_dem_block) {
  const OptionInsertion insertion = option_insertion(
      from_qt(toPlainText()), static_cast<std::size_t>(textCursor().blockNumber()), option, in_dem_block);
  QStringList lines;
  for (const std::string& line : insertion.lines)
    lines << to_qt(line);
  const QString text = lines.join(QLatin1Char('\n'));
  QTextCursor cursor(document());
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(insertion.line));
  cursor.setPosition(block.isValid() ? block.position() : document()->characterCount() - 1);
  if (insertion.instead) {
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.insertText(text);
  } else {
    cursor.insertText(block.isValid() ? text + QLatin1Char('\n') : QLatin1Char('\n') + text);
  }
  select(insertion.selected);
}

QTextCursor OptionsView::cursor_at(TextRange range) const {
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(range.line));
  QTextCursor cursor(document());
  cursor.setPosition(block.position() + qt_place(block.text(), range.begin));
  cursor.setPosition(block.position() + qt_place(block.text(), range.begin + range.length),
                     QTextCursor::KeepAnchor);
  return cursor;
}

void OptionsView::select(TextRange range) {
  setTextCursor(cursor_at(range));
  centerCursor();
  setFocus();
}

void OptionsView::toggle_comments() {
  QTextCursor cursor = textCursor();
  const QTextBlock first = document()->findBlock(cursor.selectionStart());
  QTextBlock last = document()->findBlock(cursor.selectionEnd());
  // A selection that ends in front of a line does not mean that line.
  if (last != first && cursor.selectionEnd() == last.position()) last = last.previous();
  std::vector<std::string> lines;
  for (QTextBlock block = first; block.isValid() && block.blockNumber() <= last.blockNumber();
       block = block.next())
    lines.push_back(from_qt(block.text()));
  QStringList toggled;
  for (const std::string& line : toggled_comments(lines))
    toggled << to_qt(line);
  const int begin = first.position();
  const QString text = toggled.join(QLatin1Char('\n'));
  QTextCursor change(document());
  change.setPosition(begin);
  change.setPosition(last.position() + last.length() - 1, QTextCursor::KeepAnchor);
  change.insertText(text);
  cursor.setPosition(begin);
  if (lines.size() > 1) cursor.setPosition(begin + static_cast<int>(text.size()), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
  setFocus();
}

void OptionsView::show_next_finding() {
  const std::vector<OptionFinding>& findings = m_lint.findings;
  if (findings.empty()) return;
  const int place = textCursor().selectionStart();
  const auto next = std::find_if(findings.begin(), findings.end(), [&](const OptionFinding& finding) {
    return cursor_at(finding.range).selectionStart() > place;
  });
  select(next == findings.end() ? findings.front().range : next->range);
}

QString OptionsView::explanation(const OptionFinding& finding) const {
  const QString subject = to_qt(finding.subject);
  QString said;
  switch (finding.fault) {
    case OptionFault::unknown:
      said = m_binder.text(Section::labels, "option_unknown").arg(subject);
      break;
    case OptionFault::repeated:
      said = m_binder.text(Section::labels, "option_repeated")
                 .arg(subject, QString::number(finding.other_line + 1));
      break;
    case OptionFault::placeholder:
      said = m_binder.text(Section::labels, "option_placeholder").arg(subject);
      break;
    case OptionFault::no_dashes:
      said = m_binder.text(Section::labels, "option_no_dashes").arg(subject);
      break;
  }
  return m_binder.text(Section::labels, "option_line").arg(QString::number(finding.range.line + 1), said);
}

const OptionFinding* OptionsView::finding_at_cursor() const {
  const auto line = static_cast<std::size_t>(textCursor().blockNumber());
  const auto found = items_of_line(m_lint.findings, line);
  return found.empty() ? nullptr : &found.front();
}

QString OptionsView::tip_at(QPoint place) const {
  const QTextCursor cursor = cursorForPosition(place);
  const auto line = static_cast<std::size_t>(cursor.blockNumber());
  const QString before = cursor.block().text().left(cursor.positionInBlock());
  const auto bytes = static_cast<std::size_t>(before.toUtf8().size());
  QStringList tips;
  for (const OptionFinding& finding : items_of_line(m_lint.findings, line)) {
    if (finding.range.holds(line, bytes)) tips << explanation(finding);
  }
  return tips.join(QLatin1Char('\n'));
}

bool OptionsView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QPlainTextEdit::event(event);
  auto* help = static_cast<QHelpEvent*>(event);
  const QString tip = tip_at(viewport()->mapFrom(this, help->pos()));
  QToolTip::showText(help->globalPos(), tip.isEmpty() ? toolTip() : tip, this);
  return true;
}

void OptionsView::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && m_colours != nullptr) m_colours->use(palette());
}

void OptionsView::keyPressEvent(QKeyEvent* event) {
  // A soft line break would be a line for the tool and none for the editor.
  if (event->key() == Qt::Key_Return && event->modifiers() == Qt::ShiftModifier) {
    textCursor().insertBlock();
    return;
  }
  QPlainTextEdit::keyPressEvent(event);
}

}  // namespace ferrowen::ui
