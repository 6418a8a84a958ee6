#pragma once

class QPlainTextEdit;
class QWidget;

namespace tarvex {

// A field that wraps a text of one line: Enter belongs to the panel, and with Shift it does nothing.
void keepOneLine(QPlainTextEdit& field);

// Clicks the default button of the window, if it has one.
void pressDefault(const QWidget& window);

}  // namespace tarvex
