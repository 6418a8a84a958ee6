#pragma once

#include <QString>
#include <cstddef>
#include <optional>

class QPlainTextEdit;

namespace tarvex {

// What fields have in common that take an expression.

// Puts a text where the caret is, which ends so many places before the text's end, and goes back to the field.
void insertAtCaret(QPlainTextEdit& field, const QString& text, int caretBack = 0);
// Marks the letter at which an expression is wrong, at the text's end the one before; nothing without a place.
void markMistake(QPlainTextEdit& field, std::optional<std::size_t> place);

}  // namespace tarvex
