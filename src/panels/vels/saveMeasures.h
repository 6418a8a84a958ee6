#pragma once

#include <functional>

class QWidget;

namespace tarvex {

class TextWriter;

// "Save table" of the panels of measures: asks for a file, which `write` fills; what fails is told over `parent`.
void saveMeasures(QWidget* parent, const std::function<void(TextWriter&)>& write);

}  // namespace tarvex
