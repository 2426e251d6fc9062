// How the windows show what is known of an external tool: a round sign and one line of words.
#pragma once

#include <QWidget>

#include "app/tool_states.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Drawn, not written: it looks the same in every font, theme and size.
class ToolSign : public QWidget {
  Q_OBJECT
 public:
  enum class Kind : unsigned char { unknown, found, optional, attention };
  explicit ToolSign(QWidget* parent = nullptr);

  void set_kind(Kind kind);
  void set_report(const ToolReport& report);
  [[nodiscard]] Kind kind() const { return m_kind; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Kind m_kind = Kind::unknown;
};

// The version of a tool that is there, or what is wrong with it.
QString tool_state_text(const ToolReport& report, const TextBinder& binder);

}  // namespace ferrowen::ui
