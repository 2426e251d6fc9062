#include "ui/window_progress.hpp"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

#include "app/said_texts.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int bar_steps = 1000;
constexpr int seconds_per_minute = 60;
constexpr int longest_pump_milliseconds = 20;

}  // namespace

void WindowProgress::begin() {
  m_stop = false;
  m_command.clear();
  m_controls.bar->setRange(0, bar_steps);
  m_controls.bar->setValue(0);
  elapsed(0);
}

void WindowProgress::fraction(double done) {
  if (!std::isfinite(done)) return;
  m_controls.bar->setValue(static_cast<int>(std::lround(std::clamp(done, 0.0, 1.0) * bar_steps)));
}

void WindowProgress::status(std::string_view text) {
  m_controls.status->setText(shown_text(said(m_texts, text)));
}

void WindowProgress::elapsed(double seconds) {
  const int whole = std::max(0, static_cast<int>(seconds));
  const QString text = QStringLiteral("%1:%2")
                           .arg(whole / seconds_per_minute, 2, 10, QLatin1Char('0'))
                           .arg(whole % seconds_per_minute, 2, 10, QLatin1Char('0'));
  if (m_controls.elapsed->text() != text) m_controls.elapsed->setText(text);
}

void WindowProgress::output(std::string_view text) {
  if (m_controls.console != nullptr) m_controls.console->add(text);
}

void WindowProgress::command(std::string_view text) {
  m_command = text;
  if (m_controls.command != nullptr) m_controls.command->setPlainText(shown_text(text));
}

void WindowProgress::process_events() {
  QCoreApplication::processEvents(QEventLoop::AllEvents, longest_pump_milliseconds);
}

}  // namespace ferrowen::ui
