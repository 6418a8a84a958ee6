#pragma once

#include <QString>

class QComboBox;

namespace tarvex {

// Names may be as long as users like; windows and lines of text are not.

// The name as a title or a line of text has room for it: one of more characters without its middle.
QString shortened(const QString& name, int most = 48);
// Adds an entry to a list, whose tooltip has the whole name.
void addName(QComboBox& list, const QString& name);

}  // namespace tarvex
