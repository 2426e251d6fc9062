// The log tab: mkgmap's log or the tools' error output, with warnings and errors in colour.
#pragma once

#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWidget>

#include "app/log_view.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class LogPanel : public QWidget {
  Q_OBJECT
 public:
  LogPanel(const Workspace& workspace, TextBinder& binder, QWidget* parent = nullptr);

  // Loads one of the two files; a missing one shows the reason instead.
  void show_log(LogFile which);

 Q_SIGNALS:
  void open_requested(const QString& path);

 protected:
  // What lies there may have changed since the tab was last seen.
  void showEvent(QShowEvent* event) override;

 private:
  void load();
  void show_lines(const std::vector<LogLine>& lines);
  [[nodiscard]] LogFile chosen() const;

  const Workspace& m_workspace;
  QComboBox* m_file;
  QPlainTextEdit* m_text;
};

// Colours that can be read on the palette's base colour.
QColor error_colour(const QPalette& palette);
QColor warning_colour(const QPalette& palette);

}  // namespace ferrowen::ui
