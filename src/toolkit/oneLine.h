#pragma once

#include <string>

class QPlainTextEdit;
class QWidget;

namespace tarvex {

// A field that wraps a text of one line: Enter belongs to the panel, and with Shift it does nothing.
void keepOneLine(QPlainTextEdit& field);
// What the field holds as the one line that a file has for an expression: ends of lines are blanks, and so are comments
// that such an end closes, which would take the rest along. Characters stay at their places; blanks at the end go.
std::string oneLineOf(const QPlainTextEdit& field);

// Clicks the default button of the window, if it has one.
void pressDefault(const QWidget& window);

}  // namespace tarvex
