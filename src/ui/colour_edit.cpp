#include "ui/colour_edit.hpp"

#include <QColorDialog>
#include <QHBoxLayout>
#include <QPainter>

#include "app/settings_check.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int colour_digits = 6;
constexpr QSize swatch_size(28, 16);

QColor colour_of(const QString& digits) {
  if (!is_colour_text(from_qt(digits)) || digits.size() > colour_digits) return {};
  return {QLatin1Char('#') + digits.rightJustified(colour_digits, QLatin1Char('0'))};
}

}  // namespace

ColourEdit::ColourEdit(TextBinder& binder, QWidget* parent)
    : QWidget(parent),
      m_binder(binder),
      m_line(new QLineEdit(this)),
      m_swatch(new QToolButton(this)),
      m_note(new QLabel(this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  m_line->setMaximumWidth(m_line->fontMetrics().averageCharWidth() * 16);
  m_line->setPlaceholderText(QStringLiteral("RRGGBB"));
  m_note->setWordWrap(true);
  m_note->hide();
  row->addWidget(m_line);
  row->addWidget(m_swatch);
  row->addWidget(m_note, 1);
  row->addStretch();
  setFocusProxy(m_line);
  m_swatch->setIconSize(swatch_size);
  m_swatch->setFocusPolicy(Qt::TabFocus);
  binder.name(m_swatch, Section::commands, "choose_colour");
  binder.custom([this] {
    m_swatch->setToolTip(m_binder.text(Section::commands, "choose_colour"));
    m_note->setText(m_binder.text(Section::labels, "colour_cleared"));
  });
  connect(m_swatch, &QToolButton::clicked, this, &ColourEdit::choose);
  connect(m_line, &QLineEdit::editingFinished, this, &ColourEdit::finish);
  connect(m_line, &QLineEdit::textEdited, this, &ColourEdit::changed);
  connect(m_line, &QLineEdit::textChanged, this, [this] {
    m_note->hide();
    show_swatch();
  });
  show_swatch();
}

void ColourEdit::set_text(const QString& text) { m_line->setText(text); }

void ColourEdit::finish() {
  if (text().isEmpty() || is_colour_text(from_qt(text()))) return;
  m_line->clear();
  m_note->show();
}

void ColourEdit::choose() {
  const QColor chosen =
      QColorDialog::getColor(colour_of(text()), this, m_binder.text(Section::commands, "choose_colour"));
  if (!chosen.isValid()) return;
  set_text(chosen.name().mid(1).toUpper());
  finish();
  Q_EMIT changed();
}

void ColourEdit::show_swatch() {
  const QColor colour = colour_of(text());
  QPixmap swatch(swatch_size * devicePixelRatioF());
  swatch.setDevicePixelRatio(devicePixelRatioF());
  swatch.fill(colour.isValid() ? colour : QColor(Qt::transparent));
  QPainter painter(&swatch);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(0, 0, swatch_size.width() - 1, swatch_size.height() - 1);
  if (!colour.isValid()) painter.drawLine(0, swatch_size.height() - 1, swatch_size.width() - 1, 0);
  m_swatch->setIcon(swatch);
}

}  // namespace ferrowen::ui
