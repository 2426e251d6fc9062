#include "ui/tool_sign.hpp"

#include <QPainter>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int diameter = 18;

// Middle tones, to be seen on light and on dark ground.
QColor ground(ToolSign::Kind kind) {
  switch (kind) {
    case ToolSign::Kind::found:
      return {0x2e, 0x9e, 0x4f};
    case ToolSign::Kind::attention:
      return {0xc9, 0x7a, 0x00};
    default:
      return {0x80, 0x80, 0x80};
  }
}

}  // namespace

ToolSign::ToolSign(QWidget* parent) : QWidget(parent) { setFixedSize(diameter, diameter); }

void ToolSign::set_kind(Kind kind) {
  m_kind = kind;
  update();
}

void ToolSign::set_report(const ToolReport& report) {
  if (report.state == ToolState::found)
    set_kind(report.problem.empty() ? Kind::found : Kind::attention);
  else if (report.state != ToolState::wrong_program && !report.advice->essential)
    set_kind(Kind::optional);  // a usual place where it is not, or none: nothing is amiss
  else
    set_kind(Kind::attention);
}

void ToolSign::paintEvent(QPaintEvent* /*event*/) {
  if (m_kind == Kind::unknown) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground(m_kind));
  painter.drawEllipse(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
  painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  if (m_kind == Kind::found) {
    painter.drawPolyline(QPolygonF({{5.2, 9.4}, {8.0, 12.2}, {12.9, 6.4}}));
  } else if (m_kind == Kind::attention) {
    painter.drawLine(QPointF(9, 4.8), QPointF(9, 9.6));
    painter.drawPoint(QPointF(9, 13));
  } else {
    painter.drawLine(QPointF(5.8, 9), QPointF(12.2, 9));
  }
}

QString tool_state_text(const ToolReport& report, const TextBinder& binder) {
  if (report.state == ToolState::found && report.problem.empty())
    return report.version.empty() ? binder.text(Section::labels, "tool_found") : to_qt(report.version);
  if (report.state == ToolState::not_set) return binder.text(Section::labels, "not_set");
  if (report.state == ToolState::missing) return binder.text(Section::labels, "folder_not_there");
  if (report.problem.empty()) return binder.text(Section::labels, "tool_wrong");
  return binder.said(report.problem);
}

}  // namespace ferrowen::ui
