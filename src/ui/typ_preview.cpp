#include "ui/typ_preview.hpp"

#include <QHBoxLayout>

#include "styletools/typ_reader.hpp"
#include "ui/qt_text.hpp"
#include "ui/typ_pixmap.hpp"

namespace ferrowen::ui {

namespace {

constexpr int picture_width = 96, picture_height = 48;
constexpr int icon_width = 32, icon_height = 16;

QLabel* picture_label(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setFixedSize(picture_width, picture_height);
  label->setFrameShape(QFrame::StyledPanel);
  return label;
}

}  // namespace

TypPreview::TypPreview(TextBinder& binder, QWidget* parent)
    : QWidget(parent),
      m_binder(binder),
      m_day(picture_label("doctor_day", this)),
      m_night(picture_label("doctor_night", this)),
      m_label(new QLabel(this)) {
  m_label->setObjectName(QStringLiteral("doctor_label"));
  m_label->setTextFormat(Qt::PlainText);
  m_label->setWordWrap(true);
  m_binder.name(m_day, Section::labels, "doctor_day");
  m_binder.name(m_night, Section::labels, "doctor_night");
  m_binder.tooltip(m_day, "doctor_day");
  m_binder.tooltip(m_night, "doctor_night");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(m_day);
  row->addWidget(m_night);
  row->addWidget(m_label, 1);
}

void TypPreview::set_typ(const TypFile* typ) {
  m_typ = typ;
  m_icons.clear();
  show_type(RuleKind::polygons, "");
}

void TypPreview::show_type(RuleKind kind, const std::string& key) {
  const TypDefinition* definition =
      m_typ == nullptr || key.empty() ? nullptr : find_definition(*m_typ, kind, key);
  m_day->clear();
  m_night->clear();
  m_label->setText(to_qt(key));
  if (definition == nullptr) {
    if (m_typ != nullptr && !key.empty()) m_label->setText(missing_text(kind, key));
    return;
  }
  const QSize size(picture_width, picture_height);
  m_day->setPixmap(typ_pixmap(kind, *definition, TypLight::day, size, devicePixelRatioF()));
  m_night->setPixmap(typ_pixmap(kind, *definition, TypLight::night, size, devicePixelRatioF()));
  m_label->setText(to_qt(key) + QLatin1Char('\n') + to_qt(label_text(*definition)));
}

// A type that is not drawn is often one subtype beside those that are.
QString TypPreview::missing_text(RuleKind kind, const std::string& key) const {
  constexpr unsigned bits_of_subtype = 8;
  const unsigned type = to_qt(key).toUInt(nullptr, 16) >> bits_of_subtype;
  QStringList drawn;
  for (const std::uint8_t subtype : subtypes(*m_typ, kind, type))
    drawn << to_qt(type_key(type, subtype));
  QString text = m_binder.text(Section::labels, "doctor_not_drawn").arg(to_qt(key));
  if (drawn.isEmpty()) return text;
  return text + QLatin1Char('\n') +
         m_binder.text(Section::labels, "doctor_subtypes").arg(drawn.join(QStringLiteral(", ")));
}

QIcon TypPreview::icon(RuleKind kind, const std::string& key) {
  if (m_typ == nullptr) return {};
  const auto [at, is_new] = m_icons.try_emplace({kind, key});
  if (!is_new) return at->second;
  const TypDefinition* definition = find_definition(*m_typ, kind, key);
  if (definition != nullptr)
    at->second =
        QIcon(typ_pixmap(kind, *definition, TypLight::day, {icon_width, icon_height}, devicePixelRatioF()));
  return at->second;
}

}  // namespace ferrowen::ui
