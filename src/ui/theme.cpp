#include "ui/theme.hpp"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOptionButton>
#ifdef Q_OS_WIN
#include <QSettings>
#else
#include <QProcessEnvironment>
#endif

namespace ferrowen::ui {

namespace {

constexpr int dark_below = 128;

QPalette dark_palette() {
  QPalette palette;
  const QColor window(45, 47, 51);
  const QColor base(30, 32, 36);
  const QColor text(232, 234, 237);
  const QColor disabled(128, 132, 138);
  const QColor highlight(66, 133, 214);
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::PlaceholderText, disabled);
  palette.setColor(QPalette::Button, QColor(58, 61, 66));
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::BrightText, Qt::red);
  palette.setColor(QPalette::Link, QColor(120, 170, 240));
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText})
    palette.setColor(QPalette::Disabled, role, disabled);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(80, 83, 88));
  return palette;
}

// The style draws the edge of an empty box or circle darker than the window, which nobody sees on dark
// ground.
class DarkStyle : public QProxyStyle {
 public:
  DarkStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool has_edge = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    if (!has_edge || button == nullptr) return QProxyStyle::drawPrimitive(element, option, painter, widget);
    QStyleOptionButton edged(*button);
    edged.palette.setColor(QPalette::Window, QColor(170, 174, 180));
    QProxyStyle::drawPrimitive(element, &edged, painter, widget);
  }
};

// What the desktop says where its own platform theme has not told Qt already.
bool desktop_is_dark() {
#ifdef Q_OS_WIN
  const QSettings personal(
      QStringLiteral(R"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize)"),
      QSettings::NativeFormat);
  return personal.value(QStringLiteral("AppsUseLightTheme"), 1).toInt() == 0;
#else
  return QProcessEnvironment::systemEnvironment()
      .value(QStringLiteral("GTK_THEME"))
      .endsWith(QStringLiteral("dark"), Qt::CaseInsensitive);
#endif
}

}  // namespace

void apply_theme(const QString& name) {
  const bool already_dark = QApplication::palette().color(QPalette::Window).lightness() < dark_below;
  const bool dark = name.isEmpty() ? desktop_is_dark() && !already_dark : name == QStringLiteral("dark");
  if (name.isEmpty() && !dark) return;
  // Only this style takes every colour from the palette.
  QApplication::setStyle(dark ? new DarkStyle : QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setPalette(dark ? dark_palette() : QApplication::style()->standardPalette());
}

}  // namespace ferrowen::ui
