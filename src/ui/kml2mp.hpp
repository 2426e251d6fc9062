// kml2mp: KML placemarks to Polish MP, as a window.
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "mp/kml2mp.hpp"
#include "ui/converter_window.hpp"

namespace ferrowen::ui {

// Controls, by their public names (the others stand at ConverterWindow):
//   Text1  type of the lines      Text3  type of the points     Text4  label of all objects
//   Check2 single positions are written as points               Text5  the coordinates that will be converted
class kml2mp : public ConverterWindow {
  Q_OBJECT
 public:
  kml2mp(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);

 protected:
  void make_choices(QFormLayout& form) override;
  SourceFormat take_choices() override;
  void show_choices() override;
  void show_preview_text() override;

 private:
  KmlChoices m_values;
  TypeBox *m_line_type = nullptr, *m_point_type = nullptr;
  QLineEdit* m_label = nullptr;
  QCheckBox* m_points = nullptr;
  QPlainTextEdit* m_coordinates = nullptr;
};

}  // namespace ferrowen::ui
