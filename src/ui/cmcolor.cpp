#include "ui/cmcolor.hpp"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int palette_columns = 4;
constexpr int swatch_height = 40;
constexpr const char* first_colour = "1CA9DE";

}  // namespace

cmcolor::cmcolor(const InterfaceTexts& texts, QWidget* parent)
    : QDialog(parent),
      m_binder(texts),
      m_palette(new ColourCells(palette_columns, this)),
      m_field(new ColourField(this)),
      m_shades(new ColourCells(static_cast<int>(shade_count), this)),
      m_text(new QLineEdit(this)),
      m_current(new QLabel(this)) {
  setObjectName(QStringLiteral("cmcolor"));
  setWindowTitle(m_binder.text(Section::labels, "colour_title"));
  make_controls();
  const auto& cells = ferrowen::palette();
  m_palette->set_colours({cells.begin(), cells.end()});
  connect(m_palette, &ColourCells::picked, this, &cmcolor::pick);
  connect(m_field, &ColourField::picked, this, &cmcolor::pick);
  connect(m_shades, &ColourCells::picked, this, &cmcolor::pick);
  connect(m_text, &QLineEdit::textEdited, this, &cmcolor::digits_typed);
  set_text(QString::fromUtf8(first_colour));
  m_text->setFocus();
  m_text->selectAll();
}

void cmcolor::make_controls() {
  m_palette->setObjectName(QStringLiteral("palette"));
  m_field->setObjectName(QStringLiteral("picker"));
  m_shades->setObjectName(QStringLiteral("shades"));
  auto* left = new QVBoxLayout;
  left->addWidget(labelled(m_palette, "colour_palette"));
  left->addWidget(m_palette);
  left->addStretch();
  auto* right = new QVBoxLayout;
  right->addWidget(labelled(m_field, "colour_picker"));
  right->addWidget(m_field, 1);
  auto* top = new QHBoxLayout;
  top->addLayout(left);
  top->addLayout(right, 1);
  auto* buttons = new QDialogButtonBox(this);
  QPushButton* copy = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  copy->setObjectName(QStringLiteral("colour_copy"));
  close->setObjectName(QStringLiteral("colour_close"));
  m_binder.caption(copy, Section::commands, "copy");
  m_binder.tooltip(copy, "colour_copy");
  m_binder.caption(close, Section::commands, "close");
  for (QPushButton* button : {copy, close})
    button->setAutoDefault(false);  // Enter behind the sixth digit closes nothing
  auto* column = new QVBoxLayout(this);
  column->addLayout(top, 1);
  column->addWidget(labelled(m_shades, "colour_shades"));
  column->addWidget(m_shades);
  column->addLayout(make_entry());
  column->addWidget(buttons);
  connect(copy, &QPushButton::clicked, this, [this] { QGuiApplication::clipboard()->setText(text()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  assign_mnemonics(*this);
}

QLayout* cmcolor::make_entry() {
  m_text->setObjectName(QStringLiteral("Text1"));
  m_text->setPlaceholderText(QStringLiteral("RRGGBB"));
  m_text->setMaximumWidth(m_text->fontMetrics().averageCharWidth() * 14);
  m_binder.tooltip(m_text, "colour_text");
  m_current->setObjectName(QStringLiteral("Labelcol"));
  m_current->setMinimumHeight(swatch_height);
  m_current->setFrameShape(QFrame::StyledPanel);
  m_current->setAutoFillBackground(true);
  m_binder.name(m_current, Section::labels, "colour_current");
  auto* row = new QHBoxLayout;
  row->addWidget(labelled(m_text, "colour_text"));
  row->addWidget(m_text);
  row->addWidget(m_current, 1);
  return row;
}

QLabel* cmcolor::labelled(QWidget* control, const char* key) {
  auto* label = new QLabel(this);
  label->setBuddy(control);
  m_binder.caption(label, Section::labels, key);
  m_binder.name(control, Section::labels, key);
  return label;
}

void cmcolor::set_text(const QString& digits) {
  if (const auto colour = rgb_of_text(from_qt(digits))) pick(*colour);
}

// Keys that are no hexadecimal digits are dropped; the cursor stays behind what was typed.
void cmcolor::digits_typed(const QString& typed) {
  const QString accepted = to_qt(accepted_digits(from_qt(typed)));
  const auto before = accepted_digits(from_qt(typed.left(m_text->cursorPosition())));
  if (accepted != typed) {
    m_text->setText(accepted);
    m_text->setCursorPosition(static_cast<int>(before.size()));
  }
  if (const auto colour = rgb_of_text(from_qt(accepted))) show_colour(*colour);
}

void cmcolor::pick(const Rgb& colour) {
  m_text->setText(to_qt(rgb_text(colour)));
  show_colour(colour);
}

void cmcolor::show_colour(const Rgb& colour) {
  QPalette shown = m_current->palette();
  shown.setColor(QPalette::Window, QColor(colour.red, colour.green, colour.blue));
  m_current->setPalette(shown);
  const auto row = shades(colour);
  m_shades->set_colours({row.begin(), row.end()});
  m_shades->mark(shade_count / 2);
  const FoundColour found = find_color(colour);
  // One colour stands twice: the cell that was picked stays marked.
  const auto marked = m_palette->marked();
  if (!marked || ferrowen::palette().at(*marked) != colour) m_palette->mark(found.cell);
  m_field->show_position(found.position);
}

}  // namespace ferrowen::ui
