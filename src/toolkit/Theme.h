#pragma once

#include <QColor>

class QPalette;

namespace tarvex {

// The look of all panels: one style, neutral surfaces and one accent, light or dark as the user's desktop is.
// Requires: the application object.
void applyTheme();

// True when the panels are light on dark.
bool isDark(const QPalette& palette);

// The colour that says where the user is and what can be done next.
QColor accentColour(bool dark);

}  // namespace tarvex
