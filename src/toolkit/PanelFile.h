#pragma once

#include <QString>

class QWidget;

namespace tarvex {

class Display;

// The widget that the file <name>.ui on the search path describes, owned by `parent` or, without one, by the caller.
// Null when the file isn't there, is damaged, or uses a class that nobody knows; `problem` then says so and names it.
QWidget* loadPanelFile(const Display& display, const QString& name, QWidget* parent, QString& problem);

}  // namespace tarvex
