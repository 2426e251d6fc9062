#include "ui/typ_pixmap.hpp"

#include <QImage>
#include <QPainter>

namespace ferrowen::ui {

QColor map_ground(TypLight light) {
  return light == TypLight::day ? QColor(0xF4, 0xF2, 0xEC) : QColor(0x30, 0x34, 0x3C);
}

QPixmap typ_pixmap(RuleKind kind, const TypDefinition& definition, TypLight light, QSize size,
                   qreal pixel_ratio) {
  const TypPicture picture = drawbmp(kind, definition, light, size.width(), size.height());
  const QImage image(picture.pixels.data(), picture.width, picture.height, picture.width * 4,
                     QImage::Format_RGBA8888);
  QPixmap pixmap(size * pixel_ratio);
  pixmap.setDevicePixelRatio(pixel_ratio);
  pixmap.fill(map_ground(light));
  QPainter painter(&pixmap);
  painter.drawImage(QRect(QPoint(0, 0), size), image);
  return pixmap;
}

}  // namespace ferrowen::ui
