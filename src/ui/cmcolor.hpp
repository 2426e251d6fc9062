// cmcolor: pick a colour for TYP work and read it as the six digits that TYP texts use.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include "ui/colour_cells.hpp"
#include "ui/colour_field.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by their public names:
//   palette    24 fixed colours      picker     hue and lightness      shades     darker and lighter ones
//   Text1      the six digits        Labelcol   the current colour     colour_copy, colour_close
class cmcolor : public QDialog {
  Q_OBJECT
 public:
  explicit cmcolor(const InterfaceTexts& texts, QWidget* parent = nullptr);

  // Six digits; anything else changes nothing.
  void set_text(const QString& digits);
  [[nodiscard]] QString text() const { return m_text->text(); }

 private:
  void make_controls();
  QLayout* make_entry();
  QLabel* labelled(QWidget* control, const char* key);
  void digits_typed(const QString& typed);
  void pick(const Rgb& colour);
  void show_colour(const Rgb& colour);

  TextBinder m_binder;
  ColourCells* m_palette;
  ColourField* m_field;
  ColourCells* m_shades;
  QLineEdit* m_text;
  QLabel* m_current;
};

}  // namespace ferrowen::ui
