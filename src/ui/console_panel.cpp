#include "ui/console_panel.hpp"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextCursor>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int interval_milliseconds = 50;
constexpr int most_lines = 10000;              // kept in the box
constexpr std::size_t portion_bytes = 16384;   // shown at a time
constexpr std::size_t most_waiting = 1 << 18;  // beyond this the oldest are left out

}  // namespace

ConsolePanel::ConsolePanel(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setMaximumBlockCount(most_lines);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTabChangesFocus(true);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_timer.setInterval(interval_milliseconds);
  connect(&m_timer, &QTimer::timeout, this, &ConsolePanel::show_portion);
}

void ConsolePanel::add(std::string_view text) {
  m_waiting += text;
  if (m_waiting.size() > 2 * most_waiting) {
    m_waiting.erase(0, m_waiting.find('\n', m_waiting.size() - most_waiting) + 1);
    m_left_out = true;
  }
  if (!m_timer.isActive()) m_timer.start();
}

void ConsolePanel::show_portion() {
  if (m_waiting.empty()) {
    m_timer.stop();
    return;
  }
  std::size_t end = m_waiting.size();
  if (end > portion_bytes) {
    // Whole lines, so that no character is cut in two; a single endless line is cut between characters.
    end = m_waiting.rfind('\n', portion_bytes) + 1;
    if (end == 0) end = portion_bytes;
    while (end < m_waiting.size() && (static_cast<unsigned char>(m_waiting[end]) & 0xC0) == 0x80)
      ++end;
  }
  if (m_left_out) append_text(QStringLiteral("\n[...]\n"));
  m_left_out = false;
  append_text(to_qt(std::string_view(m_waiting).substr(0, end)));
  m_waiting.erase(0, end);
}

void ConsolePanel::append_text(const QString& text) {
  QString shown = text;
  shown.remove(QLatin1Char('\r'));
  QScrollBar* bar = verticalScrollBar();
  const bool at_end = bar->value() >= bar->maximum() - 1;
  QTextCursor cursor(document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(shown);
  // Who has scrolled up to read is left alone.
  if (at_end) bar->setValue(bar->maximum());
}

void ConsolePanel::flush() {
  while (!m_waiting.empty())
    show_portion();
}

void ConsolePanel::clear_all() {
  m_waiting.clear();
  m_left_out = false;
  clear();
}

}  // namespace ferrowen::ui
