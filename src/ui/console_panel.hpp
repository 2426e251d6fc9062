// The output box: tool output as it comes, in portions that never hold up the window.
#pragma once

#include <QPlainTextEdit>
#include <QTimer>
#include <string>
#include <string_view>

namespace ferrowen::ui {

class ConsolePanel : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit ConsolePanel(QWidget* parent = nullptr);

  // Takes any number of pieces at any speed; they are shown a few times a second. When more comes than can be
  // read, the middle is left out and a line says so.
  void add(std::string_view text);
  // Shows everything that waits.
  void flush();
  void clear_all();

 private:
  void show_portion();
  void append_text(const QString& text);

  std::string m_waiting;
  bool m_left_out = false;
  QTimer m_timer;
};

}  // namespace ferrowen::ui
