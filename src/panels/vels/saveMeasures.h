#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace tarvex {

class TextWriter;

// "Save table" of the panels of results: asks for a file, which `write` fills. What was written, for the message line;
// empty when the user went no further, and when it failed, which is told over `parent`.
QString saveMeasures(QWidget* parent, const std::function<void(TextWriter&)>& write);

}  // namespace tarvex
