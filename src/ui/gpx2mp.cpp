#include "ui/gpx2mp.hpp"

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

gpx2mp::gpx2mp(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : ConverterWindow(workspace, prompts,
                      {"gpx2mp", "gpx2mp_title", {"GPX files (*.gpx)", "*.gpx"}, ".gpx", "Not a gpx file."},
                      parent) {
  finish_window();
}

void gpx2mp::make_choices(QFormLayout& form) {
  m_types[0] = type_box(form, "Text1_0", "mp_line_type", MpKind::line, m_values.line_type);
  m_label = new QLineEdit(this);
  m_label->setObjectName(QStringLiteral("Text4"));
  m_binder.tooltip(m_label, "gpx2mp_label");
  auto* label = new QLabel(this);
  label->setBuddy(m_label);
  m_binder.caption(label, Section::labels, "mp_label");
  form.addRow(label, m_label);
  m_offers_name = caption(new QCheckBox(this), "Check1", "gpx2mp_name");
  m_polygon = caption(new QCheckBox(this), "polygon", "gpx2mp_polygon");
  m_points = caption(new QCheckBox(this), "Check3", "gpx2mp_points");
  for (QCheckBox* box : {m_offers_name, m_polygon, m_points})
    form.addRow(box);
  m_types[1] = type_box(form, "Text1_1", "gpx2mp_start", MpKind::point, m_values.start_type);
  m_types[2] = type_box(form, "Text1_2", "gpx2mp_half_way", MpKind::point, m_values.half_way_type);
  m_types[3] = type_box(form, "Text1_3", "gpx2mp_finish", MpKind::point, m_values.finish_type);
  const auto show_state = [this] {
    for (std::size_t i = 1; i < m_types.size(); ++i)
      m_types.at(i)->setEnabled(m_points->isChecked());
    preview_soon();
  };
  connect(m_points, &QCheckBox::toggled, this, show_state);
  connect(m_polygon, &QCheckBox::toggled, this, [this](bool is_polygon) {
    m_types[0]->set_kind(is_polygon ? MpKind::polygon : MpKind::line);
    preview_soon();
  });
  show_state();
}

SourceFormat gpx2mp::take_choices() {
  m_values = {m_types[0]->type(),    m_types[1]->type(),       m_types[2]->type(),
              m_types[3]->type(),    from_qt(m_label->text()), m_offers_name->isChecked(),
              m_points->isChecked(), m_polygon->isChecked()};
  return gpx_format(m_values);
}

void gpx2mp::show_choices() { m_types[0]->set_type(m_values.line_type); }

}  // namespace ferrowen::ui
