#include "toolkit/expressionField.h"

#include <QPlainTextEdit>
#include <QTextCursor>
#include <algorithm>

namespace tarvex {

void insertAtCaret(QPlainTextEdit& field, const QString& text, int caretBack) {
  QTextCursor caret = field.textCursor();
  caret.insertText(text);
  caret.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, caretBack);
  field.setTextCursor(caret);
  field.setFocus();
}

void markMistake(QPlainTextEdit& field, std::optional<std::size_t> place) {
  QList<QTextEdit::ExtraSelection> marks;
  if (place) {
    QTextEdit::ExtraSelection wrong;
    wrong.cursor = field.textCursor();
    const int end = static_cast<int>(field.toPlainText().size());
    wrong.cursor.setPosition(std::min(static_cast<int>(*place), end));
    wrong.cursor.movePosition(wrong.cursor.atEnd() ? QTextCursor::Left : QTextCursor::Right, QTextCursor::KeepAnchor);
    wrong.format.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    wrong.format.setBackground(field.palette().alternateBase());
    wrong.format.setFontWeight(QFont::Bold);
    marks << wrong;
  }
  field.setExtraSelections(marks);
}

}  // namespace tarvex
