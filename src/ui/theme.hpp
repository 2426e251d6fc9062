// Light and dark: the desktop's choice, or one of the two by name.
#pragma once

#include <QString>

namespace ferrowen::ui {

// "light", "dark", or "" for what the desktop asks for.
void apply_theme(const QString& name);

}  // namespace ferrowen::ui
