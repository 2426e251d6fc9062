#include "ui/kml2mp.hpp"

#include "base/text.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int shown_lines = 3;

}  // namespace

kml2mp::kml2mp(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : ConverterWindow(
          workspace, prompts,
          {"kml2mp", "kml2mp_title", {"Google Earth (*.kml)", "*.kml"}, ".kml", "Not a kml file."}, parent) {
  finish_window();
}

void kml2mp::make_choices(QFormLayout& form) {
  m_line_type = type_box(form, "Text1", "mp_line_type", MpKind::line, m_values.line_type);
  m_label = new QLineEdit(this);
  m_label->setObjectName(QStringLiteral("Text4"));
  m_binder.tooltip(m_label, "kml2mp_label");
  auto* label = new QLabel(this);
  label->setBuddy(m_label);
  m_binder.caption(label, Section::labels, "mp_label");
  form.addRow(label, m_label);
  m_points = caption(new QCheckBox(this), "Check2", "kml2mp_points");
  form.addRow(m_points);
  m_point_type = type_box(form, "Text3", "kml2mp_point_type", MpKind::point, m_values.point_type);
  m_coordinates = new QPlainTextEdit(this);
  m_coordinates->setObjectName(QStringLiteral("Text5"));
  m_coordinates->setReadOnly(true);
  m_coordinates->setTabChangesFocus(true);
  m_coordinates->setMaximumHeight(m_coordinates->fontMetrics().lineSpacing() * (shown_lines + 1));
  m_binder.tooltip(m_coordinates, "kml2mp_coordinates");
  auto* caption_label = new QLabel(this);
  caption_label->setBuddy(m_coordinates);
  m_binder.caption(caption_label, Section::labels, "kml2mp_coordinates");
  form.addRow(caption_label, m_coordinates);
  m_point_type->setEnabled(false);
  connect(m_points, &QCheckBox::toggled, this, [this](bool writes_points) {
    m_point_type->setEnabled(writes_points);
    preview_soon();
  });
}

SourceFormat kml2mp::take_choices() {
  m_values = {m_line_type->type(), m_point_type->type(), from_qt(m_label->text()), m_points->isChecked(), ""};
  return kml_format(m_values);
}

void kml2mp::show_choices() { m_line_type->set_type(m_values.line_type); }

void kml2mp::show_preview_text() {
  m_coordinates->setPlainText(shown_text(trim(m_values.converted_coordinates)));
}

}  // namespace ferrowen::ui
