// One external tool for a newcomer: its sign, what it is for, and how to get it while it is missing.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <functional>
#include <optional>

#include "ui/tool_sign.hpp"

namespace ferrowen::ui {

// A command that a person can read, select and copy with a button.
QWidget* copyable_command(QLabel*& command, TextBinder& binder, QWidget* parent);
// How a terminal of Debian installs these packages.
QString install_command(const QStringList& packages);

class ToolCard : public QFrame {
  Q_OBJECT
 public:
  using OpenLink = std::function<void(const std::string&)>;
  ToolCard(const ToolAdvice& advice, const OpenLink& open_link, TextBinder& binder,
           QWidget* parent = nullptr);

  void show_report(const ToolReport& report);
  void show_checking();
  [[nodiscard]] const ToolAdvice& advice() const { return m_advice; }

 private:
  QWidget* make_advice(const OpenLink& open_link);
  void show_texts();
  [[nodiscard]] QString state_text() const;

  const ToolAdvice& m_advice;
  TextBinder& m_binder;
  std::optional<ToolReport> m_report;
  ToolSign* m_sign;
  QLabel* m_name;
  QLabel* m_state;
  QLabel* m_purpose;
  QWidget* m_help = nullptr;  // how to get it
};

}  // namespace ferrowen::ui
