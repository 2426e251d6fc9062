// TYP drawings as pictures of the windows, on the ground that a map would have beneath them.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>

#include "styletools/typ_picture.hpp"

namespace ferrowen::ui {

// What stands for the land by day and by night.
QColor map_ground(TypLight light);
// The drawing in the middle of a picture of this size, in its own pixels; sharp on every screen.
QPixmap typ_pixmap(RuleKind kind, const TypDefinition& definition, TypLight light, QSize size,
                   qreal pixel_ratio = 1);

}  // namespace ferrowen::ui
