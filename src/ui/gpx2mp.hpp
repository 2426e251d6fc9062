// gpx2mp: GPX routes and tracks to Polish MP, as a window.
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <array>

#include "mp/gpx2mp.hpp"
#include "ui/converter_window.hpp"

namespace ferrowen::ui {

// Controls, by their public names (the others stand at ConverterWindow):
//   Text1_0  type of the line or polygon   Text1_1 start   Text1_2 half way   Text1_3 finish
//   Text4    label of the line             Check1  offers the name found in the file
//   Check3   start, half-way and finish    polygon polygons instead of lines
class gpx2mp : public ConverterWindow {
  Q_OBJECT
 public:
  gpx2mp(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);

 protected:
  void make_choices(QFormLayout& form) override;
  SourceFormat take_choices() override;
  void show_choices() override;

 private:
  GpxChoices m_values;
  std::array<TypeBox*, 4> m_types{};
  QLineEdit* m_label = nullptr;
  QCheckBox *m_offers_name = nullptr, *m_points = nullptr, *m_polygon = nullptr;
};

}  // namespace ferrowen::ui
