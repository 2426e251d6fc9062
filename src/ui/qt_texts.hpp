// Qt's own texts - the buttons of message boxes, the menus of text fields, its file dialogs - in the language
// of the windows.
#pragma once

#include <QLocale>
#include <QString>

#include "app/workspace.hpp"

namespace ferrowen::ui {

// The language that calls itself so ("Deutsch"), or whose code it is ("de", "pt_BR"); C for none.
QLocale locale_of_language(const QString& name);

// Qt's texts for the language of the settings: English for none, for one that Qt does not know, and where
// Qt's translations are not installed.
void translate_qt(const Workspace& workspace);

}  // namespace ferrowen::ui
